// AVX2 row kernels of the planar <-> packed 4:2:2 conversions; this file alone is
// compiled with -mavx2 and is reached only through the path selector (core/paths.h). Each does whole
// blocks and leaves the tail of the row to the portable kernel, so the bytes are
// the same.
#include "core/paths.h"
#include "transcode/planar_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::transcode {

namespace {

inline __m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }

template <bool kStream>
inline void Store(uint8_t* p, __m256i v) {
  if constexpr (kStream) {
    _mm256_stream_si256(reinterpret_cast<__m256i*>(p), v);
  } else {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
  }
}

template <bool kStream>
inline void Store16(uint8_t* p, __m128i v) {
  if constexpr (kStream) {
    _mm_stream_si128(reinterpret_cast<__m128i*>(p), v);
  } else {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v);
  }
}

bool Aligned(const void* p, uintptr_t n) { return (reinterpret_cast<uintptr_t>(p) & (n - 1)) == 0; }

// 32 pixels: Y(32) and interleaved chroma C0 C1 ... (32) -> 64 bytes.
template <bool kLumaFirst, bool kStream>
inline void Interleave32(uint8_t* dst, __m256i y, __m256i uv) {
  // Per 128-bit lane the unpacks pair chroma bytes 0-7 / 8-15 with luma 0-7 / 8-15,
  // giving pixels [0-7 | 16-23] and [8-15 | 24-31]; the permutes put them in order.
  const __m256i lo = kLumaFirst ? _mm256_unpacklo_epi8(y, uv) : _mm256_unpacklo_epi8(uv, y);
  const __m256i hi = kLumaFirst ? _mm256_unpackhi_epi8(y, uv) : _mm256_unpackhi_epi8(uv, y);
  Store<kStream>(dst, _mm256_permute2x128_si256(lo, hi, 0x20));
  Store<kStream>(dst + 32, _mm256_permute2x128_si256(lo, hi, 0x31));
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

template <bool kLumaFirst, bool kStream>
size_t PackBlocks(uint8_t* dst, const uint8_t* y, const uint8_t* c0, const uint8_t* c1, size_t pairs) {
  size_t i = 0;
  for (; i + 32 <= pairs; i += 32) {  // 64 pixels
    const __m256i u = Load(c0 + i);
    const __m256i v = Load(c1 + i);
    const __m256i uvLo = _mm256_unpacklo_epi8(u, v);  // chroma [0-7 | 16-23]
    const __m256i uvHi = _mm256_unpackhi_epi8(u, v);  // chroma [8-15 | 24-31]
    Interleave32<kLumaFirst, kStream>(dst + 4 * i, Load(y + 2 * i), _mm256_permute2x128_si256(uvLo, uvHi, 0x20));
    Interleave32<kLumaFirst, kStream>(dst + 4 * i + 64, Load(y + 2 * i + 32),
                                      _mm256_permute2x128_si256(uvLo, uvHi, 0x31));
  }
  return i;
}

// Dwords after the 64-bit unpacks: 0 C0(a0) 1 C1(a0) 2 C0(b0) 3 C1(b0) 4 C0(a1) 5 C1(a1) 6 C0(b1) 7 C1(b1),
// where a0 a1 b0 b1 are the four 8-pixel quarters of a 32-pixel block in order.
template <bool kStream, bool kChroma>
size_t UnpackBlocks(uint8_t* y, uint8_t* c0, uint8_t* c1, const uint8_t* src, size_t pairs, bool lumaFirst) {
  const __m256i mask = SplitMask(lumaFirst);
  const __m256i chromaOrder = _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7);
  size_t i = 0;
  for (; i + 16 <= pairs; i += 16) {  // 32 pixels, 64 source bytes
    const __m256i a = _mm256_shuffle_epi8(Load(src + 4 * i), mask);
    const __m256i b = _mm256_shuffle_epi8(Load(src + 4 * i + 32), mask);
    Store<kStream>(y + 2 * i, _mm256_permute4x64_epi64(_mm256_unpacklo_epi64(a, b), 0xD8));
    if constexpr (kChroma) {
      const __m256i chroma = _mm256_permutevar8x32_epi32(_mm256_unpackhi_epi64(a, b), chromaOrder);
      Store16<kStream>(c0 + i, _mm256_castsi256_si128(chroma));
      Store16<kStream>(c1 + i, _mm256_extracti128_si256(chroma, 1));
    }
  }
  return i;
}

}  // namespace

void PackRowAvx2(uint8_t* dst, const uint8_t* y, const uint8_t* c0, const uint8_t* c1, size_t pairs, bool lumaFirst,
                 bool stream) {
  size_t done;
  if (stream && Aligned(dst, 32)) {
    done = lumaFirst ? PackBlocks<true, true>(dst, y, c0, c1, pairs) : PackBlocks<false, true>(dst, y, c0, c1, pairs);
  } else {
    done = lumaFirst ? PackBlocks<true, false>(dst, y, c0, c1, pairs) : PackBlocks<false, false>(dst, y, c0, c1, pairs);
  }
  PackRow(dst + 4 * done, y + 2 * done, c0 + done, c1 + done, pairs - done, lumaFirst);
}

void UnpackRowAvx2(uint8_t* y, uint8_t* c0, uint8_t* c1, const uint8_t* src, size_t pairs, bool lumaFirst,
                   bool stream) {
  const size_t done = stream && Aligned(y, 32) && Aligned(c0, 16) && Aligned(c1, 16)
                          ? UnpackBlocks<true, true>(y, c0, c1, src, pairs, lumaFirst)
                          : UnpackBlocks<false, true>(y, c0, c1, src, pairs, lumaFirst);
  UnpackRow(y + 2 * done, c0 + done, c1 + done, src + 4 * done, pairs - done, lumaFirst);
}

void UnpackLumaRowAvx2(uint8_t* y, const uint8_t* src, size_t pairs, bool lumaFirst, bool stream) {
  const size_t done = stream && Aligned(y, 32) ? UnpackBlocks<true, false>(y, nullptr, nullptr, src, pairs, lumaFirst)
                                               : UnpackBlocks<false, false>(y, nullptr, nullptr, src, pairs, lumaFirst);
  UnpackLumaRow(y + 2 * done, src + 4 * done, pairs - done, lumaFirst);
}

}  // namespace zelt::transcode

#endif  // ZELT_X86
