// SSE4.1 block loops of the unpackers (pshufb, pmovzx, packusdw). This file alone is
// built with -msse4.1; callers reach it only when CPUFeatureFlags() reports SSE4.1.
#include "core/arch.h"
#include "rows/row_kernels.h"

#if ZELT_X86
#include <smmintrin.h>

namespace zelt::rows {

void UnpackYuy2BlockSse41(const uint8_t* src, int16_t* y, int16_t* cr, int16_t* cb) {
  // Per 16 bytes (Y0 Cb Y1 Cr x 4): the eight Y bytes, then the four Cr, then the four Cb.
  const __m128i gather = _mm_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 3, 7, 11, 15, 1, 5, 9, 13);
  for (int half = 0; half < 2; ++half) {
    const uint8_t* s = src + 32 * half;
    const __m128i a = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s)), gather);
    const __m128i b = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 16)), gather);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + 16 * half), _mm_cvtepu8_epi16(a));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + 16 * half + 8), _mm_cvtepu8_epi16(b));
    const __m128i c = _mm_unpackhi_epi32(a, b);  // Cr 0-3, Cr 4-7, Cb 0-3, Cb 4-7
    _mm_storeu_si128(reinterpret_cast<__m128i*>(cr + 8 * half), _mm_cvtepu8_epi16(c));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(cb + 8 * half), _mm_cvtepu8_epi16(_mm_srli_si128(c, 8)));
  }
}

size_t V210PlanarGroupsSse41(const uint8_t* src, size_t groups, int16_t* y, int16_t* cr, int16_t* cb) {
  // Each group stores 8 luma and 4 + 4 chroma samples; the extra ones are rewritten
  // by the next group, so the last group is left to the portable loop.
  if (groups < 2) return 0;
  const __m128i mask = _mm_set1_epi32(0x3FF);
  // f0 = [Cb0 Y1 Cr1 Y4], f1 = [Y0 Cb1 Y3 Cr2] -> A; f2 = [Cr0 Y2 Cb2 Y5] -> B.
  const __m128i yFromA = _mm_setr_epi8(8, 9, 2, 3, -1, -1, 12, 13, 6, 7, -1, -1, -1, -1, -1, -1);
  const __m128i yFromB = _mm_setr_epi8(-1, -1, -1, -1, 2, 3, -1, -1, -1, -1, 6, 7, -1, -1, -1, -1);
  const __m128i cFromA = _mm_setr_epi8(-1, -1, -1, -1, 4, 5, -1, -1, 0, 1, 10, 11, -1, -1, -1, -1);
  const __m128i cFromB = _mm_setr_epi8(0, 1, 0, 1, -1, -1, -1, -1, -1, -1, -1, -1, 4, 5, -1, -1);
  size_t g = 0;
  for (; g + 1 < groups; ++g) {
    const __m128i w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 16 * g));
    const __m128i f0 = _mm_and_si128(w, mask);
    const __m128i f1 = _mm_and_si128(_mm_srli_epi32(w, 10), mask);
    const __m128i f2 = _mm_and_si128(_mm_srli_epi32(w, 20), mask);
    const __m128i a = _mm_packus_epi32(f0, f1);
    const __m128i b = _mm_packus_epi32(f2, f2);
    const __m128i yy = _mm_or_si128(_mm_shuffle_epi8(a, yFromA), _mm_shuffle_epi8(b, yFromB));
    const __m128i cc = _mm_or_si128(_mm_shuffle_epi8(a, cFromA), _mm_shuffle_epi8(b, cFromB));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + 6 * g), yy);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(cr + 3 * g), cc);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(cb + 3 * g), _mm_srli_si128(cc, 8));
  }
  return g;
}

size_t V210Yuv16GroupsSse41(const uint8_t* src, size_t groups, uint16_t* y, uint16_t* cb, uint16_t* cr) {
  // As above, with the true chroma (Cr0 Cr1 Cr2) and every value << 6.
  if (groups < 2) return 0;
  const __m128i mask = _mm_set1_epi32(0x3FF);
  const __m128i yFromA = _mm_setr_epi8(8, 9, 2, 3, -1, -1, 12, 13, 6, 7, -1, -1, -1, -1, -1, -1);
  const __m128i yFromB = _mm_setr_epi8(-1, -1, -1, -1, 2, 3, -1, -1, -1, -1, 6, 7, -1, -1, -1, -1);
  // [Cb0 Cb1 Cb2 _ Cr0 Cr1 Cr2 _]: Cb0 = A0, Cb1 = A5, Cb2 = B2; Cr0 = B0, Cr1 = A2, Cr2 = A7.
  const __m128i cFromA = _mm_setr_epi8(0, 1, 10, 11, -1, -1, -1, -1, -1, -1, 4, 5, 14, 15, -1, -1);
  const __m128i cFromB = _mm_setr_epi8(-1, -1, -1, -1, 4, 5, -1, -1, 0, 1, -1, -1, -1, -1, -1, -1);
  size_t g = 0;
  for (; g + 1 < groups; ++g) {
    const __m128i w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 16 * g));
    const __m128i a = _mm_packus_epi32(_mm_and_si128(w, mask), _mm_and_si128(_mm_srli_epi32(w, 10), mask));
    const __m128i b = _mm_and_si128(_mm_srli_epi32(w, 20), mask);
    const __m128i b16 = _mm_packus_epi32(b, b);
    const __m128i yy = _mm_or_si128(_mm_shuffle_epi8(a, yFromA), _mm_shuffle_epi8(b16, yFromB));
    const __m128i cc = _mm_or_si128(_mm_shuffle_epi8(a, cFromA), _mm_shuffle_epi8(b16, cFromB));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + 6 * g), _mm_slli_epi16(yy, 6));
    const __m128i c6 = _mm_slli_epi16(cc, 6);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(cb + 3 * g), c6);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(cr + 3 * g), _mm_srli_si128(c6, 8));
  }
  return g;
}

}  // namespace zelt::rows

#endif
