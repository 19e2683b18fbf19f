// 8-bit YCbCr resampling: 2vuy pairs to and from 3-byte 4:4:4 pixels, and I420 to
// 2vuy. Plain loops; chroma is repeated or dropped, never interpolated.
#include <cstdint>
#include <cstdlib>

#include "zelt/direct.h"
#include "core/simd_level.h"

extern "C" {

ZELT_API void zlt_yuv422_yuv444_8(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  zelt::SimdGuard();
  const uint32_t n = width * height * 3;  // 32-bit, wrapping as the arguments do
  if (n == 0) return;
  uint32_t o = 0;
  size_t k = 0;
  // Whole pairs, at least one: an odd pixel count writes three bytes past the end.
  do {
    const uint8_t cb = src[k], y0 = src[k + 1], cr = src[k + 2], y1 = src[k + 3];
    uint8_t* d = dst + o;
    d[0] = y0;
    d[1] = cb;
    d[2] = cr;
    d[3] = y1;
    d[4] = cb;
    d[5] = cr;
    o += 6;
    k += 4;
  } while (o < n);
}

ZELT_API void zlt_yuv444_yuv422_8(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  zelt::SimdGuard();
  const uint32_t n = width * height * 3;
  if (n == 0) return;
  uint32_t k = 0;
  size_t o = 0;
  // The odd pixel's chroma (bytes 4 and 5 of each six) is dropped.
  do {
    const uint8_t y0 = src[k], cb = src[k + 1], cr = src[k + 2], y1 = src[k + 3];
    uint8_t* d = dst + o;
    d[0] = cb;
    d[1] = y0;
    d[2] = cr;
    d[3] = y1;
    k += 6;
    o += 4;
  } while (k < n);
}

ZELT_API uint32_t zlt_i420_2vuy(uint8_t* dst, const uint8_t* src, uint32_t width, int32_t height, uint32_t dst_stride) {
  zelt::SimdGuard();
  const int32_t rows = height < 0 ? static_cast<int32_t>(0u - static_cast<uint32_t>(height)) : height;
  if (rows < 1) return dst_stride + 1;
  const uint32_t pitch = dst_stride + 1u < 2u ? 2 * width : dst_stride;
  const uint32_t lumaBytes = width * static_cast<uint32_t>(rows);
  const uint8_t* cbPlane = src + lumaBytes;
  const uint8_t* crPlane = cbPlane + lumaBytes / 4;
  const uint32_t pairs = (width + 1) / 2;
  // Luma is one contiguous walk over the frame, two bytes per pair; an odd width
  // therefore reads one byte of the next row, and each later row starts one byte on.
  const uint8_t* y = src;
  for (int32_t r = 0; r < rows; ++r) {
    const uint32_t c = ((static_cast<uint32_t>(r) / 2) * width) / 2;
    uint8_t* d = dst + size_t(r) * pitch;
    for (uint32_t j = 0; j < pairs; ++j) {
      d[4 * j] = cbPlane[c + j];
      d[4 * j + 1] = y[0];
      d[4 * j + 2] = crPlane[c + j];
      d[4 * j + 3] = y[1];
      y += 2;
    }
  }
  return 0;
}

}  // extern "C"
