// The RGB to 8-bit YCbCr kernel behind every cycbcr_RGB*_to_* converter. It reads
// 24/32/48/64-bit RGB in any of the channel orders of the flags argument and writes
// three streams (Y, Cb, Cr) that are either positions inside one packed 4:2:2 row or
// three planes. The format-named converters only aim it at the right bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/matrices_encode.h"

namespace zelt::transcode {

inline constexpr uint32_t kRgbOrderMask = 0x7FFF;
inline constexpr uint32_t kRgbBottomUp = 0x8000;

// Where B, G and R sit inside one source pixel, in bytes from the start of the
// pixel. For 48/64-bit pixels these are the offsets of the 16-bit samples; the
// kernel starts each row one byte in, so it reads their high bytes.
struct RgbOffsets {
  uint32_t b, g, r;
};

// Channel offsets for (order, bits per pixel). Orders 4 and up read B, G, R; alpha is
// never read. Bits other than 32, 48 and 64 mean 24.
RgbOffsets RgbOffsetsFor(uint32_t order, uint32_t bitsPerPixel);
// Bytes per source pixel for `bitsPerPixel` (24 unless 32, 48 or 64).
uint32_t RgbPixelBytes(uint32_t bitsPerPixel);

// One row, `pairs` pixel pairs, portable. Packed output: Y at y and y+2, chroma at
// cb/cr, all advancing 4 per pair. Planar output: Y at y and y+1 (the second
// truncated), chroma advancing 1 per pair. `cb`/`cr` null: this row writes no chroma.
void EncodeRgbRow(const uint8_t* src, uint32_t pixelBytes, RgbOffsets off, const RgbToYcbcrMatrix& m, bool planar,
                  uint8_t* y, uint8_t* cb, uint8_t* cr, uint32_t pairs);

// The whole conversion. Returns 2*w*h when fullChromaRows is nonzero, else
// w*h + 2*((w*h)/4), whatever the strides.
uint64_t RgbToYcbcrKernel(uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, const uint8_t* src, uint32_t width,
                          uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags,
                          uint32_t fullChromaRows, uint32_t planar, uint32_t bitsPerPixel, uint32_t chromaStride);

// --- 256-bit variant: 4:2:2 output from 32-bit pixels, 14-bit fixed point ---------

// How the three streams sit relative to each other in a packed row, or planar.
enum class Chroma422 : uint8_t { kUyvy, kYuy2, kYvyu, kPlanar };

// Weights at scale 16384, rounded to nearest (half away from zero).
struct Rgb14Matrix {
  int16_t yR, yG, yB, cbR, cbG, cbB, crR, crG, crB;
  int16_t yOffset;
};
Rgb14Matrix ToFixed14(const RgbToYcbcrMatrix& m);

// The 256-bit variant computes v = (sum + 8192) >> 14 (arithmetic) for every
// weighted sum, saturates v to int16, adds the offset (Y) or 128 (chroma) and
// saturates to 0..255. The planar second luma drops the 8192 and so truncates like
// its portable twin. Each result is within one code value of the portable rule:
// the weights are off by at most 1/32768 each, so a sum by at most 0.024.
// Converts as many whole blocks of 8 pairs as fit in `pairs` and returns how many
// pairs it did; the caller finishes the row with EncodeRgbRow. Packed layouts write
// from y (the first Y byte of the row's first group); planar writes y, cb and cr.
uint32_t EncodeRgb32Row422Avx2(const uint8_t* src, RgbOffsets off, const Rgb14Matrix& m, Chroma422 layout,
                               uint8_t* y, uint8_t* cb, uint8_t* cr, uint32_t pairs);

// --- 256-bit form of the portable rule (same bytes) --------------------------------

// Planar rows from 32-bit pixels by the exact portable rule, whole blocks of 8 pairs;
// returns the pairs done. `cb` null: the row writes no chroma. Used for 4:2:0,
// which has no 14-bit variant.
uint32_t EncodeRgb32PlanarRowExactAvx2(const uint8_t* src, RgbOffsets off, const RgbToYcbcrMatrix& m, uint8_t* y,
                                       uint8_t* cb, uint8_t* cr, uint32_t pairs);

}  // namespace zelt::transcode
