// 8-bit YCbCr to RGB: the general converter, its fast-path front, the 16-bit and
// planar-output variants and the format-named converters.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core/paths.h"
#include "transcode/fast_decode.h"
#include "transcode/to_rgb_kernels.h"
#include "transcode/to_rgb_pixels.h"
#include "core/matrices.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "zelt/ycbcr_to_rgb.h"

namespace zelt::transcode {
namespace {

enum class Source { Packed, Planar, Nv12 };

struct Walk {
  const uint8_t* y;
  const uint8_t* cb;
  const uint8_t* cr;
  uint32_t width;
  uint32_t height;
  bool bottomUp;
  bool fullChromaRows;
};

// Visits the frame pair by pair in source order. Luma (and the whole stream of
// packed input) reads on from where the previous row stopped, so an odd width
// moves the next row by one sample pair; planar chroma row c starts at
// (c * width) / 2 (NV12: twice that, its samples being pairs).
template <Source S, class Sink>
void WalkFrame(const Walk& w, Sink& sink) {
  constexpr size_t kSecondLuma = S == Source::Packed ? 2 : 1;
  const uint8_t* yp = w.y;
  const uint8_t* cbp = w.cb;
  const uint8_t* crp = w.cr;
  for (uint32_t r = 0; r < w.height; ++r) {
    sink.Row(w.bottomUp ? w.height - 1 - r : r);
    if constexpr (S != Source::Packed) {
      const size_t c = w.fullChromaRows ? r : r / 2;
      const size_t off = c * w.width / 2 * (S == Source::Nv12 ? 2 : 1);
      cbp = w.cb + off;
      crp = w.cr + off;
    }
    uint32_t x = 0;
    if constexpr (requires { sink.Bulk(yp, cbp, crp, size_t{0}); }) {
      const size_t done = sink.Bulk(yp, cbp, crp, (size_t{w.width} + 1) / 2);
      x = static_cast<uint32_t>(2 * done);
      if constexpr (S == Source::Packed) {
        yp += 4 * done;
        cbp += 4 * done;
        crp += 4 * done;
      } else {
        yp += 2 * done;
        cbp += done;
        crp += done;
      }
    }
    for (; x < w.width; x += 2) {
      sink.Pair(x, yp[0], yp[kSecondLuma], *cbp, *crp);
      if constexpr (S == Source::Packed) {
        yp += 4;
        cbp += 4;
        crp += 4;
      } else {
        yp += 2;
        cbp += S == Source::Nv12 ? 2 : 1;
        crp += S == Source::Nv12 ? 2 : 1;
      }
    }
  }
}

template <Source S, class Sink>
void WalkFrameAs(bool planar, const Walk& w, Sink& sink) {
  if (planar) {
    WalkFrame<S, Sink>(w, sink);
  } else {
    WalkFrame<Source::Packed, Sink>(w, sink);
  }
}

template <int Bpp, int Order>
struct Rgb8Sink {
  static constexpr size_t kBytes = Bpp == 32 ? 4 : (Bpp == 24 ? 3 : 2);
  uint8_t* dst;
  size_t stride;
  const YcbcrToRgbMatrix& m;
  uint8_t* row = nullptr;

  void Row(uint32_t r) { row = dst + r * stride; }
  void Pair(uint32_t x, int y0, int y1, int cb, int cr) {
    const ChromaTerms c = MakeChromaTerms(m, cb - 128, cr - 128);
    uint8_t* d = row + size_t{x} * kBytes;
    PutPixel<Bpp, Order>(d, DecodePixel8(m, y0, c));
    PutPixel<Bpp, Order>(d + kBytes, DecodePixel8(m, y1, c));
  }
};

#if ZELT_X86
// 32-bit output with whole blocks of four pairs done by the 256-bit kernels.
template <int Order>
struct Rgb32VectorSink : Rgb8Sink<32, Order> {
  bool packed;
  int yAt, cbAt, crAt;  // packed: sample offsets within a group

