// RGB to YCbCr coefficients of the transcoder, at scale 1000000, and the integer
// rounding rules every 8-bit encoder of the family applies to its sums.
//
// Ids 0..10; any other id encodes as id 0. Ids 8, 9 and 10 are fixed house
// encodings, not standards: their luma weights need not sum to one and their chroma
// weights are not balanced. They are used exactly as listed.
#pragma once

#include <cstdint>

namespace zelt {

// Weights carry the sign with which they are applied:
//   Sy  = yR*R + yG*G + yB*B            (then + yOffset)
//   Scb = cbR*R + cbG*G + cbB*B         (cbR, cbG negative)
//   Scr = crR*R + crG*G + crB*B         (crG, crB negative)
struct RgbToYcbcrMatrix {
  int32_t yOffset;
  int32_t yR, yG, yB;
  int32_t cbR, cbG, cbB;
  int32_t crR, crG, crB;
};

inline constexpr int32_t kRgbToYcbcrScale = 1000000;
inline constexpr uint32_t kRgbToYcbcrCount = 11;

extern const RgbToYcbcrMatrix kRgbToYcbcr[kRgbToYcbcrCount];

// The set for a matrix id; ids 11 and up give id 0.
inline const RgbToYcbcrMatrix& RgbToYcbcrFor(uint32_t matrix) {
  return kRgbToYcbcr[matrix < kRgbToYcbcrCount ? matrix : 0];
}

// Luma with round-up: a remainder of 500001 or more adds one, exactly one half does
// not. Only the top is clamped; the sum cannot be negative.
inline uint8_t EncodeLumaRounded(uint32_t sy, int32_t yOffset) {
  const uint32_t q = sy / kRgbToYcbcrScale;
  const uint32_t r = sy - q * kRgbToYcbcrScale;
  const int32_t y = static_cast<int32_t>(q + (r >= 500001u ? 1u : 0u)) + yOffset;
  return static_cast<uint8_t>(y > 255 ? 255 : y);
}

// Luma truncated: the second pixel of every pair in planar output.
inline uint8_t EncodeLumaTruncated(uint32_t sy, int32_t yOffset) {
  const int32_t y = static_cast<int32_t>(sy / kRgbToYcbcrScale) + yOffset;
  return static_cast<uint8_t>(y > 255 ? 255 : y);
}

namespace detail {
// q = s / scale truncated toward zero, r the remainder (sign of s). A negative sum is
// lowered when r < downBelow, a non-negative one raised when r >= upFrom. Then the
// chroma centre is added and the result clamped to 0..255.
inline uint8_t EncodeChroma(int32_t s, int32_t downBelow, int32_t upFrom) {
  int32_t q = s / kRgbToYcbcrScale;
  const int32_t r = s - q * kRgbToYcbcrScale;
  if (s < 0) {
    q -= r < downBelow ? 1 : 0;
  } else {
    q += r >= upFrom ? 1 : 0;
  }
  const int32_t c = q + 128;
  return static_cast<uint8_t>(c < 0 ? 0 : (c > 255 ? 255 : c));
}
}  // namespace detail

// Cb rounds with skewed thresholds: down below -250000, up above 450000.
inline uint8_t EncodeCb(int32_t scb) { return detail::EncodeChroma(scb, -250000, 450001); }

// Cr rounds half away from zero, with exact halves kept: down below -500000, up
// from 500001.
inline uint8_t EncodeCr(int32_t scr) { return detail::EncodeChroma(scr, -500000, 500001); }

}  // namespace zelt
