#include "pattern.h"

#include <algorithm>
#include <cmath>

namespace zelt::tool {

namespace {

// BT.709: R'G'B' in 0..1 to 10-bit video-range Y'CbCr.
void Rgb709To10(double r, double g, double b, uint16_t* y, uint16_t* cb, uint16_t* cr) {
  const double kr = 0.2126, kb = 0.0722, kg = 1 - kr - kb;
  const double yy = kr * r + kg * g + kb * b;
  const double pb = (b - yy) / (2 * (1 - kb)), pr = (r - yy) / (2 * (1 - kr));
  *y = static_cast<uint16_t>(std::lround(64 + 876 * yy));
  *cb = static_cast<uint16_t>(std::lround(512 + 896 * pb));
  *cr = static_cast<uint16_t>(std::lround(512 + 896 * pr));
}

uint8_t Clamp8(double v) { return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L)); }

}  // namespace

Picture444 MakePattern(uint32_t w, uint32_t h) {
  Picture444 p{w, h, std::vector<uint16_t>(size_t{w} * h), std::vector<uint16_t>(size_t{w} * h),
               std::vector<uint16_t>(size_t{w} * h)};
  static const double bars[8][3] = {{.75, .75, .75}, {.75, .75, 0}, {0, .75, .75}, {0, .75, 0},
                                    {.75, 0, .75},   {.75, 0, 0},   {0, 0, .75},   {0, 0, 0}};
  const double pi = 3.14159265358979323846;
  for (uint32_t yy = 0; yy < h; ++yy) {
    for (uint32_t x = 0; x < w; ++x) {
      const size_t i = size_t{yy} * w + x;
      const double fx = (x + 0.5) / w;
      if (yy < h / 2) {
        const double* c = bars[std::min<uint32_t>(7, x * 8 / w)];
        Rgb709To10(c[0], c[1], c[2], &p.y[i], &p.cb[i], &p.cr[i]);
      } else if (yy < h * 5 / 8) {
        p.y[i] = static_cast<uint16_t>(std::lround(64 + 876 * fx));  // luma ramp, grey
        p.cb[i] = p.cr[i] = 512;
      } else if (yy < h * 6 / 8) {
        Rgb709To10(fx, 1 - fx, 0.5, &p.y[i], &p.cb[i], &p.cr[i]);  // hue ramp
      } else {
        // Zone plate: frequency grows with the distance from the centre, to half the
        // Nyquist rate at the left and right edges.
        const double dx = x - w / 2.0, dy = yy - h * 7 / 8.0;
        const double v = 0.5 + 0.5 * std::cos(pi * (dx * dx + dy * dy) / (w * 2.0));
        p.y[i] = static_cast<uint16_t>(std::lround(64 + 876 * v));
        p.cb[i] = p.cr[i] = 512;
      }
    }
  }
  return p;
}

std::vector<uint8_t> PackV210(const Picture444& p, uint32_t pitch) {
  std::vector<uint8_t> out(size_t{pitch} * p.h, 0);
  for (uint32_t yy = 0; yy < p.h; ++yy) {
    auto at = [&](const std::vector<uint16_t>& plane, uint32_t x) -> uint32_t {
      return plane[size_t{yy} * p.w + std::min(x, p.w - 1)] & 0x3FF;
    };
    uint8_t* row = out.data() + size_t{yy} * pitch;
    for (uint32_t g = 0; g * 6 < p.w; ++g) {
      const uint32_t x = g * 6;
      const uint32_t words[4] = {
          at(p.cb, x) | at(p.y, x) << 10 | at(p.cr, x) << 20,
          at(p.y, x + 1) | at(p.cb, x + 2) << 10 | at(p.y, x + 2) << 20,
          at(p.cr, x + 2) | at(p.y, x + 3) << 10 | at(p.cb, x + 4) << 20,
          at(p.y, x + 4) | at(p.cr, x + 4) << 10 | at(p.y, x + 5) << 20,
      };
      for (int k = 0; k < 4; ++k) {
        for (int b = 0; b < 4; ++b) row[g * 16 + k * 4 + b] = static_cast<uint8_t>(words[k] >> (8 * b));
      }
    }
  }
  return out;
}

std::vector<uint8_t> PackUyvy(const Picture444& p) {
  auto to8 = [](uint16_t v) { return static_cast<uint8_t>(v < 1021 ? (v + 2) >> 2 : v >> 2); };
  std::vector<uint8_t> out(size_t{p.w} * 2 * p.h);
  for (uint32_t yy = 0; yy < p.h; ++yy) {
    for (uint32_t x = 0; x + 1 < p.w + 1; x += 2) {
      const size_t i = size_t{yy} * p.w + x, o = size_t{yy} * p.w * 2 + x * 2;
      out[o] = to8(p.cb[i]);
      out[o + 1] = to8(p.y[i]);
      if (o + 3 < out.size()) {
        out[o + 2] = to8(p.cr[i]);
        out[o + 3] = to8(p.y[std::min(i + 1, size_t{yy} * p.w + p.w - 1)]);
      }
    }
  }
  return out;
}

std::vector<uint8_t> PreviewUyvy(const uint8_t* uyvy, uint32_t w, uint32_t h, uint32_t stride) {
  std::vector<uint8_t> rgb(size_t{w} * h * 3);
  for (uint32_t yy = 0; yy < h; ++yy) {
    const uint8_t* row = uyvy + size_t{yy} * stride;
    for (uint32_t x = 0; x < w; ++x) {
      const uint8_t* g = row + (x / 2) * 4;
      const double Y = (g[1 + 2 * (x & 1)] - 16) / 219.0, pb = (g[0] - 128) / 224.0, pr = (g[2] - 128) / 224.0;
      uint8_t* o = &rgb[(size_t{yy} * w + x) * 3];
      o[0] = Clamp8(255 * (Y + 1.5748 * pr));
      o[1] = Clamp8(255 * (Y - 0.1873 * pb - 0.4681 * pr));
      o[2] = Clamp8(255 * (Y + 1.8556 * pb));
    }
  }
  return rgb;
}

std::vector<uint8_t> PreviewBgra(const uint8_t* bgra, uint32_t w, uint32_t h, uint32_t stride) {
  std::vector<uint8_t> rgb(size_t{w} * h * 3);
  for (uint32_t yy = 0; yy < h; ++yy) {
    for (uint32_t x = 0; x < w; ++x) {
      const uint8_t* p = bgra + size_t{yy} * stride + x * 4;
      uint8_t* o = &rgb[(size_t{yy} * w + x) * 3];
      o[0] = p[2];
      o[1] = p[1];
      o[2] = p[0];
    }
  }
  return rgb;
}

}  // namespace zelt::tool
