// NV12: planar 4:2:0 of 10/12/16 bits to 16-bit NV12, and 8-bit NV12 to UYVY.
// These are called directly by the host and do not choose the processor level.
#include <cstddef>
#include <cstdint>

#include "zelt/ycbcr_v210.h"

namespace zelt::transcode {
namespace {

// L = size/3 luma samples, then L/4 Cb and L/4 Cr, to L luma and L/4 (Cb, Cr)
// pairs, every sample shifted left by `shift` and kept to 16 bits.
void PlanarToNv12p16(uint16_t* dst, const uint16_t* src, uint32_t size, unsigned shift) {
  const size_t luma = size / 3;
  // Plain loops the compiler vectorises; the luma run is 64 samples at a time at
  // SSE2 when the two runs do not overlap.
  for (size_t i = 0; i < luma; ++i) dst[i] = static_cast<uint16_t>(src[i] << shift);
  const size_t quarter = (2 * luma) / 8;
  const uint16_t* cb = src + luma;
  const uint16_t* cr = src + luma + quarter;
  uint16_t* out = dst + luma;
  for (size_t i = 0; i < quarter; ++i) {
    out[2 * i] = static_cast<uint16_t>(cb[i] << shift);
    out[2 * i + 1] = static_cast<uint16_t>(cr[i] << shift);
  }
}

}  // namespace
}  // namespace zelt::transcode

extern "C" {

ZELT_API uint32_t cycbcr_420p10_to_NV12p16(uint16_t* dst, const uint16_t* src, uint32_t size) {
  zelt::transcode::PlanarToNv12p16(dst, src, size, 6);
  return 0;
}

ZELT_API uint32_t cycbcr_420p12_to_NV12p16(uint16_t* dst, const uint16_t* src, uint32_t size) {
  zelt::transcode::PlanarToNv12p16(dst, src, size, 4);
  return 0;
}

ZELT_API uint32_t cycbcr_420p16_to_NV12p16(uint16_t* dst, const uint16_t* src, uint32_t size) {
  zelt::transcode::PlanarToNv12p16(dst, src, size, 0);
  return 0;
}

ZELT_API void cycbcr_NV12_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                  uint32_t dst_stride) {
  const uint8_t* chroma = src + size_t{width} * height;
  for (uint32_t r = 0; r < height; ++r) {
    const uint8_t* y = src + size_t{r} * width;
    const uint8_t* c = chroma + size_t{r / 2} * width;
    uint8_t* d = dst + size_t{r} * dst_stride;
    for (uint32_t p = 0; p < width / 2; ++p) {
      d[4 * p] = c[2 * p];
      d[4 * p + 1] = y[2 * p];
      d[4 * p + 2] = c[2 * p + 1];
      d[4 * p + 3] = y[2 * p + 1];
    }
  }
}

}  // extern "C"
