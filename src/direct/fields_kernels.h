// Row kernels of the field and frame operations. The portable routines are the
// definition; the AVX2 ones do whole blocks and hand the rest to them.
#pragma once

#include "core/arch.h"
#include <cstddef>
#include <cstdint>

namespace zelt::direct {

// Helpers defined in this header have internal linkage: it is also compiled into
// the AVX2 objects, and one shared inline copy could be handed to a baseline caller.
// True when [a, a+n) and [b, b+n) share bytes without being the same range.
static inline bool PartlyOverlap(const uint8_t* a, const uint8_t* b, size_t n) {
  if (a == b) return false;
  return a < b ? b < a + n : a < b + n;
}

// Mirrors `width` 32-bit pixels: dst[x] = src[width - 1 - x]. dst == src swaps
// pixel pairs in place (the middle pixel of an odd width stays).
void FlipRow32(uint8_t* dst, const uint8_t* src, size_t width);

// dst[i] = (dst[i] + other[i]) >> 1 for i < bytes, in ascending order: a range that
// partly overlaps gives the byte-by-byte result.
void AverageInto(uint8_t* dst, const uint8_t* other, size_t bytes);

#if ZELT_X86
// `stream`: non-temporal stores for distinct buffers (used when dst is 32-byte
// aligned; frames far larger than the cache).
void FlipRow32Avx2(uint8_t* dst, const uint8_t* src, size_t width, bool stream);

// Frames of at least this many bytes are written with streaming stores.
inline constexpr size_t kStreamFrameBytes = size_t{8} << 20;
void AverageIntoAvx2(uint8_t* dst, const uint8_t* other, size_t bytes);
#endif

}  // namespace zelt::direct
