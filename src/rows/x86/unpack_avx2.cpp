// AVX2 block loops: the v210 unpackers two groups per step, and the 8-bit component
// unpacker: eight Cb-Y0-Cr-Y1 groups (32
// bytes) per step in 32-bit lanes, the same integer arithmetic as the scalar rules,
// so every case (plain shift, full range, re-matrix) gives the scalar samples. This
// file alone is built with -mavx2; callers reach it only through the path selector (core/paths.h).
#include "core/paths.h"
#include "rows/row_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::rows {
namespace {

inline __m256i Mul(__m256i v, int32_t k) { return _mm256_mullo_epi32(v, _mm256_set1_epi32(k)); }
inline __m256i FullChroma(__m256i v) { return _mm256_srai_epi32(Mul(v, 56), 4); }
inline __m256i FullLuma(__m256i v) { return _mm256_srai_epi32(Mul(v, 55), 4); }
inline __m256i Add(__m256i a, __m256i b) { return _mm256_add_epi32(a, b); }
inline __m256i Sub(__m256i a, __m256i b) { return _mm256_sub_epi32(a, b); }
inline __m256i K(int32_t k) { return _mm256_set1_epi32(k); }

__m256i Luma(__m256i y, __m256i cr, __m256i cb, UnpackMode m, __m128i shift) {
  switch (m) {
    case UnpackMode::kShift: return _mm256_sll_epi32(y, shift);
    case UnpackMode::kFull: return Add(FullLuma(y), K(64));
    case UnpackMode::kMatrix:
      return _mm256_srai_epi32(Add(Sub(Sub(Mul(y, 1024), Mul(cr, 212)), Mul(cb, 118)), K(42240)), 8);
    case UnpackMode::kFullMatrix:
      return _mm256_srai_epi32(
          Sub(Sub(Add(Mul(FullLuma(y), 1024), K(213376)), Mul(FullChroma(cb), 118)), Mul(FullChroma(cr), 212)), 10);
  }
  return y;
}

__m256i Chroma(__m256i cr, __m256i cb, bool isCr, UnpackMode m, __m128i shift) {
  switch (m) {
    case UnpackMode::kShift: return _mm256_sll_epi32(isCr ? cr : cb, shift);
    case UnpackMode::kFull: return Add(FullChroma(isCr ? cr : cb), K(64));
    case UnpackMode::kMatrix:
      return isCr ? Add(_mm256_srai_epi32(Add(Sub(Mul(cb, 76), K(144000)), Mul(cr, 1049)), 8), K(512))
                  : Add(_mm256_srai_epi32(Add(Sub(Mul(cr, 116), K(148352)), Mul(cb, 1043)), 8), K(512));
    case UnpackMode::kFullMatrix: {
      const __m256i fcr = FullChroma(cr), fcb = FullChroma(cb);
      return isCr ? Add(_mm256_srai_epi32(Add(Sub(Mul(fcb, 76), K(504000)), Mul(fcr, 1049)), 10), K(512))
                  : Add(_mm256_srai_epi32(Add(Sub(Mul(fcr, 116), K(519232)), Mul(fcb, 1043)), 10), K(512));
    }
  }
  return cr;
}

// Low 16 bits of every 32-bit lane, packed (the 16-bit store wraps, never saturates).
inline __m256i Low16(__m256i v) { return _mm256_and_si256(v, _mm256_set1_epi32(0xFFFF)); }

}  // namespace

size_t UnpackRowYUV16sAvx2(const uint8_t* src, int16_t* dst, size_t bytes, int component, UnpackMode mode,
                           int shift) {
  if (mode == UnpackMode::kShift && (shift < 0 || shift > 15)) return 0;
  const __m128i count = _mm_cvtsi32_si128(shift);
  const __m256i byteMask = _mm256_set1_epi32(0xFF);
  // Within each 128-bit lane: Y0 of groups 0-3 and Y1 of groups 0-3 -> Y0 Y1 Y0 Y1 ...
  const __m256i interleave = _mm256_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15,
                                              0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15);
  size_t i = 0;
  for (; i + 32 <= bytes; i += 32) {
    const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i));
    const __m256i cb = _mm256_and_si256(v, byteMask);
    const __m256i cr = _mm256_and_si256(_mm256_srli_epi32(v, 16), byteMask);
    if (component == 0) {
      const __m256i y0 = _mm256_and_si256(_mm256_srli_epi32(v, 8), byteMask);
      const __m256i y1 = _mm256_srli_epi32(v, 24);
      const __m256i a = Low16(Luma(y0, cr, cb, mode, count));
      const __m256i b = Low16(Luma(y1, cr, cb, mode, count));
      const __m256i out = _mm256_shuffle_epi8(_mm256_packus_epi32(a, b), interleave);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + i / 2), out);
    } else {
      const __m256i c = Low16(Chroma(cr, cb, component == 1, mode, count));
      const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi32(c, c), 0x08);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i / 4), _mm256_castsi256_si128(packed));
    }
  }
  return i;
}

