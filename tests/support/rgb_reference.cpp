#include "support/rgb_reference.h"

#include <algorithm>
#include <cmath>

#include "core/matrices.h"

namespace zelt::test {
namespace {

int Clamp8(int v) { return std::clamp(v, 0, 255); }

RefRgb Decode(const YcbcrToRgbMatrix& m, int y, int u, int v) {
  const int yy = (y - m.yOffset) * m.yScale;
  // C++ integer division truncates toward zero, which is the rule.
  return {Clamp8((yy + v * m.crToR) / 10000), Clamp8((yy - u * m.cbToG - v * m.crToG) / 10000),
          Clamp8((yy + u * m.cbToB) / 10000)};
}

}  // namespace

RefRgb RefDecode8(uint32_t matrix, int y, int cb, int cr) {
  return Decode(YcbcrToRgb10000(matrix), y, cb - 128, cr - 128);
}

RefRgb RefDecode10To8(uint32_t matrix, int y, int cb, int cr) {
  return Decode(YcbcrToRgb10Bit8(matrix), y, cb - 512, cr - 512);
}

std::string RefLayout(uint32_t bitsPerPixel, uint32_t flags) {
  uint32_t order = flags & 0x7FFF;
  if (order > 3) order = 2;
  if (bitsPerPixel == 32) {
    static const char* const k32[4] = {"BGRA", "ABGR", "RGBA", "ARGB"};
    return k32[order];
  }
  return order >= 2 ? "RGB" : "BGR";
}

size_t RefBytesPerPixel(uint32_t bitsPerPixel) { return bitsPerPixel == 32 ? 4 : (bitsPerPixel == 24 ? 3 : 2); }

void RefPut(std::vector<uint8_t>& buf, size_t at, uint32_t bitsPerPixel, const std::string& layout, RefRgb p) {
  auto channel = [&](char c) { return c == 'R' ? p.r : c == 'G' ? p.g : c == 'B' ? p.b : 255; };
  auto put = [&](size_t i, int v) {
    if (at + i < buf.size()) buf[at + i] = static_cast<uint8_t>(v);
  };
  if (bitsPerPixel == 32 || bitsPerPixel == 24) {
    for (size_t i = 0; i < layout.size(); ++i) put(i, channel(layout[i]));
    return;
  }
  const int gBits = bitsPerPixel == 16 ? 6 : 5;
  const int hi = channel(layout[0]) >> 3, g = channel(layout[1]) >> (8 - gBits), lo = channel(layout[2]) >> 3;
  const int word = (hi << (5 + gBits)) | (g << 5) | lo;
  put(0, word & 0xFF);
  put(1, word >> 8);
}

RefRgb RefFastDecode(int set, int y, int cb, int cr) {
  struct W {
    double yOff, yScale, crR, crG, cbG, cbB;
  };
  static const W kSets[3] = {{16, 1.164, 1.596, 0.813, 0.392, 2.017},
                             {16, 1.164, 1.793, 0.534, 0.213, 2.115},
                             {0, 1.0, 1.540, 0.459, 0.183, 1.816}};
  const W& w = kSets[set];
  const double yy = w.yScale * (y - w.yOff), u = cb - 128.0, v = cr - 128.0;
  auto r = [](double x) { return Clamp8(static_cast<int>(std::floor(x + 0.5))); };
  return {r(yy + w.crR * v), r(yy - w.crG * v - w.cbG * u), r(yy + w.cbB * u)};
}

}  // namespace zelt::test