  size_t Bulk(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, size_t pairs) {
    if (packed) return PackedPairsToRgb32Avx2(this->row, y - yAt, yAt, cbAt, crAt, pairs, this->m, Order);
    return PlanarPairsToRgb32Avx2(this->row, y, cb, cr, pairs, this->m, Order);
  }
};

// Offsets of packed samples relative to their group when the 256-bit kernel can
// read them: all within one group and the second luma too.
bool PackedOffsets(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int* yAt, int* cbAt, int* crAt) {
  const uint8_t* base = std::min({y, cb, cr});
  const ptrdiff_t a = y - base, b = cb - base, c = cr - base;
  if (a > 1 || b > 3 || c > 3) return false;
  *yAt = static_cast<int>(a);
  *cbAt = static_cast<int>(b);
  *crAt = static_cast<int>(c);
  return true;
}
#endif

inline void Put16(uint8_t* d, uint16_t v) {
  d[0] = static_cast<uint8_t>(v);
  d[1] = static_cast<uint8_t>(v >> 8);
}

// 16-bit little-endian samples, three (B G R / R G B) or four (with alpha 65535,
// placed as in the 32-bit orders) per pixel.
template <int Samples, int Order>
struct Rgb16Sink {
  static constexpr size_t kBytes = 2 * Samples;
  uint8_t* dst;
  size_t stride;
  const YcbcrToRgbMatrix& m;
  uint8_t* row = nullptr;

  static void Put(uint8_t* d, Rgb16 p) {
    constexpr bool rgbFirst = Order >= 2;
    const uint16_t first = rgbFirst ? p.r : p.b, last = rgbFirst ? p.b : p.r;
    if constexpr (Samples == 4 && (Order == 1 || Order == 3)) {
      Put16(d, 65535);
      d += 2;
    }
    Put16(d, first);
    Put16(d + 2, p.g);
    Put16(d + 4, last);
    if constexpr (Samples == 4 && (Order == 0 || Order == 2)) Put16(d + 6, 65535);
  }
  void Row(uint32_t r) { row = dst + r * stride; }
  void Pair(uint32_t x, int y0, int y1, int cb, int cr) {
    const ChromaTerms c = MakeChromaTerms(m, cb - 128, cr - 128);
    uint8_t* d = row + size_t{x} * kBytes;
    Put(d, DecodePixel16(m, y0, c));
    Put(d + kBytes, DecodePixel16(m, y1, c));
  }
};

struct PlanesSink {
  uint8_t* const* planes;  // G, R, B
  size_t stride;
  const YcbcrToRgbMatrix& m;
  uint8_t* g = nullptr;
  uint8_t* r = nullptr;
  uint8_t* b = nullptr;

