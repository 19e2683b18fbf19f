// 012v (10-bit 4:2:2, six pixels in sixteen bytes) to 8-bit RGB.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core/paths.h"
#include "transcode/to_rgb_kernels.h"
#include "transcode/to_rgb_pixels.h"
#include "rows/row_kernels.h"
#include "core/formats.h"
#include "core/matrices.h"
#include "core/simd_level.h"
#include "zelt/ycbcr_to_rgb.h"

namespace zelt::transcode {
namespace {

struct Group {
  int32_t y[6];
  int32_t cb[3];
  int32_t cr[3];
};

inline uint32_t Word(const uint8_t* p) {
  return uint32_t{p[0]} | (uint32_t{p[1]} << 8) | (uint32_t{p[2]} << 16) | (uint32_t{p[3]} << 24);
}

inline Group Unpack(const uint8_t* g) {
  const uint32_t w0 = Word(g), w1 = Word(g + 4), w2 = Word(g + 8), w3 = Word(g + 12);
  auto s = [](uint32_t w, int shift) { return static_cast<int32_t>((w >> shift) & 0x3FF); };
  return {{s(w0, 10), s(w1, 0), s(w1, 20), s(w2, 10), s(w3, 0), s(w3, 20)},
          {s(w0, 0), s(w1, 10), s(w2, 20)},
          {s(w0, 20), s(w2, 0), s(w3, 10)}};
}

// Exactly `width` pixels per row. With a pitch the rows start at multiples of it;
// with pitch 0 the source is one run of groups and each row starts at pixel
// r * width of that run, possibly inside a group.
template <int Bpp, int Order>
void V012Frame(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t pitch,
               const YcbcrToRgbMatrix& m, bool bottomUp) {
  constexpr size_t kBytes = Bpp == 32 ? 4 : (Bpp == 24 ? 3 : 2);
  for (uint32_t r = 0; r < height; ++r) {
    uint8_t* d = dst + size_t{bottomUp ? height - 1 - r : r} * dstStride;
    const uint8_t* base = pitch != 0 ? src + size_t{r} * pitch : src;
    uint64_t p = pitch != 0 ? 0 : uint64_t{r} * width;
    uint32_t x = 0;
    while (x < width) {
      const Group g = Unpack(base + p / 6 * 16);
      uint32_t k = static_cast<uint32_t>(p % 6);
      const uint32_t n = (6 - k < width - x) ? 6 - k : width - x;
      for (uint32_t i = 0; i < n; ++i, ++k, d += kBytes) {
        const ChromaTerms c = MakeChromaTerms(m, g.cb[k / 2] - 512, g.cr[k / 2] - 512);
        PutPixel<Bpp, Order>(d, DecodePixel8(m, g.y[k], c));
      }
      x += n;
      p += n;
    }
  }
}

#if ZELT_X86
// 32-bit output with a row pitch: the row is unpacked a chunk at a time into
// left-aligned 16-bit samples by the row pipeline's 256-bit v210 unpacker (the
// groups it leaves at the chunk end by the portable unpacker, shifted alike) and
// decoded by the 256-bit kernel from the top 10 bits; the last 0 to 23 pixels of a
// row go through the portable pixel loop.
template <int Order>
void V012FrameAvx2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride,
                   uint32_t pitch, const YcbcrToRgbMatrix& m, bool bottomUp) {
  constexpr uint32_t kChunk = 384;  // 64 groups, 48 blocks of the kernel
  alignas(32) uint16_t ys[kChunk], cbs[kChunk / 2], crs[kChunk / 2];
  for (uint32_t r = 0; r < height; ++r) {
    uint8_t* d = dst + size_t{bottomUp ? height - 1 - r : r} * dstStride;
    const uint8_t* row = src + size_t{r} * pitch;
    uint32_t x = 0;
    // Chunks of whole groups and whole kernel blocks: multiples of 24 pixels.
    for (uint32_t n; (n = std::min(kChunk, (width - x) / 24 * 24)) != 0; x += n) {
      const uint8_t* groups = row + size_t{x} / 6 * 16;
      const size_t count = n / 6;
      for (size_t g = rows::V210Yuv16GroupsAvx2(groups, count, ys, cbs, crs); g < count; ++g) {
        const Group s = Unpack(groups + g * 16);
        for (int i = 0; i < 6; ++i) ys[6 * g + i] = static_cast<uint16_t>(s.y[i] << 6);
        for (int i = 0; i < 3; ++i) {
          cbs[3 * g + i] = static_cast<uint16_t>(s.cb[i] << 6);
          crs[3 * g + i] = static_cast<uint16_t>(s.cr[i] << 6);
        }
      }
      Planar16PairsToRgb32Avx2(d + size_t{x} * 4, ys, cbs, crs, n / 2, m, 512, Order, 6);
    }
    for (; x < width; x += 6) {
      const Group g = Unpack(row + size_t{x} / 6 * 16);
      for (uint32_t k = 0; k < 6 && x + k < width; ++k) {
        const ChromaTerms c = MakeChromaTerms(m, g.cb[k / 2] - 512, g.cr[k / 2] - 512);
        PutPixel<32, Order>(d + size_t{x + k} * 4, DecodePixel8(m, g.y[k], c));
      }
    }
  }
}
#endif

uint32_t V012ToRgb(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride,
                   uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t bitsPerPixel) {
  SimdGuard();
  const uint32_t result = static_cast<uint32_t>(ReportedBytesPerPixel(bitsPerPixel)) * width * height;
  const uint32_t pitch = V012Pitch(width, srcStride);
  const YcbcrToRgbMatrix& m = YcbcrToRgb10Bit8(matrix);
  const bool bottomUp = (flags & kBottomUp) != 0;
#if ZELT_X86
  if (bitsPerPixel == 32 && pitch != 0 && CurrentPaths().avx2) {
    WithPixelWriter(32, ChannelOrder(flags), [&]<int Bpp, int Order>() {
      V012FrameAvx2<Order>(dst, src, width, height, dstStride, pitch, m, bottomUp);
    });
    return result;
  }
#endif
  WithPixelWriter(bitsPerPixel, ChannelOrder(flags), [&]<int Bpp, int Order>() {
    V012Frame<Bpp, Order>(dst, src, width, height, dstStride, pitch, m, bottomUp);
  });
  return result;
}

}  // namespace
}  // namespace zelt::transcode

using zelt::transcode::V012ToRgb;

extern "C" {

ZELT_API uint32_t cycbcr_v210ToRGB(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                   uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags,
                                   uint32_t bitsPerPixel) {
  return V012ToRgb(dst, src, width, height, dstStride, srcStride, matrix, flags, bitsPerPixel);
}

#define ZELT_V012_TO_RGB(name, bpp)                                                                              \
  ZELT_API uint32_t name(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, \
                         uint32_t srcStride, uint32_t matrix, uint32_t flags) {                                \
    return V012ToRgb(dst, src, width, height, dstStride, srcStride, matrix, flags, bpp);                        \
  }
ZELT_V012_TO_RGB(cycbcr_012v_to_rgb24, 24)
ZELT_V012_TO_RGB(cycbcr_012v_to_rgb32, 32)
ZELT_V012_TO_RGB(cycbcr_012v_to_rgb555, 15)
ZELT_V012_TO_RGB(cycbcr_012v_to_rgb565, 16)
#undef ZELT_V012_TO_RGB

}  // extern "C"
