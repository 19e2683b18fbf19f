// Packed 4:2:2 reorders, copies and flips (UYVY, YUY2, YVYU, cyuv; 012v copy).
#include <algorithm>
#include <cstring>

#include "transcode/packed_kernels.h"
#include "transcode/routes.h"
#include "core/platform.h"
#include "core/paths.h"
#include "core/simd_level.h"
#include "zelt/ycbcr.h"

namespace zelt::transcode {

void SwapWordsRun(uint8_t* dst, const uint8_t* src, size_t bytes) {
  const size_t words = bytes / 2;
  for (size_t i = 0; i < words; ++i) {
    uint16_t w;
    std::memcpy(&w, src + 2 * i, 2);
    w = static_cast<uint16_t>((w << 8) | (w >> 8));
    std::memcpy(dst + 2 * i, &w, 2);
  }
}

void ExchangeChromaRun(uint8_t* dst, const uint8_t* src, size_t groups) {
  for (size_t i = 0; i < groups; ++i) {
    uint32_t g;
    std::memcpy(&g, src + 4 * i, 4);
    // little-endian: byte 1 is bits 8..15, byte 3 bits 24..31
    g = (g & 0x00FF00FFu) | ((g >> 16) & 0x0000FF00u) | ((g << 16) & 0xFF000000u);
    std::memcpy(dst + 4 * i, &g, 4);
  }
}

namespace {

using RunFn = void (*)(uint8_t*, const uint8_t*, size_t);

bool BigFrame(uint32_t height, uint32_t stride) { return size_t{height} * stride >= kStreamFrameBytes; }

void SwapRun(bool avx2, bool stream, uint8_t* dst, const uint8_t* src, size_t bytes) {
  if (avx2) {
    SwapWordsRunAvx2(dst, src, bytes, stream);
  } else {
    SwapWordsRun(dst, src, bytes);
  }
}

// Byte swap of every 16-bit word. Equal strides: one run over the frame, padding
// included; otherwise min(dst_stride, src_stride) bytes per row.
uint32_t SwapFrame(uint8_t* dst, const uint8_t* src, uint32_t height, uint32_t ds, uint32_t ss) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const bool stream = BigFrame(height, ds);
  if (ds == ss) {
    SwapRun(avx2, stream, dst, src, size_t{height * ds / 2} * 2);
  } else {
    const size_t n = std::min(ds, ss) / 2 * 2;
    for (uint32_t r = 0; r < height; ++r) SwapRun(avx2, stream, dst + size_t{r} * ds, src + size_t{r} * ss, n);
  }
  if (stream) StreamingFence();
  return height * ds;
}

// The same swap, width/2 groups per row (YVYU <-> UYVY).
uint32_t SwapGroups(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const bool stream = BigFrame(height, ds);
  const size_t n = size_t{width / 2} * 4;
  if (n != 0) {
    for (uint32_t r = 0; r < height; ++r) SwapRun(avx2, stream, dst + size_t{r} * ds, src + size_t{r} * ss, n);
  }
  if (stream) StreamingFence();
  return height * ds;
}

uint32_t ExchangeChroma(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds,
                        uint32_t ss) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const bool stream = BigFrame(height, ds);
  const size_t groups = width / 2;
  if (groups != 0) {
    for (uint32_t r = 0; r < height; ++r) {
      uint8_t* d = dst + size_t{r} * ds;
      const uint8_t* s = src + size_t{r} * ss;
      if (avx2) {
        ExchangeChromaRunAvx2(d, s, groups, stream);
      } else {
        ExchangeChromaRun(d, s, groups);
      }
    }
  }
  if (stream) StreamingFence();
  return height * ds;
}

uint32_t CopyFrame(uint8_t* dst, const uint8_t* src, uint32_t height, uint32_t ds, uint32_t ss) {
  if (ds == ss) {
    CopyMemoryFast(dst, src, height * ds);
  } else {
    const size_t n = std::min(ds, ss);
    const bool stream = BigFrame(height, ds);
    for (uint32_t r = 0; r < height; ++r) {
      if (stream) {
        CopyMemoryStreaming(dst + size_t{r} * ds, src + size_t{r} * ss, n);
      } else if (n != 0) {
        std::memcpy(dst + size_t{r} * ds, src + size_t{r} * ss, n);
      }
    }
    if (stream) StreamingFence();
  }
  return height * ds;
}

