// 8-bit RGB (24 or 32 bits a pixel) to 012v, with the scale-40000 encoding table:
// weights applied to 8-bit channels give 10-bit samples after a division by 10000.
//
//   Y  = 4*yOffset + round((yR*R + yG*G + yB*B) / 10000)
//   Cb = 512 + round((cbR*R' + cbG*G' + cbB*B') / 20000)   R', G', B': sums over the
//   Cr = 512 + round((crR*R' + crG*G' + crB*B') / 20000)   pixel pair (both pixels)
//
// rounded half away from zero and clamped to 0..1023. The last group of a row is
// written whole; pixels past the width repeat the last pixel of the row.
#include <algorithm>

#include "transcode/from_rgb_kernel.h"
#include "transcode/routes.h"
#include "core/formats.h"
#include "core/matrices.h"
#include "core/simd_level.h"
#include "zelt/ycbcr_from_rgb.h"

namespace zelt::transcode {

namespace {

// Sums stay within 32 bits: |weight| < 50000, channels below 512 (pair sums).
template <int32_t kDen>
int32_t RoundDiv(int32_t num) {
  return num >= 0 ? (num + kDen / 2) / kDen : -((-num + kDen / 2) / kDen);
}

uint32_t Clamp10(int32_t v) { return static_cast<uint32_t>(std::clamp(v, 0, 1023)); }

void Store32(uint8_t* p, uint32_t v) {
  p[0] = uint8_t(v);
  p[1] = uint8_t(v >> 8);
  p[2] = uint8_t(v >> 16);
  p[3] = uint8_t(v >> 24);
}

uint32_t RgbTo012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride,
                   uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t bitsPerPixel) {
  SimdGuard();
  const RgbToYcbcr40000& m = RgbToYcbcrScale40000(matrix);
  const RgbOffsets off = RgbOffsetsFor(flags & kRgbOrderMask, bitsPerPixel);
  const uint32_t px = RgbPixelBytes(bitsPerPixel);
  const uint32_t pitch = V012Pitch(width, dstStride) == 0 ? V012MinPitch(width) : V012Pitch(width, dstStride);
  const bool bottomUp = (flags & kRgbBottomUp) != 0;
  const uint32_t groups = (width + 5) / 6;
  for (uint32_t r = 0; r < height && width != 0; ++r) {
    const uint8_t* row = src + size_t{bottomUp ? height - 1 - r : r} * srcStride;
    uint8_t* out = dst + size_t{r} * pitch;
    uint32_t y[6], cb[3], cr[3];
    for (uint32_t g = 0; g < groups; ++g) {
      for (uint32_t k = 0; k < 6; k += 2) {
        int32_t rr[2], gg[2], bb[2];
        for (uint32_t j = 0; j < 2; ++j) {
          const uint32_t x = g * 6 + k + j;
          const uint8_t* p = row + size_t{x < width ? x : width - 1} * px;
          rr[j] = p[off.r];
          gg[j] = p[off.g];
          bb[j] = p[off.b];
          y[k + j] = Clamp10(4 * m.yOffset + RoundDiv<10000>(m.yR * rr[j] + m.yG * gg[j] + m.yB * bb[j]));
        }
        const int32_t R = rr[0] + rr[1], G = gg[0] + gg[1], B = bb[0] + bb[1];
        cb[k / 2] = Clamp10(512 + RoundDiv<20000>(m.cbR * R + m.cbG * G + m.cbB * B));
        cr[k / 2] = Clamp10(512 + RoundDiv<20000>(m.crR * R + m.crG * G + m.crB * B));
      }
      uint8_t* w = out + size_t{g} * 16;
      Store32(w, cb[0] | y[0] << 10 | cr[0] << 20);
      Store32(w + 4, y[1] | cb[1] << 10 | y[2] << 20);
      Store32(w + 8, cr[1] | y[3] << 10 | cb[2] << 20);
      Store32(w + 12, y[4] | cr[2] << 10 | y[5] << 20);
    }
  }
  return height * pitch;
}

}  // namespace

}  // namespace zelt::transcode

using namespace zelt::transcode;

extern "C" ZELT_API uint32_t cycbcr_RGB32_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                                  uint32_t dst_stride, uint32_t src_stride, uint32_t matrix,
                                                  uint32_t flags) {
  return RgbTo012v(dst, src, width, height, dst_stride, src_stride, matrix, flags, 32);
}

extern "C" ZELT_API uint32_t cycbcr_RGB24_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                                  uint32_t dst_stride, uint32_t src_stride, uint32_t matrix,
                                                  uint32_t flags) {
  return RgbTo012v(dst, src, width, height, dst_stride, src_stride, matrix, flags, 24);
}
