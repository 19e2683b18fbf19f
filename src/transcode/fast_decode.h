// Our own equivalents of the IPP 8-bit decoding primitives (YCbCr to BGR), the
// channel swaps and the interleaved-to-planes copy that the YCbCr to RGB
// converters route to. Each evaluates the primitive's documented real-valued
// formula in 16.16 fixed point, rounds to nearest and saturates to 0..255.
//
// Steps are in bytes; ROIs are width x height pixels. The 4:2:x primitives are
// documented for even widths only; for an odd width we decode exactly `width`
// pixels, the last one with the chroma of its (incomplete) pair.
#pragma once

#include <cstdint>

namespace zelt::transcode::fast_decode {

// Which documented formula set a decoder evaluates.
enum class Set : uint8_t {
  Bt601,      // R = 1.164(Y-16) + 1.596(Cr-128), G = 1.164(Y-16) - 0.813(Cr-128) - 0.392(Cb-128),
              // B = 1.164(Y-16) + 2.017(Cb-128)
  Bt709Csc,   // R = 1.164(Y-16) + 1.793(Cr-128), G = 1.164(Y-16) - 0.534(Cr-128) - 0.213(Cb-128),
              // B = 1.164(Y-16) + 2.115(Cb-128)
  Bt709Hdtv,  // R = Y + 1.540(Cr-128), G = Y - 0.459(Cr-128) - 0.183(Cb-128), B = Y + 1.816(Cb-128)
};

// A set in 16.16 fixed point: weights rounded to the nearest 1/65536.
struct FixedSet {
  int32_t yOffset, yScale, crToR, crToG, cbToG, cbToB;
};
const FixedSet& FixedCoefficients(Set set);

// One pixel of a set: writes B, G, R to bgr[0..2].
void DecodeBgr(Set set, int y, int cb, int cr, uint8_t* bgr);

// ippiYCbCr420ToBGR_8u_P3C4R (Bt601) and ippiYCbCr420ToBGR_709HDTV_8u_P3C4R
// (Bt709Hdtv): planes Y, Cb, Cr, chroma at (x/2, y/2); writes B, G, R, alpha.
void YCbCr420ToBgrC4(Set set, const uint8_t* const planes[3], const int32_t steps[3], uint8_t* dst, int32_t dstStep,
                     uint32_t width, uint32_t height, uint8_t alpha);

// The same with whole blocks of eight pixels in 256-bit vectors (same bytes; any
// set, so the CSC set widened to four bytes is one pass with a row step of
// width * 4).
void YCbCr420ToBgrC4Avx2(Set set, const uint8_t* const planes[3], const int32_t steps[3], uint8_t* dst,
                         int32_t dstStep, uint32_t width, uint32_t height, uint8_t alpha);

// ippiYCbCr420ToBGR_709CSC_8u_P3C3R: as above with the CSC set, 3-byte B, G, R.
void YCbCr420ToBgr709CscC3(const uint8_t* const planes[3], const int32_t steps[3], uint8_t* dst, int32_t dstStep,
                           uint32_t width, uint32_t height);

// ippiCbYCr422ToBGR_8u_C2C4R (Bt601), ippiCbYCr422ToBGR_709HDTV_8u_C2C4R
// (Bt709Hdtv): packed Cb Y0 Cr Y1, both pixels of a pair on that pair's chroma;
// writes B, G, R, alpha.
void CbYCr422ToBgrC4(Set set, const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, uint32_t width,
                     uint32_t height, uint8_t alpha);

// ippiCbYCr422ToBGR_709HDTV_8u_C2C3R: as above, 3-byte B, G, R.
void CbYCr422ToBgr709HdtvC3(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, uint32_t width,
                            uint32_t height);

// ippiYCrCb422ToRGB_8u_C2C3R: packed Y0 Cr Y1 Cb (byte 0 is Y0, 1 Cr, 2 Y1, 3 Cb),
// Bt601 set, writes R, G, B.
void YCrCb422ToRgbC3(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, uint32_t width,
                     uint32_t height);

// ippiSwapChannels_8u_C4IR / _C3IR: in place, channel i becomes old channel order[i].
void SwapChannelsC4I(uint8_t* buf, int32_t step, uint32_t width, uint32_t height, const int order[4]);
void SwapChannelsC3I(uint8_t* buf, int32_t step, uint32_t width, uint32_t height, const int order[3]);

// ippiCopy_8u_C3P3R: 3-channel pixels to three planes (channel i to planes[i]).
void CopyC3P3(const uint8_t* src, int32_t srcStep, uint8_t* const planes[3], int32_t dstStep, uint32_t width,
              uint32_t height);

}  // namespace zelt::transcode::fast_decode
