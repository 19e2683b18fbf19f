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

// The rules below are stated on q = sum / 1000000 (truncated toward zero) and the
// remainder r. Each is written as one biased division so that it compiles without
// branches: adding (1000000 - t) before dividing raises q exactly when r >= t.

// Luma with round-up: a remainder of 500001 or more adds one, exactly one half does
// not. Only the top is clamped; the sum cannot be negative.
inline uint8_t EncodeLumaRounded(uint32_t sy, int32_t yOffset) {
  const int32_t y = static_cast<int32_t>((sy + 499999u) / 1000000u) + yOffset;
  return static_cast<uint8_t>(y > 255 ? 255 : y);
}

// Luma truncated: the second pixel of every pair in planar output.
inline uint8_t EncodeLumaTruncated(uint32_t sy, int32_t yOffset) {
  const int32_t y = static_cast<int32_t>(sy / 1000000u) + yOffset;
  return static_cast<uint8_t>(y > 255 ? 255 : y);
}

namespace detail {
// A non-negative sum is raised when r >= upFrom; a negative one lowered when
// r < downBelow, i.e. when |r| >= 1 - downBelow. The magnitude is divided with the
// matching bias and the sign put back; then the chroma centre is added and the
// result clamped to 0..255.
template <int32_t kUpFrom, int32_t kDownBelow>
inline uint8_t EncodeChroma(int32_t s) {
  const bool negative = s < 0;
  const uint32_t magnitude = negative ? 0u - static_cast<uint32_t>(s) : static_cast<uint32_t>(s);
  const uint32_t bias = negative ? static_cast<uint32_t>(999999 + kDownBelow) : static_cast<uint32_t>(1000000 - kUpFrom);
  const int32_t q = static_cast<int32_t>((magnitude + bias) / 1000000u);
  const int32_t c = (negative ? -q : q) + 128;
  return static_cast<uint8_t>(c < 0 ? 0 : (c > 255 ? 255 : c));
}
}  // namespace detail

// Cb rounds with skewed thresholds: up when r > 450000, down when r < -250000.
inline uint8_t EncodeCb(int32_t scb) { return detail::EncodeChroma<450001, -250000>(scb); }

// Cr: up when r >= 500001, down when r < -500000 (exact halves stay).
inline uint8_t EncodeCr(int32_t scr) { return detail::EncodeChroma<500001, -500000>(scr); }

}  // namespace zelt
