// Fixed-point equivalents of the IPP decoding primitives. The documented formulas
// are real-valued; the primitives' own integer rounding is not documented, so
// these evaluate each formula with 16 fraction bits (coefficients rounded to the
// nearest 1/65536), add one half and shift (round half up), and saturate. Results
// may differ from the vendor's library by one code value near rounding
// boundaries; they are exactly reproducible across our own code paths.
#include "transcode/fast_decode.h"

#include <cstddef>

namespace zelt::transcode::fast_decode {
namespace {

using Q16 = FixedSet;

constexpr int32_t Fix(double c) { return static_cast<int32_t>(c * 65536.0 + 0.5); }

constexpr Q16 kSets[3] = {
    {16, Fix(1.164), Fix(1.596), Fix(0.813), Fix(0.392), Fix(2.017)},
    {16, Fix(1.164), Fix(1.793), Fix(0.534), Fix(0.213), Fix(2.115)},
    {0, Fix(1.0), Fix(1.540), Fix(0.459), Fix(0.183), Fix(1.816)},
};

inline uint8_t Sat(int32_t q16) {
  const int32_t v = (q16 + 32768) >> 16;
  return static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
}

inline void Bgr(const Q16& k, int y, int cb, int cr, uint8_t* out) {
  const int32_t yy = (y - k.yOffset) * k.yScale;
  const int32_t u = cb - 128, v = cr - 128;
  out[0] = Sat(yy + u * k.cbToB);
  out[1] = Sat(yy - v * k.crToG - u * k.cbToG);
  out[2] = Sat(yy + v * k.crToR);
}

template <int N>
void Planar420(const Q16& k, const uint8_t* const planes[3], const int32_t steps[3], uint8_t* dst, int32_t dstStep,
               uint32_t width, uint32_t height, uint8_t alpha) {
  for (uint32_t r = 0; r < height; ++r) {
    const uint8_t* y = planes[0] + ptrdiff_t{steps[0]} * r;
    const uint8_t* cb = planes[1] + ptrdiff_t{steps[1]} * (r / 2);
    const uint8_t* cr = planes[2] + ptrdiff_t{steps[2]} * (r / 2);
    uint8_t* d = dst + ptrdiff_t{dstStep} * r;
    for (uint32_t x = 0; x < width; ++x, d += N) {
      Bgr(k, y[x], cb[x / 2], cr[x / 2], d);
      if constexpr (N == 4) d[3] = alpha;
    }
  }
}

// Packed 4:2:2; `yAt`, `cbAt`, `crAt` are byte offsets in a 4-byte group, `y1At`
// the second luma.
template <int N>
void Packed422(const Q16& k, const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, uint32_t width,
               uint32_t height, uint8_t alpha, int y0At, int y1At, int cbAt, int crAt, bool rgb) {
  for (uint32_t r = 0; r < height; ++r) {
    const uint8_t* s = src + ptrdiff_t{srcStep} * r;
    uint8_t* d = dst + ptrdiff_t{dstStep} * r;
    for (uint32_t x = 0; x < width; ++x, d += N) {
      const uint8_t* g = s + size_t{x / 2} * 4;
      Bgr(k, g[(x & 1) ? y1At : y0At], g[cbAt], g[crAt], d);
      if (rgb) {
        const uint8_t t = d[0];
        d[0] = d[2];
        d[2] = t;
      }
      if constexpr (N == 4) d[3] = alpha;
    }
  }
}

}  // namespace

const FixedSet& FixedCoefficients(Set set) { return kSets[static_cast<int>(set)]; }

void DecodeBgr(Set set, int y, int cb, int cr, uint8_t* bgr) { Bgr(kSets[static_cast<int>(set)], y, cb, cr, bgr); }

void YCbCr420ToBgrC4(Set set, const uint8_t* const planes[3], const int32_t steps[3], uint8_t* dst, int32_t dstStep,
                     uint32_t width, uint32_t height, uint8_t alpha) {
  Planar420<4>(kSets[static_cast<int>(set)], planes, steps, dst, dstStep, width, height, alpha);
}

void YCbCr420ToBgr709CscC3(const uint8_t* const planes[3], const int32_t steps[3], uint8_t* dst, int32_t dstStep,
                           uint32_t width, uint32_t height) {
  Planar420<3>(kSets[static_cast<int>(Set::Bt709Csc)], planes, steps, dst, dstStep, width, height, 0);
}

void CbYCr422ToBgrC4(Set set, const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, uint32_t width,
                     uint32_t height, uint8_t alpha) {
  Packed422<4>(kSets[static_cast<int>(set)], src, srcStep, dst, dstStep, width, height, alpha, 1, 3, 0, 2, false);
}

void CbYCr422ToBgr709HdtvC3(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, uint32_t width,
                            uint32_t height) {
  Packed422<3>(kSets[static_cast<int>(Set::Bt709Hdtv)], src, srcStep, dst, dstStep, width, height, 0, 1, 3, 0, 2,
               false);
}

void YCrCb422ToRgbC3(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, uint32_t width,
                     uint32_t height) {
  Packed422<3>(kSets[static_cast<int>(Set::Bt601)], src, srcStep, dst, dstStep, width, height, 0, 0, 2, 3, 1, true);
}

void SwapChannelsC4I(uint8_t* buf, int32_t step, uint32_t width, uint32_t height, const int order[4]) {
  for (uint32_t r = 0; r < height; ++r) {
    uint8_t* p = buf + ptrdiff_t{step} * r;
    for (uint32_t x = 0; x < width; ++x, p += 4) {
      const uint8_t old[4] = {p[0], p[1], p[2], p[3]};
      for (int i = 0; i < 4; ++i) p[i] = old[order[i]];
    }
  }
}

void SwapChannelsC3I(uint8_t* buf, int32_t step, uint32_t width, uint32_t height, const int order[3]) {
  for (uint32_t r = 0; r < height; ++r) {
    uint8_t* p = buf + ptrdiff_t{step} * r;
    for (uint32_t x = 0; x < width; ++x, p += 3) {
      const uint8_t old[3] = {p[0], p[1], p[2]};
      for (int i = 0; i < 3; ++i) p[i] = old[order[i]];
    }
  }
}

void CopyC3P3(const uint8_t* src, int32_t srcStep, uint8_t* const planes[3], int32_t dstStep, uint32_t width,
              uint32_t height) {
  for (uint32_t r = 0; r < height; ++r) {
    const uint8_t* s = src + ptrdiff_t{srcStep} * r;
    for (int c = 0; c < 3; ++c) {
      uint8_t* d = planes[c] + ptrdiff_t{dstStep} * r;
      for (uint32_t x = 0; x < width; ++x) d[x] = s[3 * x + c];
    }
  }
}

}  // namespace zelt::transcode::fast_decode
