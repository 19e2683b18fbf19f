// RGB to 8-bit YCbCr: the kernel and the format-named converters built on it.
#include <cstring>

#include "core/paths.h"
#include "transcode/from_rgb_kernel.h"
#include "transcode/fast_encode.h"
#include "core/fault.h"
#include "core/error_log.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_from_rgb.h"

namespace zelt::transcode {

uint32_t RgbPixelBytes(uint32_t bitsPerPixel) {
  switch (bitsPerPixel) {
    case 32:
      return 4;
    case 48:
      return 6;
    case 64:
      return 8;
    default:
      return 3;
  }
}

RgbOffsets RgbOffsetsFor(uint32_t order, uint32_t bitsPerPixel) {
  const uint32_t bytes = RgbPixelBytes(bitsPerPixel);
  if (bytes == 3) {
    // 24-bit pixels have no alpha: orders 1 and 3 read like 0 and 2.
    return (order == 2 || order == 3) ? RgbOffsets{2, 1, 0} : RgbOffsets{0, 1, 2};
  }
  // 32 bits in bytes; 48 and 64 bits in 16-bit samples (order 1 and 3 read past a
  // 48-bit pixel's three samples, as the A, B, G, R layout puts them).
  const uint32_t unit = bytes == 4 ? 1 : 2;
  RgbOffsets o;
  switch (order) {
    case 1:  // A, B, G, R
      o = {1, 2, 3};
      break;
    case 2:  // R, G, B, A
      o = {2, 1, 0};
      break;
    case 3:  // A, R, G, B
      o = {3, 2, 1};
      break;
    default:  // 0 and 4 up: B, G, R, A
      o = {0, 1, 2};
      break;
  }
  return {o.b * unit, o.g * unit, o.r * unit};
}

namespace {

int16_t Fixed14(int32_t w) {
  const int64_t scaled = int64_t{w} * 16384;
  const int64_t half = kRgbToYcbcrScale / 2;
  return static_cast<int16_t>((scaled + (scaled < 0 ? -half : half)) / kRgbToYcbcrScale);
}

}  // namespace

Rgb14Matrix ToFixed14(const RgbToYcbcrMatrix& m) {
  return {Fixed14(m.yR),  Fixed14(m.yG),  Fixed14(m.yB),  Fixed14(m.cbR), Fixed14(m.cbG),
          Fixed14(m.cbB), Fixed14(m.crR), Fixed14(m.crG), Fixed14(m.crB), static_cast<int16_t>(m.yOffset)};
}

namespace {

template <uint32_t kPixelBytes, bool kPlanar, bool kChroma>
void EncodeRowT(const uint8_t* __restrict s, RgbOffsets off, const RgbToYcbcrMatrix& m, uint8_t* __restrict y,
                uint8_t* __restrict cb, uint8_t* __restrict cr, uint32_t pairs) {
  const RgbToYcbcrMatrix w = m;
  constexpr uint32_t kYStep = kPlanar ? 2 : 4;
  constexpr uint32_t kCStep = kPlanar ? 1 : 4;
  constexpr uint32_t kSecondY = kPlanar ? 1 : 2;
  for (uint32_t i = 0; i < pairs; ++i) {
    const uint32_t b0 = s[off.b], g0 = s[off.g], r0 = s[off.r];
    const uint32_t b1 = s[kPixelBytes + off.b], g1 = s[kPixelBytes + off.g], r1 = s[kPixelBytes + off.r];
    const uint32_t sy0 = static_cast<uint32_t>(w.yR) * r0 + static_cast<uint32_t>(w.yG) * g0 +
                         static_cast<uint32_t>(w.yB) * b0;
    const uint32_t sy1 = static_cast<uint32_t>(w.yR) * r1 + static_cast<uint32_t>(w.yG) * g1 +
                         static_cast<uint32_t>(w.yB) * b1;
    y[0] = EncodeLumaRounded(sy0, w.yOffset);
    if constexpr (kChroma) {
      const int32_t ir = static_cast<int32_t>(r0), ig = static_cast<int32_t>(g0), ib = static_cast<int32_t>(b0);
      cb[0] = EncodeCb(w.cbR * ir + w.cbG * ig + w.cbB * ib);
      cr[0] = EncodeCr(w.crR * ir + w.crG * ig + w.crB * ib);
      cb += kCStep;
      cr += kCStep;
    }
    y[kSecondY] = kPlanar ? EncodeLumaTruncated(sy1, w.yOffset) : EncodeLumaRounded(sy1, w.yOffset);
    y += kYStep;
    s += 2 * kPixelBytes;
  }
}

template <uint32_t kPixelBytes>
void EncodeRowBytes(const uint8_t* s, RgbOffsets off, const RgbToYcbcrMatrix& m, bool planar, uint8_t* y, uint8_t* cb,
                    uint8_t* cr, uint32_t pairs) {
  const bool chroma = cb != nullptr;
  if (planar) {
    if (chroma) {
      EncodeRowT<kPixelBytes, true, true>(s, off, m, y, cb, cr, pairs);
    } else {
      EncodeRowT<kPixelBytes, true, false>(s, off, m, y, cb, cr, pairs);
    }
  } else {
    EncodeRowT<kPixelBytes, false, true>(s, off, m, y, cb, cr, pairs);
  }
}

// The 256-bit variant's packed layouts, recognised from where the kernel was told to
// put Y, Cb and Cr. Anything else stays on the portable path.
bool PackedLayout(uint8_t* y, uint8_t* cb, uint8_t* cr, Chroma422* layout, uint8_t** group) {
  const ptrdiff_t dcb = cb - y, dcr = cr - y;
  if (dcb == -1 && dcr == 1) {
    *layout = Chroma422::kUyvy;
    *group = cb;
  } else if (dcb == 1 && dcr == 3) {
    *layout = Chroma422::kYuy2;
    *group = y;
  } else if (dcb == 3 && dcr == 1) {
    *layout = Chroma422::kYvyu;
    *group = y;
  } else {
    return false;
  }
  return true;
}

}  // namespace

void EncodeRgbRow(const uint8_t* src, uint32_t pixelBytes, RgbOffsets off, const RgbToYcbcrMatrix& m, bool planar,
                  uint8_t* y, uint8_t* cb, uint8_t* cr, uint32_t pairs) {
  switch (pixelBytes) {
    case 4:
      EncodeRowBytes<4>(src, off, m, planar, y, cb, cr, pairs);
      break;
    case 6:
      EncodeRowBytes<6>(src, off, m, planar, y, cb, cr, pairs);
      break;
    case 8:
      EncodeRowBytes<8>(src, off, m, planar, y, cb, cr, pairs);
      break;
    default:
      EncodeRowBytes<3>(src, off, m, planar, y, cb, cr, pairs);
      break;
  }
}

uint64_t RgbToYcbcrKernel(uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, const uint8_t* src, uint32_t width,
                          uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags,
                          uint32_t fullChromaRows, uint32_t planar, uint32_t bitsPerPixel, uint32_t chromaStride) {
  const uint64_t pixels = uint64_t{width} * height;
  const uint64_t result = fullChromaRows != 0 ? 2 * pixels : pixels + 2 * (pixels / 4);

  const uint32_t pixelBytes = RgbPixelBytes(bitsPerPixel);
  const RgbOffsets off = RgbOffsetsFor(flags & kRgbOrderMask, bitsPerPixel);
  const RgbToYcbcrMatrix& m = RgbToYcbcrFor(matrix);
  const bool bottomUp = (flags & kRgbBottomUp) != 0;
  const bool isPlanar = planar != 0;
  const bool full = fullChromaRows != 0;
  const size_t rowLead = pixelBytes > 4 ? 1 : 0;  // high byte of 16-bit samples
  const uint32_t pairs = width / 2;

  // 4:2:2 from 32-bit pixels has a 256-bit variant in 14-bit fixed point.
  // 4:2:0 from 32-bit pixels has a 256-bit form of the exact rule (same bytes).
  bool wide = false, exact = false;
  Chroma422 layout = Chroma422::kPlanar;
  uint8_t* group = nullptr;
#if ZELT_X86
  if (pixelBytes == 4 && CurrentPaths().avx2) {
    if (isPlanar && !full) {
      exact = true;
    } else {
      wide = isPlanar || PackedLayout(dstY, dstCb, dstCr, &layout, &group);
    }
  }
#endif
  const Rgb14Matrix m14 = wide ? ToFixed14(m) : Rgb14Matrix{};

  for (uint32_t r = 0; r < height; ++r) {
    const uint32_t srcRow = bottomUp ? height - 1 - r : r;
    const uint8_t* s = src + size_t{srcRow} * srcStride + rowLead;
    uint8_t* y = dstY + size_t{r} * dstStride;
    uint8_t* cb = nullptr;
    uint8_t* cr = nullptr;
    if (!isPlanar) {
      cb = dstCb + size_t{r} * dstStride;
      cr = dstCr + size_t{r} * dstStride;
    } else if (full) {
      cb = dstCb + size_t{r} * chromaStride;
      cr = dstCr + size_t{r} * chromaStride;
    } else if ((r & 3) == 0 || (r & 3) == 3) {
      // Rows 0, 3, 4, 7, 8, ... give chroma rows 0, 1, 2, 3, 4, ...: the first and
      // the last row of every four, no vertical averaging.
      cb = dstCb + size_t{r / 2} * chromaStride;
      cr = dstCr + size_t{r / 2} * chromaStride;
    }
    uint32_t done = 0;
#if ZELT_X86
    if (wide) {
      uint8_t* start = isPlanar ? y : group + size_t{r} * dstStride;
      done = EncodeRgb32Row422Avx2(s, off, m14, layout, start, cb, cr, pairs);
      if (done == pairs) continue;
    } else if (exact) {
      done = EncodeRgb32PlanarRowExactAvx2(s, off, m, y, cb, cr, pairs);
      if (done == pairs) continue;
    }
#endif
    if (isPlanar) {
      EncodeRgbRow(s + size_t{done} * 2 * pixelBytes, pixelBytes, off, m, true, y + size_t{done} * 2,
                   cb != nullptr ? cb + done : nullptr, cr != nullptr ? cr + done : nullptr, pairs - done);
    } else {
      EncodeRgbRow(s + size_t{done} * 2 * pixelBytes, pixelBytes, off, m, false, y + size_t{done} * 4, cb + size_t{done} * 4,
                   cr + size_t{done} * 4, pairs - done);
    }
  }
  return result;
}

namespace {

uint32_t Kernel(uint8_t* y, uint8_t* cb, uint8_t* cr, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds,
                uint32_t ss, uint32_t matrix, uint32_t flags, uint32_t full, uint32_t planar, uint32_t bits) {
  return static_cast<uint32_t>(RgbToYcbcrKernel(y, cb, cr, src, w, h, ds, ss, matrix, flags, full, planar, bits, ds / 2));
}

uint32_t ToUyvy(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t matrix,
                uint32_t flags, uint32_t bits) {
  return Kernel(dst + 1, dst, dst + 2, src, w, h, ds, ss, matrix, flags, 1, 0, bits);
}
uint32_t ToYuy2(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t matrix,
                uint32_t flags, uint32_t bits) {
  return Kernel(dst, dst + 1, dst + 3, src, w, h, ds, ss, matrix, flags, 1, 0, bits);
}
uint32_t ToYvyu(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t matrix,
                uint32_t flags, uint32_t bits) {
  return Kernel(dst, dst + 3, dst + 1, src, w, h, ds, ss, matrix, flags, 1, 0, bits);
}
// I420 and YV12: chroma planes a quarter of h*ds each, placed by the stride.
uint32_t To420(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t matrix,
               uint32_t flags, uint32_t bits, bool cbFirst) {
  const size_t plane = size_t{h} * ds;
  uint8_t* first = dst + plane;
  uint8_t* second = dst + plane + plane / 4;
  return cbFirst ? Kernel(dst, first, second, src, w, h, ds, ss, matrix, flags, 0, 1, bits)
                 : Kernel(dst, second, first, src, w, h, ds, ss, matrix, flags, 0, 1, bits);
}
uint32_t ToP422(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t matrix,
                uint32_t flags, uint32_t bits) {
  const size_t plane = size_t{h} * ds;
  return Kernel(dst, dst + plane, dst + plane + plane / 2, src, w, h, ds, ss, matrix, flags, 1, 1, bits);
}

// The BGR to CbYCr 4:2:2 fast path of cycbcr_RGB32_to_uyvy for matrices 0 and 5 and
// orders 0 and 2. Order 2 is turned into order 0 in the caller's own frame first.
uint32_t Rgb32ToUyvyFast(uint8_t* dst, uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss,
                         uint32_t matrix, uint32_t flags) {
  if ((flags & kRgbOrderMask) == 2) {
    static constexpr uint8_t kSwapRB[4] = {2, 1, 0, 3};
    SwapChannels8uC4IR(src, ss, w, h, kSwapRB);
  }
  if (matrix == 5) {
    BgrToCbYCr422Bt709Hdtv(src, ss, dst, ds, w, h);
  } else {
    BgrToCbYCr422Bt601(src, ss, dst, ds, w, h);
  }
  if ((flags & kRgbBottomUp) != 0) {
    // Upside down in place, one row of scratch; without scratch the rows stay as
    // they are.
    auto* row = static_cast<uint8_t*>(QrAlloc(ds));
    if (row != nullptr) {
      try {
        FaultPoint("cycbcr_RGB32_to_uyvy");
        for (uint32_t i = 0; i < h / 2; ++i) {
          uint8_t* a = dst + size_t{i} * ds;
          uint8_t* b = dst + size_t{h - 1 - i} * ds;
          CopyMemoryFast(row, a, ds);
          CopyMemoryFast(a, b, ds);
          CopyMemoryFast(b, row, ds);
        }
      } catch (...) {
        ErrFmtOut(0xC0000000u, 0, 0, "ERROR(gen): %s\n", "Exception cycbcr_RGB32_to_uyvy");
      }
      QrFree(row);
    }
  }
  return w * ds;  // width, not height: the byte count this path has always reported
}

}  // namespace

}  // namespace zelt::transcode

