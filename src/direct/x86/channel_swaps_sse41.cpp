// 128-bit pshufb blocks of the channel-order exports; this file alone is compiled
// with -msse4.1 and is reached only when CPUFeatureFlags() reports bit 14.
#include "core/arch.h"
#include "direct/channel_swaps_kernels.h"

#if ZELT_X86
#include <smmintrin.h>

namespace zelt::direct {

namespace {
__m128i Mask(Swap op) {
  switch (op) {
    case Swap::Bytes02:
      return _mm_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15);
    case Swap::Bytes03:
      return _mm_setr_epi8(3, 1, 2, 0, 7, 5, 6, 4, 11, 9, 10, 8, 15, 13, 14, 12);
    case Swap::Reverse:
      return _mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12);
    case Swap::RotLeft8:
      return _mm_setr_epi8(3, 0, 1, 2, 7, 4, 5, 6, 11, 8, 9, 10, 15, 12, 13, 14);
    case Swap::RotRight8:
      break;
  }
  return _mm_setr_epi8(1, 2, 3, 0, 5, 6, 7, 4, 9, 10, 11, 8, 13, 14, 15, 12);
}
}  // namespace

size_t SwapBlocksSse41(Swap op, uint32_t* dst, const uint32_t* src, size_t count, size_t block) {
  const __m128i mask = Mask(op);
  const size_t whole = count / block * block;
  for (size_t i = 0; i < whole; i += 4) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), _mm_shuffle_epi8(v, mask));
  }
  return whole;
}

}  // namespace zelt::direct

#endif