uint32_t FlipCopy(uint8_t* dst, const uint8_t* src, uint32_t height, uint32_t ds, uint32_t ss) {
  SimdGuard();
  const size_t n = std::min(ds, ss);
  const bool stream = BigFrame(height, ds);
  for (uint32_t r = 0; r < height; ++r) {
    const uint32_t srcOffset = (height - 1 - r) * ss;  // 32-bit on purpose
    if (stream) {
      CopyMemoryStreaming(dst + size_t{r} * ds, src + srcOffset, n);
    } else if (n != 0) {
      std::memcpy(dst + size_t{r} * ds, src + srcOffset, n);
    }
  }
  if (stream) StreamingFence();
  return height * ds;
}

// Exchanges bytes [from, to) of two rows.
void ExchangeTails(uint8_t* a, uint8_t* b, size_t from, size_t to) {
  uint8_t tmp[256];
  for (size_t i = from; i < to; i += sizeof tmp) {
    const size_t n = std::min(sizeof tmp, to - i);
    std::memcpy(tmp, a + i, n);
    std::memcpy(a + i, b + i, n);
    std::memcpy(b + i, tmp, n);
  }
}

// The swap into the destination followed by cycbcr_invert of the destination. For
// separate buffers this runs as one pass that gives the same bytes: destination row
// r gets the swapped source row height-1-r, and the row tails the swap leaves alone
// (dst_stride above src_stride) change places as the flip would move them. Odd
// equal strides (words straddling rows) and overlapping buffers take the two passes.
uint32_t SwapThenFlip(uint8_t* dst, const uint8_t* src, uint32_t height, uint32_t ds, uint32_t ss) {
  const size_t frameBytes = size_t{height} * ds;
  const bool overlap = dst < src + size_t{height} * ss && src < dst + frameBytes;
  const bool wraps = frameBytes != uint32_t(height * ds);
  if (overlap || wraps || (ds == ss && (ds & 1) != 0)) {
    const uint32_t result = SwapFrame(dst, src, height, ds, ss);
    cycbcr_invert(dst, ds, height);
    return result;
  }
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const bool stream = BigFrame(height, ds);
  const size_t n = std::min(ds, ss) / 2 * 2;
  for (uint32_t i = 0; i < height / 2; ++i) {
    const uint32_t j = height - 1 - i;
    uint8_t* di = dst + size_t{i} * ds;
    uint8_t* dj = dst + size_t{j} * ds;
    ExchangeTails(di, dj, n, ds);
    SwapRun(avx2, stream, di, src + size_t{j} * ss, n);
    SwapRun(avx2, stream, dj, src + size_t{i} * ss, n);
  }
  if (height & 1) {
    const uint32_t m = height / 2;
    SwapRun(avx2, stream, dst + size_t{m} * ds, src + size_t{m} * ss, n);
  }
  if (stream) StreamingFence();
  return height * ds;
}

}  // namespace

}  // namespace zelt::transcode

using namespace zelt;
using namespace zelt::transcode;

#define ZELT_PACKED_ARGS uint8_t *dst, const uint8_t *src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride

