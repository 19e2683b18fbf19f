// AVX2 block loop of the truncating matrix packers: 16 pixels (8 chroma samples) per
// step in 32-bit lanes, the same integer arithmetic as the per-pixel rule. This file
// alone is built with -mavx2; callers reach it only through the path selector (core/paths.h).
#include "core/paths.h"
#include "rows/row_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::rows {
namespace {

inline __m256i Clamp255(__m256i v) {
  return _mm256_min_epi32(_mm256_max_epi32(v, _mm256_setzero_si256()), _mm256_set1_epi32(255));
}

}  // namespace

size_t MatrixBlocksAvx2(const uint16_t* y, const uint16_t* cr, const uint16_t* cb, uint8_t* dst, size_t pixels,
                        uint32_t shift, const int32_t k[6], int bpp, uint8_t alpha) {
  const __m128i count = _mm_cvtsi32_si128(int(shift));
  const __m256i crR = _mm256_set1_epi32(k[0]), crG = _mm256_set1_epi32(k[1]), cbG = _mm256_set1_epi32(k[2]);
  const __m256i cbB = _mm256_set1_epi32(k[3]), gain = _mm256_set1_epi32(k[4]), offset = _mm256_set1_epi32(k[5]);
  const __m256i c128 = _mm256_set1_epi32(128);
  const __m256i alphaBits = _mm256_set1_epi32(int32_t(uint32_t(alpha) << 24));
  const __m256i pairsLo = _mm256_setr_epi32(0, 0, 1, 1, 2, 2, 3, 3), pairsHi = _mm256_setr_epi32(4, 4, 5, 5, 6, 6, 7, 7);
  // B G R of four pixels into the low 12 bytes of each lane, then the two lanes joined.
  const __m256i to24 = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,
                                        0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  const __m256i join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
  size_t x = 0;
  for (; x + 16 <= pixels; x += 16) {
    const __m256i yv = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(y + x));
    const __m256i c = _mm256_sub_epi32(
        _mm256_srl_epi32(_mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(cr + x / 2))), count),
        c128);
    const __m256i d = _mm256_sub_epi32(
        _mm256_srl_epi32(_mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(cb + x / 2))), count),
        c128);
    for (int half = 0; half < 2; ++half) {
      const __m128i y16 = half ? _mm256_extracti128_si256(yv, 1) : _mm256_castsi256_si128(yv);
      const __m256i y32 = _mm256_srl_epi32(_mm256_cvtepu16_epi32(y16), count);
      const __m256i ch = _mm256_permutevar8x32_epi32(c, half ? pairsHi : pairsLo);
      const __m256i dh = _mm256_permutevar8x32_epi32(d, half ? pairsHi : pairsLo);
      const __m256i yy = _mm256_srai_epi32(_mm256_mullo_epi32(_mm256_sub_epi32(y32, offset), gain), 7);
      const __m256i b = Clamp255(_mm256_srai_epi32(_mm256_add_epi32(yy, _mm256_mullo_epi32(dh, cbB)), 7));
      const __m256i g = Clamp255(_mm256_srai_epi32(
          _mm256_sub_epi32(_mm256_sub_epi32(_mm256_add_epi32(yy, yy), _mm256_mullo_epi32(dh, cbG)),
                           _mm256_mullo_epi32(ch, crG)),
          8));
      const __m256i r = Clamp255(_mm256_srai_epi32(_mm256_add_epi32(yy, _mm256_mullo_epi32(ch, crR)), 7));
      const __m256i words = _mm256_or_si256(_mm256_or_si256(b, _mm256_slli_epi32(g, 8)), _mm256_slli_epi32(r, 16));
      const size_t px = x + 8 * size_t(half);
      if (bpp == 4) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 4 * px), _mm256_or_si256(words, alphaBits));
      } else {
        const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(words, to24), join);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 3 * px), _mm256_castsi256_si128(packed));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 3 * px + 16), _mm256_extracti128_si256(packed, 1));
      }
    }
  }
  return x;
}

}  // namespace zelt::rows

#endif