  void Row(uint32_t row) {
    g = planes[0] + row * stride;
    r = planes[1] + row * stride;
    b = planes[2] + row * stride;
  }
  void Pair(uint32_t x, int y0, int y1, int cb, int cr) {
    const ChromaTerms c = MakeChromaTerms(m, cb - 128, cr - 128);
    const Rgb8 p0 = DecodePixel8(m, y0, c), p1 = DecodePixel8(m, y1, c);
    g[x] = p0.g;
    r[x] = p0.r;
    b[x] = p0.b;
    g[x + 1] = p1.g;
    r[x + 1] = p1.r;
    b[x + 1] = p1.b;
  }
};

Walk MakeWalk(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width, uint32_t height,
              uint32_t flags, uint32_t fullChromaRows) {
  return {y, cb, cr, width, height, (flags & kBottomUp) != 0, fullChromaRows != 0};
}

template <Source S>
uint64_t ToRgb8(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width,
                uint32_t height, uint32_t dstStride, uint32_t matrix, uint32_t flags, uint32_t fullChromaRows,
                uint32_t planar, uint32_t bitsPerPixel) {
  const uint64_t result = ReportedBytesPerPixel(bitsPerPixel) * width * height;
  if (height == 0) return result;
  const YcbcrToRgbMatrix& m = YcbcrToRgb10000(matrix);
  const Walk w = MakeWalk(y, cb, cr, width, height, flags, fullChromaRows);
#if ZELT_X86
  int yAt = 0, cbAt = 0, crAt = 0;
  if (S != Source::Nv12 && bitsPerPixel == 32 && CurrentPaths().avx2 &&
      (planar != 0 || PackedOffsets(y, cb, cr, &yAt, &cbAt, &crAt))) {
    WithPixelWriter(32, ChannelOrder(flags), [&]<int Bpp, int Order>() {
      Rgb32VectorSink<Order> sink{{dst, dstStride, m}, planar == 0, yAt, cbAt, crAt};
      WalkFrameAs<S>(planar != 0, w, sink);
    });
    return result;
  }
#endif
  WithPixelWriter(bitsPerPixel, ChannelOrder(flags), [&]<int Bpp, int Order>() {
    Rgb8Sink<Bpp, Order> sink{dst, dstStride, m};
    WalkFrameAs<S>(planar != 0, w, sink);
  });
  return result;
}

// The 3-byte frame written with a row step of width * 3 becomes 4-byte pixels
// B, G, R, 255 with rows width * 4 apart, working backwards so that no pixel is
// overwritten before it is read.
void WidenInPlace(uint8_t* buf, uint32_t width, uint32_t height) {
  for (size_t i = size_t{width} * height; i-- > 0;) {
    const uint8_t b = buf[3 * i], g = buf[3 * i + 1], r = buf[3 * i + 2];
    buf[4 * i] = b;
    buf[4 * i + 1] = g;
    buf[4 * i + 2] = r;
    buf[4 * i + 3] = 255;
  }
}

// 4:2:0 planes to B, G, R, A through the fast-path decoders; ids pick the set.
void Planar420Fast(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width,
                   uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix) {
  const uint8_t* const planes[3] = {y, cb, cr};
  const int32_t steps[3] = {static_cast<int32_t>(srcStride), static_cast<int32_t>(srcStride / 2),
                            static_cast<int32_t>(srcStride / 2)};
#if ZELT_X86
  if (CurrentPaths().avx2) {
    // Writing B, G, R, 255 straight at a row step of width * 4 leaves the same
    // bytes as the 3-byte pass and the widening.
    const bool csc = matrix == 2 || matrix == 4;
    const auto set = csc ? fast_decode::Set::Bt709Csc
                         : (matrix == 3 || matrix == 5) ? fast_decode::Set::Bt709Hdtv : fast_decode::Set::Bt601;
    fast_decode::YCbCr420ToBgrC4Avx2(set, planes, steps, dst, static_cast<int32_t>(csc ? width * 4 : dstStride), width,
                                    height, 255);
    return;
  }
#endif
  switch (matrix) {
    case 2:
    case 4:
      fast_decode::YCbCr420ToBgr709CscC3(planes, steps, dst, static_cast<int32_t>(width * 3), width, height);
      WidenInPlace(dst, width, height);
      break;
    case 3:
    case 5:
      fast_decode::YCbCr420ToBgrC4(fast_decode::Set::Bt709Hdtv, planes, steps, dst, static_cast<int32_t>(dstStride),
                                  width, height, 255);
      break;
    default:  // 0, 1, 6, 7 and unknown ids: BT.601 whatever the id says
      fast_decode::YCbCr420ToBgrC4(fast_decode::Set::Bt601, planes, steps, dst, static_cast<int32_t>(dstStride), width,
                                  height, 255);
      break;
  }
}

uint32_t PackedToRgb(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride,
                     uint32_t srcStride, uint32_t matrix, uint32_t flags, size_t yAt, size_t cbAt, size_t crAt,
                     uint32_t bitsPerPixel) {
  SimdGuard();
  return static_cast<uint32_t>(cycbcr_ToRGB(dst, src + yAt, src + cbAt, src + crAt, width, height, dstStride,
                                            srcStride, matrix, flags, 1, 0, bitsPerPixel, srcStride / 2));
}

enum class PlaneOrder { CbCr, CrCb };

// Planar frame at `src`: luma plane of height * srcStride bytes, then the two chroma
// planes, the second `chromaPlane` bytes after the first.
uint32_t PlanarToRgb(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride,
                     uint32_t srcStride, uint32_t matrix, uint32_t flags, PlaneOrder order, bool fullChromaRows,
                     uint32_t bitsPerPixel) {
  SimdGuard();
  const size_t lumaPlane = size_t{height} * srcStride;
  const uint8_t* first = src + lumaPlane;
  const uint8_t* second = first + (fullChromaRows ? lumaPlane / 2 : lumaPlane / 4);
  const uint8_t* cb = order == PlaneOrder::CbCr ? first : second;
  const uint8_t* cr = order == PlaneOrder::CbCr ? second : first;
  return static_cast<uint32_t>(cycbcr_ToRGB(dst, src, cb, cr, width, height, dstStride, srcStride, matrix, flags,
                                            fullChromaRows ? 1 : 0, 1, bitsPerPixel, srcStride / 2));
}

}  // namespace
}  // namespace zelt::transcode