extern "C" {

ZELT_API uint32_t cycbcr_uyvy_to_yuy2(ZELT_PACKED_ARGS) { return SwapFrame(dst, src, height, dst_stride, src_stride); }
ZELT_API uint32_t cycbcr_yuy2_to_uyvy(ZELT_PACKED_ARGS) { return SwapFrame(dst, src, height, dst_stride, src_stride); }

ZELT_API uint32_t cycbcr_uyvy_to_yvyu(ZELT_PACKED_ARGS) {
  return SwapGroups(dst, src, width, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_yvyu_to_uyvy(ZELT_PACKED_ARGS) {
  return SwapGroups(dst, src, width, height, dst_stride, src_stride);
}

ZELT_API uint32_t cycbcr_yuy2_to_yvyu(ZELT_PACKED_ARGS) {
  return ExchangeChroma(dst, src, width, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_yvyu_to_yuy2(ZELT_PACKED_ARGS) {
  return ExchangeChroma(dst, src, width, height, dst_stride, src_stride);
}

ZELT_API uint32_t cycbcr_uyvy_to_cyuv(ZELT_PACKED_ARGS) { return FlipCopy(dst, src, height, dst_stride, src_stride); }
ZELT_API uint32_t cycbcr_cyuv_to_uyvy(ZELT_PACKED_ARGS) { return FlipCopy(dst, src, height, dst_stride, src_stride); }

ZELT_API uint32_t cycbcr_yuy2_to_cyuv(ZELT_PACKED_ARGS) {
  return SwapThenFlip(dst, src, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_cyuv_to_yuy2(ZELT_PACKED_ARGS) {
  return SwapThenFlip(dst, src, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_yvyu_to_cyuv(ZELT_PACKED_ARGS) {
  return SwapThenFlip(dst, src, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_cyuv_to_yvyu(ZELT_PACKED_ARGS) {
  return SwapThenFlip(dst, src, height, dst_stride, src_stride);
}

ZELT_API uint32_t cycbcr_uyvy_to_uyvy(ZELT_PACKED_ARGS) {
  SimdGuard();
  return CopyFrame(dst, src, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_yuy2_to_yuy2(ZELT_PACKED_ARGS) {
  SimdGuard();
  return CopyFrame(dst, src, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_yvyu_to_yvyu(ZELT_PACKED_ARGS) {
  SimdGuard();
  return CopyFrame(dst, src, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_cyuv_to_cyuv(ZELT_PACKED_ARGS) {
  SimdGuard();
  return CopyFrame(dst, src, height, dst_stride, src_stride);
}

ZELT_API uint32_t cycbcr_012v_to_012v(ZELT_PACKED_ARGS) {
  SimdGuard();
  cycbcr_interleaved_copy(dst, src, width, height, dst_stride, src_stride);
  return height * dst_stride;
}

ZELT_API uint32_t cycbcr_interleaved_copy(ZELT_PACKED_ARGS) {
  return CopyFrame(dst, src, height, dst_stride, src_stride);
}

ZELT_API void cycbcr_invert(uint8_t* buffer, uint32_t stride, uint32_t height) {
  SimdGuard();
  // A zero stride flips nothing; return before handing memcpy a possibly null buffer.
  if (height < 2 || stride == 0) return;
  constexpr uint32_t kStackRow = 5461;
  alignas(64) uint8_t stackRow[kStackRow];
  uint8_t* scratch = stride <= kStackRow ? stackRow : static_cast<uint8_t*>(QrAlloc(stride));
  for (uint32_t i = 0; i < height / 2; ++i) {
    uint8_t* top = buffer + size_t{i} * stride;
    uint8_t* bottom = buffer + size_t{height - 1 - i} * stride;
    std::memcpy(scratch, top, stride);
    std::memcpy(top, bottom, stride);
    std::memcpy(bottom, scratch, stride);
  }
  if (scratch != stackRow) QrFree(scratch);
}

}  // extern "C"

namespace zelt::transcode {

namespace {
constexpr Route kList[] = {
    {Layout::UYVY, Layout::YUY2, PlainRoute<cycbcr_uyvy_to_yuy2>},
    {Layout::YUY2, Layout::UYVY, PlainRoute<cycbcr_yuy2_to_uyvy>},
    {Layout::UYVY, Layout::YVYU, PlainRoute<cycbcr_uyvy_to_yvyu>},
    {Layout::YVYU, Layout::UYVY, PlainRoute<cycbcr_yvyu_to_uyvy>},
    {Layout::YUY2, Layout::YVYU, PlainRoute<cycbcr_yuy2_to_yvyu>},
    {Layout::YVYU, Layout::YUY2, PlainRoute<cycbcr_yvyu_to_yuy2>},
    {Layout::UYVY, Layout::CYUV, PlainRoute<cycbcr_uyvy_to_cyuv>},
    {Layout::CYUV, Layout::UYVY, PlainRoute<cycbcr_cyuv_to_uyvy>},
    {Layout::YUY2, Layout::CYUV, PlainRoute<cycbcr_yuy2_to_cyuv>},
    {Layout::CYUV, Layout::YUY2, PlainRoute<cycbcr_cyuv_to_yuy2>},
    {Layout::YVYU, Layout::CYUV, PlainRoute<cycbcr_yvyu_to_cyuv>},
    {Layout::CYUV, Layout::YVYU, PlainRoute<cycbcr_cyuv_to_yvyu>},
    {Layout::UYVY, Layout::UYVY, PlainRoute<cycbcr_uyvy_to_uyvy>},
    {Layout::YUY2, Layout::YUY2, PlainRoute<cycbcr_yuy2_to_yuy2>},
    {Layout::YVYU, Layout::YVYU, PlainRoute<cycbcr_yvyu_to_yvyu>},
    {Layout::CYUV, Layout::CYUV, PlainRoute<cycbcr_cyuv_to_cyuv>},
    {Layout::V012, Layout::V012, PlainRoute<cycbcr_012v_to_012v>},
};
}  // namespace

const std::span<const Route> kPackedRoutes{kList};

}  // namespace zelt::transcode
