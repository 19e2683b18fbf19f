// Channel-order exports: byte reorders of runs of 32-bit pixels.
#include <cstring>

#include "core/paths.h"
#include "zelt/direct.h"
#include "direct/channel_swaps_kernels.h"
#include "core/platform.h"
#include "core/simd_level.h"

namespace zelt::direct {

void SwapRunScalar(Swap op, uint32_t* dst, const uint32_t* src, size_t count) {
  // One pixel at a time through a local: with dst one pixel ahead of src, each
  // pixel is read after its predecessor was written.
  for (size_t i = 0; i < count; ++i) {
    uint32_t x;
    std::memcpy(&x, src + i, 4);
    x = SwapPixel(op, x);
    std::memcpy(dst + i, &x, 4);
  }
}

namespace {

[[maybe_unused]] bool Overlap(const uint32_t* a, const uint32_t* b, size_t n) { return a < b ? b < a + n : a < b + n; }

// The 256-bit path converts the run whatever the overlap; a destination that
// starts inside the source, ahead of it, would then read pixels it already wrote
// in block-sized steps, so that one case runs pixel by pixel like every other path.
[[maybe_unused]] bool DstAheadInSrc(const uint32_t* dst, const uint32_t* src, size_t n) { return src < dst && dst < src + n; }

uint32_t Convert(Swap op, uint32_t* dst, const uint32_t* src, uint64_t count64) {
  SimdGuard();
  const size_t count = static_cast<uint32_t>(count64);
#if ZELT_X86
  if (CurrentPaths().avx2 && !DstAheadInSrc(dst, src, count)) {
    const bool stream = count * 4 >= kStreamBytes && !Overlap(dst, src, count);
    const size_t done = SwapBlocksAvx2(op, dst, src, count, stream);
    SwapRunScalar(op, dst + done, src + done, count - done);
    return static_cast<uint32_t>(count);
  }
  const size_t block = op == Swap::Bytes02 ? 16 : 32;
  if ((CPUFeatureFlags() & kFeatSse41) != 0 && count >= 32 && !Overlap(dst, src, count)) {
    const size_t done = SwapBlocksSse41(op, dst, src, count, block);
    SwapRunScalar(op, dst + done, src + done, count - done);
    return static_cast<uint32_t>(done);
  }
#endif
  SwapRunScalar(op, dst, src, count);
  return count != 0 ? dst[count - 1] : 0;
}

}  // namespace

}  // namespace zelt::direct

using zelt::direct::Convert;
using zelt::direct::Swap;

extern "C" {

ZELT_API uint32_t abgr2argb(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::Bytes02, dst, src, count); }
ZELT_API uint32_t argb2abgr(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::Bytes02, dst, src, count); }
ZELT_API uint32_t bgra2rgba(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::Bytes02, dst, src, count); }
ZELT_API uint32_t argb2rgba(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::Bytes03, dst, src, count); }
ZELT_API uint32_t argb2bgra(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::Reverse, dst, src, count); }
ZELT_API uint32_t bgra2argb(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::Reverse, dst, src, count); }
ZELT_API uint32_t abgr2bgra(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::RotLeft8, dst, src, count); }
ZELT_API uint32_t bgra2abgr(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::RotRight8, dst, src, count); }
ZELT_API uint32_t rgba2argb(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::RotRight8, dst, src, count); }
ZELT_API uint32_t bgra2abgrMMX(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::RotRight8, dst, src, count); }
// A right rotation like bgra2abgr, unlike abgr2bgra's left one: hosts depend on it.
ZELT_API uint32_t abgr2bgraMMX(uint32_t* dst, const uint32_t* src, uint64_t count) { return Convert(Swap::RotRight8, dst, src, count); }

}  // extern "C"