using namespace zelt;
using namespace zelt::transcode;

extern "C" {

ZELT_API uint64_t cycbcr_ToRGBInt(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr,
                                  uint32_t width, uint32_t height, uint32_t dstStride, uint32_t /*srcStride*/,
                                  uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar,
                                  uint32_t bitsPerPixel, uint32_t /*chromaStride*/) {
  SimdGuard();
  // The portable pair rule is the definition. At level 5, 32-bit output from
  // packed or planar input (4:2:2 or 4:2:0) runs whole blocks of four pairs
  // through the 256-bit kernel, which gives the same bytes.
  return ToRgb8<Source::Planar>(dst, y, cb, cr, width, height, dstStride, matrix, flags, fullChromaRows, planar,
                                bitsPerPixel);
}

ZELT_API uint64_t cycbcr_ToRGB(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width,
                               uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix,
                               uint32_t flags, uint32_t fullChromaRows, uint32_t planar, uint32_t bitsPerPixel,
                               uint32_t chromaStride) {
  SimdGuard();
  if (fullChromaRows == 0 && planar == 1 && bitsPerPixel == 32 && flags == 0) {
    Planar420Fast(dst, y, cb, cr, width, height, dstStride, srcStride, matrix);
    return uint64_t{height} * dstStride;
  }
  return cycbcr_ToRGBInt(dst, y, cb, cr, width, height, dstStride, srcStride, matrix, flags, fullChromaRows, planar,
                         bitsPerPixel, chromaStride);
}

ZELT_API uint64_t cycbcr_ToRGBInt16(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr,
                                    uint32_t width, uint32_t height, uint32_t dstStride, uint32_t /*srcStride*/,
                                    uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar,
                                    uint32_t bitsPerPixel, uint32_t /*chromaStride*/) {
  SimdGuard();
  const bool three = bitsPerPixel == 24 || bitsPerPixel == 48;
  const bool four = bitsPerPixel == 32 || bitsPerPixel == 64;
  const uint64_t result = (three ? 6u : 8u) * uint64_t{width} * height;
  if (height == 0 || !(three || four)) return result;
  const YcbcrToRgbMatrix& m = YcbcrToRgb16(matrix);
  const Walk w = MakeWalk(y, cb, cr, width, height, flags, fullChromaRows);
  const uint32_t order = ChannelOrder(flags);
  auto run = [&]<int Samples, int Order>() {
    Rgb16Sink<Samples, Order> sink{dst, dstStride, m};
    WalkFrameAs<Source::Planar>(planar != 0, w, sink);
  };
  if (three) {
    order >= 2 ? run.template operator()<3, 2>() : run.template operator()<3, 0>();
  } else {
    switch (order) {
      case 0: run.template operator()<4, 0>(); break;
      case 1: run.template operator()<4, 1>(); break;
      case 2: run.template operator()<4, 2>(); break;
      default: run.template operator()<4, 3>(); break;
    }
  }
  return result;
}

ZELT_API uint64_t cycbcr_ToRGBPlanarInt(uint8_t* const* planes, const uint8_t* y, const uint8_t* cb,
                                        const uint8_t* cr, uint32_t width, uint32_t height, uint32_t dstStride,
                                        uint32_t /*srcStride*/, uint32_t matrix, uint32_t flags,
                                        uint32_t fullChromaRows, uint32_t planar, uint32_t /*chromaStride*/) {
  SimdGuard();
  const uint64_t result = 3 * uint64_t{width} * height;
  if (height == 0) return result;
  PlanesSink sink{planes, dstStride, YcbcrToRgb10000(matrix)};
  WalkFrameAs<Source::Planar>(planar != 0, MakeWalk(y, cb, cr, width, height, flags, fullChromaRows), sink);
  return result;
}

ZELT_API uint64_t cycbcr_ToRGBPlanar(uint8_t* const* planes, const uint8_t* y, const uint8_t* cb, const uint8_t* cr,
                                     uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride,
                                     uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar,
                                     uint32_t chromaStride) {
  SimdGuard();
  // Packed UYVY, top-down, BT.709 full range: decode to B, G, R pixels in scratch
  // and split them into the planes.
  const bool uyvy = planar == 0 && fullChromaRows != 0 && y == cb + 1 && cr == cb + 2;
  if (uyvy && (matrix == 3 || matrix == 5) && (flags & kBottomUp) == 0 && height != 0 && width != 0) {
    const int32_t step = static_cast<int32_t>(width * 3);
    if (auto* scratch = static_cast<uint8_t*>(QrAlloc(size_t{width} * 3 * height))) {
      fast_decode::CbYCr422ToBgr709HdtvC3(cb, static_cast<int32_t>(srcStride), scratch, step, width, height);
      uint8_t* const bgr[3] = {planes[2], planes[0], planes[1]};
      fast_decode::CopyC3P3(scratch, step, bgr, static_cast<int32_t>(dstStride), width, height);
      QrFree(scratch);
      return 3 * uint64_t{height} * dstStride;
    }
  }
  return cycbcr_ToRGBPlanarInt(planes, y, cb, cr, width, height, dstStride, srcStride, matrix, flags, fullChromaRows,
                               planar, chromaStride);
}

ZELT_API uint32_t cycbcr_uyvy_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  const Paths paths = CurrentPaths();
  const bool fast = AtLevels(kPackedDecodeLevels, paths) && matrix % 2 == 1 &&
                    !(paths.level == 1 && (flags & ~kBottomUp) != 0);
  if (!fast) {
    return PackedToRgb(dst, src, width, height, dstStride, srcStride, matrix, flags, 1, 0, 2, 32);
  }
  // Odd ids elsewhere: rounded BT.601 (ids 1, 3) or BT.709 (bit 2: ids 5, 7), alpha
  // 0, rows at the strides. Bottom-up and orders 1 and 3 are not honoured here.
  const auto set = (matrix & 4) != 0 ? fast_decode::Set::Bt709Hdtv : fast_decode::Set::Bt601;
  fast_decode::CbYCr422ToBgrC4(set, src, static_cast<int32_t>(srcStride), dst, static_cast<int32_t>(dstStride), width,
                              height, 0);
  if (flags == 2) {
    static constexpr int kToRgba[4] = {2, 1, 0, 3};
    fast_decode::SwapChannelsC4I(dst, static_cast<int32_t>(dstStride), width, height, kToRgba);
  }
  return height * dstStride;
}