namespace {

// Two v210 groups per step, one in each 128-bit lane, with the same field shuffles
// as the SSE4.1 loop. Each group stores 8 luma and 4 + 4 chroma samples, the extra
// ones rewritten by the next group, so the loop stops short of the last group.
template <bool kLeftAligned, typename T>
size_t V210GroupPairs(const uint8_t* src, size_t groups, T* y, T* c1, T* c2, __m128i yA, __m128i yB, __m128i cA,
                      __m128i cB) {
  const __m256i mask = _mm256_set1_epi32(0x3FF);
  const __m256i yFromA = _mm256_broadcastsi128_si256(yA), yFromB = _mm256_broadcastsi128_si256(yB);
  const __m256i cFromA = _mm256_broadcastsi128_si256(cA), cFromB = _mm256_broadcastsi128_si256(cB);
  size_t g = 0;
  for (; g + 2 < groups; g += 2) {
    const __m256i w = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 16 * g));
    const __m256i a =
        _mm256_packus_epi32(_mm256_and_si256(w, mask), _mm256_and_si256(_mm256_srli_epi32(w, 10), mask));
    const __m256i f2 = _mm256_and_si256(_mm256_srli_epi32(w, 20), mask);
    const __m256i b = _mm256_packus_epi32(f2, f2);
    __m256i yy = _mm256_or_si256(_mm256_shuffle_epi8(a, yFromA), _mm256_shuffle_epi8(b, yFromB));
    __m256i cc = _mm256_or_si256(_mm256_shuffle_epi8(a, cFromA), _mm256_shuffle_epi8(b, cFromB));
    if constexpr (kLeftAligned) {
      yy = _mm256_slli_epi16(yy, 6);
      cc = _mm256_slli_epi16(cc, 6);
    }
    const __m128i y0 = _mm256_castsi256_si128(yy), y1 = _mm256_extracti128_si256(yy, 1);
    const __m128i k0 = _mm256_castsi256_si128(cc), k1 = _mm256_extracti128_si256(cc, 1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + 6 * g), y0);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + 6 * g + 6), y1);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c1 + 3 * g), k0);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c2 + 3 * g), _mm_srli_si128(k0, 8));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c1 + 3 * g + 3), k1);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c2 + 3 * g + 3), _mm_srli_si128(k1, 8));
  }
  return g;
}

}  // namespace

size_t V210PlanarGroupsAvx2(const uint8_t* src, size_t groups, int16_t* y, int16_t* cr, int16_t* cb) {
  // A = [Cb0 Y1 Cr1 Y4 Y0 Cb1 Y3 Cr2], B = [Cr0 Y2 Cb2 Y5 ...]; chroma out [Cr0 Cr0 Cr1 _ Cb0 Cb1 Cb2 _].
  return V210GroupPairs<false>(src, groups, y, cr, cb,
                               _mm_setr_epi8(8, 9, 2, 3, -1, -1, 12, 13, 6, 7, -1, -1, -1, -1, -1, -1),
                               _mm_setr_epi8(-1, -1, -1, -1, 2, 3, -1, -1, -1, -1, 6, 7, -1, -1, -1, -1),
                               _mm_setr_epi8(-1, -1, -1, -1, 4, 5, -1, -1, 0, 1, 10, 11, -1, -1, -1, -1),
                               _mm_setr_epi8(0, 1, 0, 1, -1, -1, -1, -1, -1, -1, -1, -1, 4, 5, -1, -1));
}

size_t V210Yuv16GroupsAvx2(const uint8_t* src, size_t groups, uint16_t* y, uint16_t* cb, uint16_t* cr) {
  // Chroma out [Cb0 Cb1 Cb2 _ Cr0 Cr1 Cr2 _], the true chroma.
  return V210GroupPairs<true>(src, groups, y, cb, cr,
                              _mm_setr_epi8(8, 9, 2, 3, -1, -1, 12, 13, 6, 7, -1, -1, -1, -1, -1, -1),
                              _mm_setr_epi8(-1, -1, -1, -1, 2, 3, -1, -1, -1, -1, 6, 7, -1, -1, -1, -1),
                              _mm_setr_epi8(0, 1, 10, 11, -1, -1, -1, -1, -1, -1, 4, 5, 14, 15, -1, -1),
                              _mm_setr_epi8(-1, -1, -1, -1, 4, 5, -1, -1, 0, 1, -1, -1, -1, -1, -1, -1));
}

}  // namespace zelt::rows

#endif
