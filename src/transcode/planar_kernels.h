// Row kernels of the 8-bit planar <-> packed 4:2:2 conversions. A packed group is
// either chroma first (C0 Y0 C1 Y1, as UYVY) or luma first (Y0 C0 Y1 C1, as YUY2
// and YVYU); c0 and c1 are the planes of the first and second chroma byte. The
// portable kernels are the definition; the AVX2 versions (planar_avx2.cpp) do
// whole blocks of 32 or 64 pixels and hand the rest of the row to them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/paths.h"

namespace zelt::transcode {

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

// The block rows have no portable twin of the same shape (the portable engines walk
// any plane arrangement sample by sample), so their sets hold the vector variants
// only: Select() gives nullptr where none applies.
using PackRowFn = void (*)(uint8_t*, const uint8_t*, const uint8_t*, const uint8_t*, size_t, bool, bool);
using UnpackRowFn = void (*)(uint8_t*, uint8_t*, uint8_t*, const uint8_t*, size_t, bool, bool);
using UnpackLumaRowFn = void (*)(uint8_t*, const uint8_t*, size_t, bool, bool);
inline constexpr KernelSet<PackRowFn> kBlockPackRow{nullptr, nullptr, ZELT_X86_ONLY(PackRowAvx2)};
inline constexpr KernelSet<UnpackRowFn> kBlockUnpackRow{nullptr, nullptr, ZELT_X86_ONLY(UnpackRowAvx2)};
inline constexpr KernelSet<UnpackLumaRowFn> kBlockUnpackLumaRow{nullptr, nullptr, ZELT_X86_ONLY(UnpackLumaRowAvx2)};

// Destination frames of at least this many bytes are written with streaming stores
// by the 256-bit rows: below it the frame is likely to be read again from cache.
inline constexpr size_t kPlanarStreamBytes = size_t{8} << 20;

}  // namespace zelt::transcode
