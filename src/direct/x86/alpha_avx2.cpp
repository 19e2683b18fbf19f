// AVX2 blocks of the chroma strip; this file alone is compiled with -mavx2 and is
// reached only through the path selector (core/paths.h).
#include "core/paths.h"
#include "direct/alpha_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::direct {

namespace {
template <bool kStream>
size_t Blocks(uint8_t* dst, const uint8_t* src, size_t pairs) {
  const __m256i keep = _mm256_set1_epi32(static_cast<int>(~0x007F007Fu));
  const __m256i set = _mm256_set1_epi32(0x00800080);
  size_t i = 0;
  for (; i + 32 <= pairs; i += 32) {
    for (size_t k = 0; k < 4; ++k) {
      const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 4 * i + 32 * k));
      const __m256i out = _mm256_or_si256(_mm256_and_si256(v, keep), set);
      if constexpr (kStream) {
        _mm256_stream_si256(reinterpret_cast<__m256i*>(dst + 4 * i + 32 * k), out);
      } else {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 4 * i + 32 * k), out);
      }
    }
  }
  return i;
}
}  // namespace

size_t StripChromaBlocksAvx2(uint8_t* dst, const uint8_t* src, size_t pairs, bool stream) {
  if (stream && dst != src && (reinterpret_cast<uintptr_t>(dst) & 31) == 0) return Blocks<true>(dst, src, pairs);
  return Blocks<false>(dst, src, pairs);
}

void StreamFence() { _mm_sfence(); }

}  // namespace zelt::direct

#endif
