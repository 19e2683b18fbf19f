// 256-bit twin of the rounded 4:2:0 decoder: the same 16.16 products, the same
// half-up rounding and saturation, eight pixels at a time.
#include "core/arch.h"

#if ZELT_X86

#include <immintrin.h>

#include <cstddef>
#include <cstring>

#include "transcode/fast_decode.h"

namespace zelt::transcode::fast_decode {

void YCbCr420ToBgrC4Avx2(Set set, const uint8_t* const planes[3], const int32_t steps[3], uint8_t* dst,
                         int32_t dstStep, uint32_t width, uint32_t height, uint8_t alpha) {
  const FixedSet& k = FixedCoefficients(set);
  const __m256i yOffset = _mm256_set1_epi32(k.yOffset), yScale = _mm256_set1_epi32(k.yScale);
  const __m256i crToR = _mm256_set1_epi32(k.crToR), crToG = _mm256_set1_epi32(k.crToG);
  const __m256i cbToG = _mm256_set1_epi32(k.cbToG), cbToB = _mm256_set1_epi32(k.cbToB);
  const __m256i centre = _mm256_set1_epi32(128), half = _mm256_set1_epi32(32768);
  const __m256i a = _mm256_set1_epi32(alpha);
  const __m128i dup = _mm_setr_epi8(0, 0, 1, 1, 2, 2, 3, 3, -1, -1, -1, -1, -1, -1, -1, -1);
  // Per lane B0-3 G0-3 R0-3 A0-3 to B G R A pixels.
  const __m256i interleave =
      _mm256_setr_epi8(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14,
                       3, 7, 11, 15);
  const uint32_t blocks = width / 8;
  for (uint32_t r = 0; r < height; ++r) {
    const uint8_t* y = planes[0] + ptrdiff_t{steps[0]} * r;
    const uint8_t* cb = planes[1] + ptrdiff_t{steps[1]} * (r / 2);
    const uint8_t* cr = planes[2] + ptrdiff_t{steps[2]} * (r / 2);
    uint8_t* d = dst + ptrdiff_t{dstStep} * r;
    for (uint32_t i = 0; i < blocks; ++i) {
      int32_t cb4, cr4;
      std::memcpy(&cb4, cb + 4 * i, 4);
      std::memcpy(&cr4, cr + 4 * i, 4);
      const __m256i yv = _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(y + 8 * i)));
      const __m256i u = _mm256_sub_epi32(_mm256_cvtepu8_epi32(_mm_shuffle_epi8(_mm_cvtsi32_si128(cb4), dup)), centre);
      const __m256i v = _mm256_sub_epi32(_mm256_cvtepu8_epi32(_mm_shuffle_epi8(_mm_cvtsi32_si128(cr4), dup)), centre);
      const __m256i yy = _mm256_add_epi32(_mm256_mullo_epi32(_mm256_sub_epi32(yv, yOffset), yScale), half);
      const __m256i b = _mm256_srai_epi32(_mm256_add_epi32(yy, _mm256_mullo_epi32(u, cbToB)), 16);
      const __m256i g = _mm256_srai_epi32(
          _mm256_sub_epi32(_mm256_sub_epi32(yy, _mm256_mullo_epi32(v, crToG)), _mm256_mullo_epi32(u, cbToG)), 16);
      const __m256i rr = _mm256_srai_epi32(_mm256_add_epi32(yy, _mm256_mullo_epi32(v, crToR)), 16);
      const __m256i bytes = _mm256_packus_epi16(_mm256_packus_epi32(b, g), _mm256_packus_epi32(rr, a));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 32 * i), _mm256_shuffle_epi8(bytes, interleave));
    }
    for (uint32_t x = blocks * 8; x < width; ++x) {
      DecodeBgr(set, y[x], cb[x / 2], cr[x / 2], d + 4 * x);
      d[4 * x + 3] = alpha;
    }
  }
}

}  // namespace zelt::transcode::fast_decode

#endif