using namespace zelt;
using namespace zelt::transcode;

extern "C" {

ZELT_API uint32_t cycbcr_RGB24_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return ToUyvy(dst, src, width, height, dst_stride, src_stride, matrix, flags, 24);
}

ZELT_API uint32_t cycbcr_RGB32_to_uyvy(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  const uint32_t order = flags & kRgbOrderMask;
  if (CurrentPaths().avx2 || (matrix != 0 && matrix != 5) || (order != 0 && order != 2)) {
    return ToUyvy(dst, src, width, height, dst_stride, src_stride, matrix, flags, 32);
  }
  return Rgb32ToUyvyFast(dst, src, width, height, dst_stride, src_stride, matrix, flags);
}

ZELT_API uint32_t cycbcr_RGB64_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags,
                                       uint32_t bits_per_pixel) {
  SimdGuard();
  return ToUyvy(dst, src, width, height, dst_stride, src_stride, matrix, flags, bits_per_pixel);
}

ZELT_API uint32_t cycbcr_RGB24_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  const uint32_t result = cycbcr_RGB24_to_uyvy(dst, src, width, height, dst_stride, src_stride, matrix, flags);
  cycbcr_invert(dst, dst_stride, height);
  return result;
}

ZELT_API uint32_t cycbcr_RGB32_to_cyuv(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  const uint32_t result = cycbcr_RGB32_to_uyvy(dst, src, width, height, dst_stride, src_stride, matrix, flags);
  cycbcr_invert(dst, dst_stride, height);
  return result;
}

