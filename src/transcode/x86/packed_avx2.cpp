// AVX2 byte reorders; this file alone is compiled with -mavx2 and is reached only
// through the path selector (core/paths.h).
#include "core/paths.h"
#include "transcode/packed_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::transcode {

namespace {

template <bool kStream>
void Store(uint8_t* p, __m256i v) {
  if constexpr (kStream) {
    _mm256_stream_si256(reinterpret_cast<__m256i*>(p), v);
  } else {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
  }
}

template <bool kStream>
size_t ShuffleBlocks(uint8_t* dst, const uint8_t* src, size_t bytes, __m256i mask) {
  size_t i = 0;
  for (; i + 64 <= bytes; i += 64) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i + 32));
    Store<kStream>(dst + i, _mm256_shuffle_epi8(a, mask));
    Store<kStream>(dst + i + 32, _mm256_shuffle_epi8(b, mask));
  }
  for (; i + 32 <= bytes; i += 32) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i));
    Store<kStream>(dst + i, _mm256_shuffle_epi8(a, mask));
  }
  return i;
}

// Shuffles whole 32-byte blocks and returns how many bytes it did. Every block is
// read before it is written, so dst == src gives the sequential result.
// Streaming stores need a 32-byte aligned destination (frame buffers are); the
// caller fences once after the frame.
size_t Shuffle(uint8_t* dst, const uint8_t* src, size_t bytes, __m256i mask, bool stream) {
  if (stream && dst != src && (reinterpret_cast<uintptr_t>(dst) & 31) == 0) {
    return ShuffleBlocks<true>(dst, src, bytes, mask);
  }
  return ShuffleBlocks<false>(dst, src, bytes, mask);
}

}  // namespace

void SwapWordsRunAvx2(uint8_t* dst, const uint8_t* src, size_t bytes, bool stream) {
  const __m256i mask = _mm256_setr_epi8(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14,  //
                                        1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14);
  if (PartlyOverlap(dst, src, bytes)) {
    SwapWordsRun(dst, src, bytes);
    return;
  }
  const size_t done = Shuffle(dst, src, bytes, mask, stream);
  SwapWordsRun(dst + done, src + done, bytes - done);
}

void ExchangeChromaRunAvx2(uint8_t* dst, const uint8_t* src, size_t groups, bool stream) {
  const __m256i mask = _mm256_setr_epi8(0, 3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12, 15, 14, 13,  //
                                        0, 3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12, 15, 14, 13);
  const size_t bytes = groups * 4;
  if (PartlyOverlap(dst, src, bytes)) {
    ExchangeChromaRun(dst, src, groups);
    return;
  }
  const size_t done = Shuffle(dst, src, bytes, mask, stream);
  ExchangeChromaRun(dst + done, src + done, groups - done / 4);
}

}  // namespace zelt::transcode

#endif
