// 256-bit pshufb path of the channel-order exports; this file alone is compiled
// with -mavx2 and is reached only through the path selector (core/paths.h).
#include "core/paths.h"
#include "direct/channel_swaps_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::direct {

namespace {
__m256i Mask(Swap op) {
  __m128i m;
  switch (op) {
    case Swap::Bytes02:
      m = _mm_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15);
      break;
    case Swap::Bytes03:
      m = _mm_setr_epi8(3, 1, 2, 0, 7, 5, 6, 4, 11, 9, 10, 8, 15, 13, 14, 12);
      break;
    case Swap::Reverse:
      m = _mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12);
      break;
    case Swap::RotLeft8:
      m = _mm_setr_epi8(3, 0, 1, 2, 7, 4, 5, 6, 11, 8, 9, 10, 15, 12, 13, 14);
      break;
    default:
      m = _mm_setr_epi8(1, 2, 3, 0, 5, 6, 7, 4, 9, 10, 11, 8, 13, 14, 15, 12);
      break;
  }
  return _mm256_broadcastsi128_si256(m);
}
inline __m256i Load(const uint32_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
template <bool kStream>
inline void Store(uint32_t* p, __m256i v) {
  if constexpr (kStream) {
    _mm256_stream_si256(reinterpret_cast<__m256i*>(p), v);
  } else {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
  }
}

// Each step loads before it stores, so dst == src, and dst behind src, give the
// pixel-by-pixel result.
template <bool kStream>
size_t Blocks(__m256i mask, uint32_t* dst, const uint32_t* src, size_t count) {
  size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const __m256i a = Load(src + i), b = Load(src + i + 8), c = Load(src + i + 16), d = Load(src + i + 24);
    Store<kStream>(dst + i, _mm256_shuffle_epi8(a, mask));
    Store<kStream>(dst + i + 8, _mm256_shuffle_epi8(b, mask));
    Store<kStream>(dst + i + 16, _mm256_shuffle_epi8(c, mask));
    Store<kStream>(dst + i + 24, _mm256_shuffle_epi8(d, mask));
  }
  for (; i + 8 <= count; i += 8) Store<kStream>(dst + i, _mm256_shuffle_epi8(Load(src + i), mask));
  if constexpr (kStream) _mm_sfence();
  return i;
}
}  // namespace

size_t SwapBlocksAvx2(Swap op, uint32_t* dst, const uint32_t* src, size_t count, bool stream) {
  const __m256i mask = Mask(op);
  // Streaming stores need a 32-byte aligned destination (frame buffers are).
  if (stream && (reinterpret_cast<uintptr_t>(dst) & 31) == 0) return Blocks<true>(mask, dst, src, count);
  return Blocks<false>(mask, dst, src, count);
}

}  // namespace zelt::direct

#endif
