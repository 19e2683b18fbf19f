// Row kernels of the 8-bit planar <-> packed conversions. The portable versions
// are the definition; the AVX2 versions (planar_avx2.cpp) do whole blocks of 32 or
// 64 pixels and hand the rest of the row to the portable kernel.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt::ycbcr {

// `pairs` groups Cb Y0 Cr Y1 from luma y[2i], y[2i+1] and chroma cb[i], cr[i].
void PackUyvyRow(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, size_t pairs);
// The reverse: luma bytes 1 and 3 of each group to y, bytes 0 and 2 to cb and cr.
void UnpackUyvyRow(uint8_t* y, uint8_t* cb, uint8_t* cr, const uint8_t* src, size_t pairs);
// Luma only.
void UnpackUyvyLumaRow(uint8_t* y, const uint8_t* src, size_t pairs);

void PackUyvyRowAvx2(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, size_t pairs);
void UnpackUyvyRowAvx2(uint8_t* y, uint8_t* cb, uint8_t* cr, const uint8_t* src, size_t pairs);
void UnpackUyvyLumaRowAvx2(uint8_t* y, const uint8_t* src, size_t pairs);

}  // namespace zelt::ycbcr
