// BGR to CbYCr 4:2:2 and the channel swap, as the IPP primitives document them.
//
// The reference gives the formulas in real numbers only; its internal integer
// rounding is not documented. We use 16 fraction bits (coefficients rounded to
// nearest), add one half before the final shift and saturate, so every output is
// the formula's value rounded to nearest except within about 0.006 of a half.
#include "transcode/fast_encode.h"

#include <cstddef>

namespace zelt::transcode {

namespace {

constexpr int32_t Q16(double x) { return static_cast<int32_t>(x * 65536.0 + (x < 0 ? -0.5 : 0.5)); }

struct BgrTo422Coeffs {
  int32_t yR, yG, yB, yOffset;
  int32_t cbR, cbG, cbB;
  int32_t crR, crG, crB;
};

constexpr BgrTo422Coeffs kBt601{Q16(0.257),  Q16(0.504),  Q16(0.098), 16,         Q16(-0.148),
                                Q16(-0.291), Q16(0.439),  Q16(0.439), Q16(-0.368), Q16(-0.071)};
constexpr BgrTo422Coeffs kBt709Hdtv{Q16(0.213),  Q16(0.715),  Q16(0.072), 0,          Q16(-0.117),
                                    Q16(-0.394), Q16(0.511),  Q16(0.511), Q16(-0.464), Q16(-0.047)};

inline uint8_t Sat8(int32_t v) { return static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v)); }

template <const BgrTo422Coeffs& C>
void BgrTo422(const uint8_t* src, uint32_t srcStep, uint8_t* dst, uint32_t dstStep, uint32_t width, uint32_t height) {
  constexpr int32_t kYBias = (C.yOffset << 16) + (1 << 15);
  constexpr int32_t kCBias = (128 << 17) + (1 << 16);  // chroma of a pair sum: 17 bits
  const uint32_t pairs = width / 2;
  for (uint32_t row = 0; row < height; ++row) {
    const uint8_t* s = src + size_t{row} * srcStep;
    uint8_t* d = dst + size_t{row} * dstStep;
    for (uint32_t i = 0; i < pairs; ++i, s += 8, d += 4) {
      const int32_t b0 = s[0], g0 = s[1], r0 = s[2];
      const int32_t b1 = s[4], g1 = s[5], r1 = s[6];
      const int32_t b = b0 + b1, g = g0 + g1, r = r0 + r1;
      d[0] = Sat8((C.cbR * r + C.cbG * g + C.cbB * b + kCBias) >> 17);
      d[1] = Sat8((C.yR * r0 + C.yG * g0 + C.yB * b0 + kYBias) >> 16);
      d[2] = Sat8((C.crR * r + C.crG * g + C.crB * b + kCBias) >> 17);
      d[3] = Sat8((C.yR * r1 + C.yG * g1 + C.yB * b1 + kYBias) >> 16);
    }
  }
}

}  // namespace

void SwapChannels8uC4IR(uint8_t* image, uint32_t step, uint32_t width, uint32_t height, const uint8_t order[4]) {
  const uint8_t o0 = order[0] & 3, o1 = order[1] & 3, o2 = order[2] & 3, o3 = order[3] & 3;
  for (uint32_t row = 0; row < height; ++row) {
    uint8_t* p = image + size_t{row} * step;
    for (uint32_t i = 0; i < width; ++i, p += 4) {
      const uint8_t c[4] = {p[0], p[1], p[2], p[3]};
      p[0] = c[o0];
      p[1] = c[o1];
      p[2] = c[o2];
      p[3] = c[o3];
    }
  }
}

void BgrToCbYCr422Bt601(const uint8_t* src, uint32_t srcStep, uint8_t* dst, uint32_t dstStep, uint32_t width,
                        uint32_t height) {
  BgrTo422<kBt601>(src, srcStep, dst, dstStep, width, height);
}

void BgrToCbYCr422Bt709Hdtv(const uint8_t* src, uint32_t srcStep, uint8_t* dst, uint32_t dstStep, uint32_t width,
                            uint32_t height) {
  BgrTo422<kBt709Hdtv>(src, srcStep, dst, dstStep, width, height);
}

}  // namespace zelt::transcode
