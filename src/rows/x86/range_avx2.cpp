// AVX2 form of the eight-sample block rule of the range mapping, two blocks per step
// (vpmulhuw / vpmulhw, vpaddusw / vpaddsw). This file alone is built with -mavx2;
// callers reach it only through the path selector (core/paths.h).
#include "core/paths.h"
#include "rows/row_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::rows {

size_t RangeBlocks16Avx2(uint16_t* s, size_t samples, uint16_t offset) {
  const __m256i k = _mm256_set1_epi16(static_cast<short>(56283));
  const __m256i off = _mm256_set1_epi16(static_cast<short>(offset));
  size_t i = 0;
  for (; i + 16 <= samples; i += 16) {
    __m256i* p = reinterpret_cast<__m256i*>(s + i);
    const __m256i v = _mm256_loadu_si256(p);
    _mm256_storeu_si256(p, _mm256_adds_epu16(_mm256_mulhi_epu16(v, k), off));
  }
  return i;
}

size_t RangeBlocksOtherAvx2(uint16_t* s, size_t samples, uint16_t offset) {
  const __m256i k = _mm256_set1_epi16(28141);
  const __m256i off = _mm256_set1_epi16(static_cast<short>(offset));
  size_t i = 0;
  for (; i + 16 <= samples; i += 16) {
    __m256i* p = reinterpret_cast<__m256i*>(s + i);
    const __m256i v = _mm256_loadu_si256(p);
    _mm256_storeu_si256(p, _mm256_adds_epi16(_mm256_slli_epi16(_mm256_mulhi_epi16(v, k), 1), off));
  }
  return i;
}

}  // namespace zelt::rows

#endif
