// Alpha and key planes: moving a key between 32-bit pixels, one-byte planes and
// the luma of 2vuy pictures.
#include <cstring>

#include "core/paths.h"
#include "zelt/direct.h"
#include "direct/alpha_kernels.h"
#include "direct/fields_kernels.h"
#include "core/simd_level.h"

namespace zelt::direct {

void StripChromaRow(uint8_t* dst, const uint8_t* src, size_t pairs) {
  for (size_t i = 0; i < pairs; ++i) {
    uint32_t w;
    std::memcpy(&w, src + 4 * i, 4);
    w = (w & ~0x007F007Fu) | 0x00800080u;
    std::memcpy(dst + 4 * i, &w, 4);
  }
}

}  // namespace zelt::direct

using namespace zelt;
using namespace zelt::direct;

namespace {
inline ptrdiff_t Line(int64_t n, int64_t stride) { return static_cast<ptrdiff_t>(n * stride); }
}  // namespace

extern "C" {

ZELT_API uint32_t zlt_2yuv_strip_chroma(uint8_t* dst, int32_t dst_stride, const uint8_t* src, int32_t src_stride,
                                        int32_t width, int32_t height) {
  SimdGuard();
  if (height < 1 || width < 2) return 0;
  const size_t pairs = static_cast<size_t>(width / 2);
  const bool avx2 = CurrentPaths().avx2;
  const bool stream = size_t(height) * pairs * 4 >= kStreamFrameBytes;
  for (int32_t n = 0; n < height; ++n) {
    uint8_t* d = dst + Line(n, dst_stride);
    const uint8_t* s = src + Line(n, src_stride);
    size_t done = 0;
#if ZELT_X86
    if (avx2 && pairs >= 32 && !PartlyOverlap(d, s, 4 * pairs)) done = StripChromaBlocksAvx2(d, s, pairs, stream);
#endif
    StripChromaRow(d + 4 * done, s + 4 * done, pairs - done);
  }
#if ZELT_X86
  if (avx2 && stream) StreamFence();
#endif
  (void)avx2;
  (void)stream;
  return 0;
}

ZELT_API uint32_t zlt_2yuv_to_alphay(uint8_t* dst, int32_t dst_stride, const uint8_t* src, int32_t src_stride,
                                     int32_t width, int32_t height) {
  SimdGuard();
  if (height < 1) return 0;
  const int32_t pairs = width / 2;
  for (int32_t n = 0; n < height; ++n) {
    uint8_t* d = dst + Line(n, dst_stride);
    const uint8_t* s = src + Line(n, src_stride);
    for (int32_t j = 0; j < pairs; ++j) {
      d[2 * j] = s[4 * j + 1];
      d[2 * j + 1] = s[4 * j + 3];
    }
  }
  return 0;
}

ZELT_API uint32_t zlt_alphay_to_2yuv(uint8_t* dst, uint32_t dst_stride, const uint8_t* src, uint32_t src_stride,
                                     int32_t width, uint32_t height) {
  SimdGuard();
  if (static_cast<int32_t>(height) < 1) return 0;
  const int32_t pairs = width / 2;
  // Bottom line first and each line from its end: the pairs sit against the end of
  // the line's stride, and a plane can be widened in place into the same buffer.
  for (uint32_t n = height; n-- > 0;) {
    uint8_t* dEnd = dst + size_t{n + 1} * dst_stride;
    const uint8_t* sEnd = src + size_t{n + 1} * src_stride;
    for (int32_t j = 1; j <= pairs; ++j) {
      const uint8_t a0 = sEnd[-2 * j], a1 = sEnd[-2 * j + 1];
      uint8_t* d = dEnd - 4 * j;
      d[0] = 0x80;
      d[1] = a0;
      d[2] = 0x80;
      d[3] = a1;
    }
  }
  return 0;
}

ZELT_API uint32_t zlt_alpha_to_rgba(uint8_t* dst, int32_t dst_stride, const uint8_t* src, int32_t /*reserved*/,
                                    int32_t width, int32_t height) {
  SimdGuard();
  if (height < 1) return 0;
  for (int32_t n = 0; n < height; ++n) {
    uint8_t* d = dst + Line(n, dst_stride);
    const uint8_t* s = src + Line(n, width);
    for (int32_t x = 0; x < width; ++x) {
      const uint32_t v = s[x] * 0x01010101u;
      std::memcpy(d + 4 * x, &v, 4);
    }
  }
  return 0;
}

ZELT_API uint32_t zlt_rgba_to_alpha(uint8_t* dst, int32_t /*reserved*/, const uint8_t* src, int32_t src_stride,
                                    int32_t width, int32_t height) {
  SimdGuard();
  if (height < 1) return 0;
  for (int32_t n = 0; n < height; ++n) {
    uint8_t* d = dst + Line(n, width);
    const uint8_t* s = src + Line(n, src_stride);
    for (int32_t x = 0; x < width; ++x) d[x] = s[4 * x];
  }
  return 0;
}

ZELT_API uint32_t zlt_rgba_addalpha(const uint8_t* src, uint8_t* dst, uint32_t src_stride, int32_t dst_stride,
                                    uint8_t alpha, uint32_t width, int32_t height) {
  SimdGuard();
  if (height < 1) return 0;
  for (int32_t n = height - 1; n >= 0; --n) {
    uint8_t* d = dst + Line(n, dst_stride);
    const uint8_t* s = src + size_t(n) * src_stride;
    for (uint32_t x = 0; x < width; ++x) {
      d[4 * size_t{x}] = s[3 * size_t{x}];
      d[4 * size_t{x} + 1] = s[3 * size_t{x} + 1];
      d[4 * size_t{x} + 2] = s[3 * size_t{x} + 2];
      d[4 * size_t{x} + 3] = alpha;
    }
  }
  return 0;
}

ZELT_API uint32_t zlt_rgba_setalpha(uint8_t* picture, int32_t stride, uint8_t alpha, int32_t width, int32_t height) {
  SimdGuard();
  if (height < 1) return 0;
  for (int32_t n = 0; n < height; ++n) {
    uint8_t* p = picture + Line(n, stride);
    for (int32_t x = 0; x < width; ++x) p[4 * x + 3] = alpha;
  }
  return 0;
}

}  // extern "C"