ZELT_API uint32_t cycbcr_uyvy_to_rgb24(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t /*flags*/) {
  SimdGuard();
  if ((matrix & 4) != 0) {
    fast_decode::CbYCr422ToBgr709HdtvC3(src, static_cast<int32_t>(srcStride), dst, static_cast<int32_t>(dstStride),
                                       width, height);
    static constexpr int kToRgb[3] = {2, 1, 0};
    fast_decode::SwapChannelsC3I(dst, static_cast<int32_t>(dstStride), width, height, kToRgb);
  } else {
    // The UYVY bytes are read as Y0 Cr Y1 Cb just as they stand.
    fast_decode::YCrCb422ToRgbC3(src, static_cast<int32_t>(srcStride), dst, static_cast<int32_t>(dstStride), width,
                                height);
  }
  return height * dstStride;
}

#define ZELT_PACKED_TO_RGB(name, yAt, cbAt, crAt, bpp)                                                           \
  ZELT_API uint32_t name(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, \
                         uint32_t srcStride, uint32_t matrix, uint32_t flags) {                                \
    return PackedToRgb(dst, src, width, height, dstStride, srcStride, matrix, flags, yAt, cbAt, crAt, bpp);    \
  }
ZELT_PACKED_TO_RGB(cycbcr_uyvy_to_rgb555, 1, 0, 2, 15)
ZELT_PACKED_TO_RGB(cycbcr_uyvy_to_rgb565, 1, 0, 2, 16)
ZELT_PACKED_TO_RGB(cycbcr_yuy2_to_rgb24, 0, 1, 3, 24)
ZELT_PACKED_TO_RGB(cycbcr_yuy2_to_rgb32, 0, 1, 3, 32)
ZELT_PACKED_TO_RGB(cycbcr_yuy2_to_rgb555, 0, 1, 3, 15)
ZELT_PACKED_TO_RGB(cycbcr_yuy2_to_rgb565, 0, 1, 3, 16)
ZELT_PACKED_TO_RGB(cycbcr_yvyu_to_rgb24, 0, 3, 1, 24)
ZELT_PACKED_TO_RGB(cycbcr_yvyu_to_rgb32, 0, 3, 1, 32)
ZELT_PACKED_TO_RGB(cycbcr_yvyu_to_rgb555, 0, 3, 1, 15)
ZELT_PACKED_TO_RGB(cycbcr_yvyu_to_rgb565, 0, 3, 1, 16)
#undef ZELT_PACKED_TO_RGB