ZELT_API uint32_t cycbcr_RGB24_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return ToYuy2(dst, src, width, height, dst_stride, src_stride, matrix, flags, 24);
}

ZELT_API uint32_t cycbcr_RGB32_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return ToYuy2(dst, src, width, height, dst_stride, src_stride, matrix, flags, 32);
}

ZELT_API uint32_t cycbcr_RGB24_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return ToYvyu(dst, src, width, height, dst_stride, src_stride, matrix, flags, 24);
}

ZELT_API uint32_t cycbcr_RGB32_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return ToYvyu(dst, src, width, height, dst_stride, src_stride, matrix, flags, 32);
}

ZELT_API uint32_t cycbcr_RGB24_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return To420(dst, src, width, height, dst_stride, src_stride, matrix, flags, 24, true);
}

ZELT_API uint32_t cycbcr_RGB32_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return To420(dst, src, width, height, dst_stride, src_stride, matrix, flags, 32, true);
}

ZELT_API uint32_t cycbcr_RGB24_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return To420(dst, src, width, height, dst_stride, src_stride, matrix, flags, 24, false);
}

ZELT_API uint32_t cycbcr_RGB32_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return To420(dst, src, width, height, dst_stride, src_stride, matrix, flags, 32, false);
}

ZELT_API uint32_t cycbcr_RGB24_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return ToP422(dst, src, width, height, dst_stride, src_stride, matrix, flags, 24);
}

ZELT_API uint32_t cycbcr_RGB32_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  return ToP422(dst, src, width, height, dst_stride, src_stride, matrix, flags, 32);
}

ZELT_API uint32_t cycbcr_RGB64_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                       uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags) {
  SimdGuard();
  // The pixel size follows from the source stride: a padded row reads as another
  // layout. A width of 0 divides by zero.
  return ToP422(dst, src, width, height, dst_stride, src_stride, matrix, flags, (src_stride / width) * 8);
}

ZELT_API uint32_t cycbcr_RGB32_to_planar(uint8_t* dst_y, uint8_t* dst_cb, uint8_t* dst_cr, const uint8_t* src,
                                         uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t chroma_stride,
                                         uint32_t full_chroma_rows, uint32_t src_stride, uint32_t matrix,
                                         uint32_t flags) {
  SimdGuard();
  return static_cast<uint32_t>(RgbToYcbcrKernel(dst_y, dst_cb, dst_cr, src, width, height, dst_stride, src_stride,
                                                matrix, flags, full_chroma_rows, 1, 32, chroma_stride));
}

}  // extern "C"
