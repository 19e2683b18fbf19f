// Kernels of the row pipeline shared between the portable code and the
// instruction-set files (unpack_sse41.cpp, unpack_avx2.cpp, pack_rgb_sse41.cpp,
// range_avx2.cpp). Each vector kernel does whole blocks and returns how much it did;
// the caller finishes the row with the portable rule.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt::rows {

// The four arithmetic cases of the 8-bit component unpacker.
enum class UnpackMode { kShift, kFull, kMatrix, kFullMatrix };

// --- AVX2 (unpack_avx2.cpp, range_avx2.cpp) ---
// Component unpacker over whole 16-byte source blocks of `bytes`; returns the source
// bytes done (a multiple of 16).
size_t UnpackRowYUV16sAvx2(const uint8_t* src, int16_t* dst, size_t bytes, int component, UnpackMode mode,
                           int shift);
// Whole v210 groups, two per step (the last one or two left over); return groups done.
size_t V210PlanarGroupsAvx2(const uint8_t* src, size_t groups, int16_t* y, int16_t* cr, int16_t* cb);
size_t V210Yuv16GroupsAvx2(const uint8_t* src, size_t groups, uint16_t* y, uint16_t* cb, uint16_t* cr);
// The truncating matrix packer over whole blocks of 16 pixels; as MatrixBlocksSse41.
size_t MatrixBlocksAvx2(const uint16_t* y, const uint16_t* cr, const uint16_t* cb, uint8_t* dst, size_t pixels,
                        uint32_t shift, const int32_t k[6], int bpp, uint8_t alpha);
// The eight-sample block rule over whole runs of 16 samples; returns samples done.
size_t RangeBlocks16Avx2(uint16_t* s, size_t samples, uint16_t offset);
size_t RangeBlocksOtherAvx2(uint16_t* s, size_t samples, uint16_t offset);

// --- SSE4.1 (unpack_sse41.cpp, pack_rgb_sse41.cpp) ---
// One 32-pixel block of an 8-bit Y0-Cb-Y1-Cr row: 64 bytes in, 32 Y, 16 Cr, 16 Cb out.
void UnpackYuy2BlockSse41(const uint8_t* src, int16_t* y, int16_t* cr, int16_t* cb);
// Whole v210 groups to planar 16s rows (Cr0, Cr0, Cr1); returns groups done.
size_t V210PlanarGroupsSse41(const uint8_t* src, size_t groups, int16_t* y, int16_t* cr, int16_t* cb);
// Whole v210 groups to left-aligned Y, Cb, Cr (true chroma); returns groups done.
size_t V210Yuv16GroupsSse41(const uint8_t* src, size_t groups, uint16_t* y, uint16_t* cb, uint16_t* cr);
// The truncating matrix packer over whole blocks of 8 pixels (4 chroma samples);
// `k` is {crR, crG, cbG, cbB, gain, offset}, `bpp` 3 or 4. Returns pixels done.
size_t MatrixBlocksSse41(const uint16_t* y, const uint16_t* cr, const uint16_t* cb, uint8_t* dst, size_t pixels,
                         uint32_t shift, const int32_t k[6], int bpp, uint8_t alpha);
// RGB30 over whole blocks of 8 pixels; returns pixels done. `shift` is the left shift
// (already reduced modulo 32), `format` one of the five known codes.
size_t Rgb30BlocksSse41(const int16_t* g, const int16_t* r, const int16_t* b, uint32_t* dst, size_t pixels,
                        uint32_t shift, int format);
// Dithered planar RGB to B, G, R bytes over whole blocks of 16 pixels; `noise` holds 16
// masked values per block, in pixel order. Returns pixels done.
size_t PlanarRgb24BlocksSse41(const uint16_t* g, const uint16_t* r, const uint16_t* b, uint8_t* dst, size_t pixels,
                              int shift, bool signedRead, const int32_t* noise);

}  // namespace zelt::rows
