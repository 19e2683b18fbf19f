// AVX2 row kernels of the field and frame operations; this file alone is compiled
// with -mavx2 and is reached only through the path selector (core/paths.h).
#include "core/paths.h"
#include "direct/fields_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::direct {

namespace {
inline __m256i Reverse8(__m256i v) { return _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0)); }
inline __m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
inline void Store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

template <bool kStream>
size_t FlipBlocks(uint8_t* dst, const uint8_t* src, size_t width) {
  auto put = [](uint8_t* p, __m256i v) {
    if constexpr (kStream) {
      _mm256_stream_si256(reinterpret_cast<__m256i*>(p), v);
    } else {
      Store(p, v);
    }
  };
  size_t x = 0;
  for (; x + 16 <= width; x += 16) {
    const __m256i a = Load(src + 4 * (width - 8 - x));
    const __m256i b = Load(src + 4 * (width - 16 - x));
    put(dst + 4 * x, Reverse8(a));
    put(dst + 4 * x + 32, Reverse8(b));
  }
  for (; x + 8 <= width; x += 8) put(dst + 4 * x, Reverse8(Load(src + 4 * (width - 8 - x))));
  return x;
}
}  // namespace

void FlipRow32Avx2(uint8_t* dst, const uint8_t* src, size_t width, bool stream) {
  if (dst == src) {
    size_t i = 0;
    for (; 2 * i + 16 <= width; i += 8) {
      uint8_t* l = dst + 4 * i;
      uint8_t* r = dst + 4 * (width - 8 - i);
      const __m256i a = Load(l), b = Load(r);
      Store(l, Reverse8(b));
      Store(r, Reverse8(a));
    }
    FlipRow32(dst + 4 * i, dst + 4 * i, width - 2 * i);
    return;
  }
  if (PartlyOverlap(dst, src, 4 * width)) {
    FlipRow32(dst, src, width);
    return;
  }
  const size_t x = stream && (reinterpret_cast<uintptr_t>(dst) & 31) == 0 ? FlipBlocks<true>(dst, src, width)
                                                                          : FlipBlocks<false>(dst, src, width);
  FlipRow32(dst + 4 * x, src, width - x);
}

void AverageIntoAvx2(uint8_t* dst, const uint8_t* other, size_t bytes) {
  size_t i = 0;
  if (!PartlyOverlap(dst, other, bytes)) {
    const __m256i one = _mm256_set1_epi8(1);
    for (; i + 32 <= bytes; i += 32) {
      const __m256i a = Load(dst + i), b = Load(other + i);
      Store(dst + i, _mm256_sub_epi8(_mm256_avg_epu8(a, b), _mm256_and_si256(_mm256_xor_si256(a, b), one)));
    }
  }
  AverageInto(dst + i, other + i, bytes - i);
}

}  // namespace zelt::direct

#endif
