// Vector row kernels of the YCbCr to 32-bit RGB converters. They decode whole
// blocks of four pixel pairs with exactly the portable rule (truncating division
// by 10000, clamping) and return how many pairs they did; the caller finishes the
// row with the portable pair code.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/matrices.h"

namespace zelt::transcode {

// Packed 4:2:2 pairs: `groups` points at the first 4-byte group; the pair's
// first luma, Cb and Cr sit at yAt (0 or 1), cbAt, crAt (0..3) in each group, the
// second luma at yAt + 2. Reads 16 bytes and writes 32 per block of four pairs.
size_t PackedPairsToRgb32Avx2(uint8_t* dst, const uint8_t* groups, int yAt, int cbAt, int crAt, size_t pairs,
                              const YcbcrToRgbMatrix& m, uint32_t order);

// Planar pairs: two luma samples, one Cb and one Cr per pair.
size_t PlanarPairsToRgb32Avx2(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, size_t pairs,
                              const YcbcrToRgbMatrix& m, uint32_t order);

// Planar pairs of 16-bit samples, chroma centred on `centre`. Each sample is first
// shifted right by `rshift`; what remains must fit 15 bits.
size_t Planar16PairsToRgb32Avx2(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                                size_t pairs, const YcbcrToRgbMatrix& m, int32_t centre, uint32_t order,
                                int rshift = 0);

}  // namespace zelt::transcode
