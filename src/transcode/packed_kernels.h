// Row kernels of the packed 4:2:2 reorders. The portable versions are the
// definition; the AVX2 versions (packed_avx2.cpp) do whole 32-byte blocks and hand
// the rest of the run to the portable kernel, so their output is the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/platform.h"

namespace zelt::transcode {

// bytes/2 words, each b0 b1 -> b1 b0 (an odd last byte is left alone). dst == src is fine.
void SwapWordsRun(uint8_t* dst, const uint8_t* src, size_t bytes);
// `groups` 4-byte groups, each b0 b1 b2 b3 -> b0 b3 b2 b1, in order, one group at a time.
void ExchangeChromaRun(uint8_t* dst, const uint8_t* src, size_t groups);

// `stream`: use non-temporal stores (the caller sets it for frames larger than
// the last-level cache; see kStreamFrameBytes) and calls StreamingFence() after
// the frame.
void SwapWordsRunAvx2(uint8_t* dst, const uint8_t* src, size_t bytes, bool stream);
void ExchangeChromaRunAvx2(uint8_t* dst, const uint8_t* src, size_t groups, bool stream);

// Frames of at least this many destination bytes are written with streaming stores.
inline constexpr size_t kStreamFrameBytes = kStreamingThreshold;

// Helpers defined in this header have internal linkage: it is also compiled into
// the AVX2 objects, and one shared inline copy could be handed to a baseline caller.
// True when [a, a+n) and [b, b+n) share a byte but do not start at the same place.
static inline bool PartlyOverlap(const uint8_t* a, const uint8_t* b, size_t n) {
  if (a == b) return false;
  return a < b ? b < a + n : a < b + n;
}

}  // namespace zelt::transcode
