// Row kernels of the 8-bit planar <-> packed 4:2:2 conversions. A packed group is
// either chroma first (C0 Y0 C1 Y1, as UYVY) or luma first (Y0 C0 Y1 C1, as YUY2
// and YVYU); c0 and c1 are the planes of the first and second chroma byte. The
// portable kernels are the definition; the AVX2 versions (planar_avx2.cpp) do
// whole blocks of 32 or 64 pixels and hand the rest of the row to them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt::ycbcr {

// `pairs` groups from luma y[2i], y[2i+1] and chroma c0[i], c1[i].
void PackRow(uint8_t* dst, const uint8_t* y, const uint8_t* c0, const uint8_t* c1, size_t pairs, bool lumaFirst);
// The reverse.
void UnpackRow(uint8_t* y, uint8_t* c0, uint8_t* c1, const uint8_t* src, size_t pairs, bool lumaFirst);
// Luma only.
void UnpackLumaRow(uint8_t* y, const uint8_t* src, size_t pairs, bool lumaFirst);

// `stream`: non-temporal stores where the destination rows are aligned for them
// (the callers set it for frames larger than kPlanarStreamBytes).
void PackRowAvx2(uint8_t* dst, const uint8_t* y, const uint8_t* c0, const uint8_t* c1, size_t pairs, bool lumaFirst,
                 bool stream);
void UnpackRowAvx2(uint8_t* y, uint8_t* c0, uint8_t* c1, const uint8_t* src, size_t pairs, bool lumaFirst,
                   bool stream);
void UnpackLumaRowAvx2(uint8_t* y, const uint8_t* src, size_t pairs, bool lumaFirst, bool stream);

// Destination frames of at least this many bytes are written with streaming stores
// by the 256-bit rows: below it the frame is likely to be read again from cache.
inline constexpr size_t kPlanarStreamBytes = size_t{8} << 20;

}  // namespace zelt::ycbcr