ZELT_API uint32_t cycbcr_cyuv_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags) {
  // The first row in memory is the bottom of the picture: turning the row order
  // round once more gives the picture the caller asked for.
  return PackedToRgb(dst, src, width, height, dstStride, srcStride, matrix, flags ^ kBottomUp, 1, 0, 2, 32);
}

#define ZELT_PLANAR_TO_RGB(name, order, full, bpp)                                                               \
  ZELT_API uint32_t name(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, \
                         uint32_t srcStride, uint32_t matrix, uint32_t flags) {                                \
    return PlanarToRgb(dst, src, width, height, dstStride, srcStride, matrix, flags, PlaneOrder::order, full,   \
                       bpp);                                                                                    \
  }
ZELT_PLANAR_TO_RGB(cycbcr_yv12_to_rgb24, CrCb, false, 24)
ZELT_PLANAR_TO_RGB(cycbcr_yv12_to_rgb32, CrCb, false, 32)
ZELT_PLANAR_TO_RGB(cycbcr_yv12_to_rgb555, CrCb, false, 15)
ZELT_PLANAR_TO_RGB(cycbcr_yv12_to_rgb565, CrCb, false, 16)
ZELT_PLANAR_TO_RGB(cycbcr_i420_to_rgb32, CbCr, false, 32)
ZELT_PLANAR_TO_RGB(cycbcr_p422_to_rgb32, CbCr, true, 32)
#undef ZELT_PLANAR_TO_RGB

ZELT_API uint32_t cycbcr_nv12_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  const uint8_t* chroma = src + size_t{height} * srcStride;
  return static_cast<uint32_t>(
      ToRgb8<Source::Nv12>(dst, src, chroma, chroma + 1, width, height, dstStride, matrix, flags, 0, 1, 32));
}

}  // extern "C"
