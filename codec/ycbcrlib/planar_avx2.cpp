// AVX2 row kernels of the planar <-> packed 4:2:2 conversions; this file alone is compiled
// with -mavx2 and is reached only through UseAvx2(). Each does whole blocks and
// leaves the tail of the row to the portable kernel, so the bytes are the same.
#include "ycbcrlib/planar_kernels.h"

#if defined(__x86_64__) || defined(_M_X64)
#include <immintrin.h>

namespace zelt::ycbcr {

namespace {

inline __m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
inline void Store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

// 32 pixels: Y(32) and interleaved chroma C0 C1 ... (32) -> 64 bytes.
template <bool kLumaFirst>
inline void Interleave32(uint8_t* dst, __m256i y, __m256i uv) {
  // Per 128-bit lane the unpacks pair chroma bytes 0-7 / 8-15 with luma 0-7 / 8-15,
  // giving pixels [0-7 | 16-23] and [8-15 | 24-31]; the permutes put them in order.
  const __m256i lo = kLumaFirst ? _mm256_unpacklo_epi8(y, uv) : _mm256_unpacklo_epi8(uv, y);
  const __m256i hi = kLumaFirst ? _mm256_unpackhi_epi8(y, uv) : _mm256_unpackhi_epi8(uv, y);
  Store(dst, _mm256_permute2x128_si256(lo, hi, 0x20));
  Store(dst + 32, _mm256_permute2x128_si256(lo, hi, 0x31));
}

// Per 16-byte lane (8 pixels): luma to bytes 0-7, first chroma to 8-11, second to 12-15.
inline __m256i SplitMask(bool lumaFirst) {
  if (lumaFirst) {
    return _mm256_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 5, 9, 13, 3, 7, 11, 15,  //
                            0, 2, 4, 6, 8, 10, 12, 14, 1, 5, 9, 13, 3, 7, 11, 15);
  }
  return _mm256_setr_epi8(1, 3, 5, 7, 9, 11, 13, 15, 0, 4, 8, 12, 2, 6, 10, 14,  //
                          1, 3, 5, 7, 9, 11, 13, 15, 0, 4, 8, 12, 2, 6, 10, 14);
}

template <bool kLumaFirst>
void PackBlocks(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, size_t pairs) {
  size_t i = 0;
  for (; i + 32 <= pairs; i += 32) {  // 64 pixels
    const __m256i u = Load(cb + i);
    const __m256i v = Load(cr + i);
    const __m256i uvLo = _mm256_unpacklo_epi8(u, v);  // chroma [0-7 | 16-23]
    const __m256i uvHi = _mm256_unpackhi_epi8(u, v);  // chroma [8-15 | 24-31]
    Interleave32<kLumaFirst>(dst + 4 * i, Load(y + 2 * i), _mm256_permute2x128_si256(uvLo, uvHi, 0x20));
    Interleave32<kLumaFirst>(dst + 4 * i + 64, Load(y + 2 * i + 32), _mm256_permute2x128_si256(uvLo, uvHi, 0x31));
  }
  PackRow(dst + 4 * i, y + 2 * i, cb + i, cr + i, pairs - i, kLumaFirst);
}

}  // namespace

void PackRowAvx2(uint8_t* dst, const uint8_t* y, const uint8_t* c0, const uint8_t* c1, size_t pairs, bool lumaFirst) {
  if (lumaFirst) {
    PackBlocks<true>(dst, y, c0, c1, pairs);
  } else {
    PackBlocks<false>(dst, y, c0, c1, pairs);
  }
}

void UnpackRowAvx2(uint8_t* y, uint8_t* cb, uint8_t* cr, const uint8_t* src, size_t pairs, bool lumaFirst) {
  const __m256i mask = SplitMask(lumaFirst);
  // Dwords after the 64-bit unpacks: 0 Cb(a0) 1 Cr(a0) 2 Cb(b0) 3 Cr(b0) 4 Cb(a1) 5 Cr(a1) 6 Cb(b1) 7 Cr(b1),
  // where a0 a1 b0 b1 are the four 8-pixel quarters of the 32-pixel block in order.
  const __m256i chromaOrder = _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7);
  size_t i = 0;
  for (; i + 16 <= pairs; i += 16) {  // 32 pixels, 64 source bytes
    const __m256i a = _mm256_shuffle_epi8(Load(src + 4 * i), mask);
    const __m256i b = _mm256_shuffle_epi8(Load(src + 4 * i + 32), mask);
    const __m256i luma = _mm256_permute4x64_epi64(_mm256_unpacklo_epi64(a, b), 0xD8);
    const __m256i chroma = _mm256_permutevar8x32_epi32(_mm256_unpackhi_epi64(a, b), chromaOrder);
    Store(y + 2 * i, luma);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(cb + i), _mm256_castsi256_si128(chroma));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(cr + i), _mm256_extracti128_si256(chroma, 1));
  }
  UnpackRow(y + 2 * i, cb + i, cr + i, src + 4 * i, pairs - i, lumaFirst);
}

void UnpackLumaRowAvx2(uint8_t* y, const uint8_t* src, size_t pairs, bool lumaFirst) {
  const __m256i mask = SplitMask(lumaFirst);
  size_t i = 0;
  for (; i + 16 <= pairs; i += 16) {
    const __m256i a = _mm256_shuffle_epi8(Load(src + 4 * i), mask);
    const __m256i b = _mm256_shuffle_epi8(Load(src + 4 * i + 32), mask);
    Store(y + 2 * i, _mm256_permute4x64_epi64(_mm256_unpacklo_epi64(a, b), 0xD8));
  }
  UnpackLumaRow(y + 2 * i, src + 4 * i, pairs - i, lumaFirst);
}

}  // namespace zelt::ycbcr

#else

namespace zelt::ycbcr {
// Other processors have the portable kernels only; UseAvx2() is never true there.
void PackRowAvx2(uint8_t* dst, const uint8_t* y, const uint8_t* c0, const uint8_t* c1, size_t pairs, bool lumaFirst) {
  PackRow(dst, y, c0, c1, pairs, lumaFirst);
}
void UnpackRowAvx2(uint8_t* y, uint8_t* c0, uint8_t* c1, const uint8_t* src, size_t pairs, bool lumaFirst) {
  UnpackRow(y, c0, c1, src, pairs, lumaFirst);
}
void UnpackLumaRowAvx2(uint8_t* y, const uint8_t* src, size_t pairs, bool lumaFirst) {
  UnpackLumaRow(y, src, pairs, lumaFirst);
}
}  // namespace zelt::ycbcr

#endif
