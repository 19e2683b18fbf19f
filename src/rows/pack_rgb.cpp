// Packers from the 16-bit intermediate rows to packed RGB: the YCbCr matrix packers
// (24/32-bit, and the frame packer with its rand() dither), the planar RGB packers
// and the 16-bit planar RGB repackers.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/paths.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "zelt/rows.h"
#include "rows/row_kernels.h"

namespace zelt::rows {
namespace {

// Cr-to-R and Cb-to-B in 1/128, Cr-to-G and Cb-to-G in 1/256, luma gain in 1/16384,
// luma offset in 8-bit code values.
struct Coeffs {
  int32_t crR, crG, cbG, cbB, gain, offset;
};

Coeffs CoeffsFor(int32_t matrix) {
  switch (matrix & 7) {
    case 1: return {204, 208, 100, 258, 19072, 16};  // 601, video range expanded
    case 5: return {175, 179, 86, 222, 16384, 0};    // 601 x 219/224, luma kept
    case 6: return {197, 118, 47, 232, 16384, 0};    // 709 x 219/224, luma kept
    default: return {230, 137, 55, 270, 19072, 16};  // 709, video range expanded
  }
}

inline uint8_t Clamp8(int32_t v) { return static_cast<uint8_t>(std::clamp(v, 0, 255)); }

// B, G, R of one pixel by the truncating rule of the row packers.
inline void MatrixPixel(const Coeffs& k, int32_t y, int32_t cr, int32_t cb, uint8_t* out) {
  const int32_t c = cr - 128, d = cb - 128;
  const int32_t yy = ((y - k.offset) * k.gain) >> 7;
  out[0] = Clamp8((yy + d * k.cbB) >> 7);
  out[1] = Clamp8((2 * yy - d * k.cbG - c * k.crG) >> 8);
  out[2] = Clamp8((yy + c * k.crR) >> 7);
}

// Both matrix row packers: `bpp` 3 or 4 (with alpha).
void MatrixRow(const ZeltPlanes* planes, uint8_t* dst, int32_t width, int32_t shift, int32_t matrix, int bpp,
               uint8_t alpha) {
  const Coeffs k = CoeffsFor(matrix);
  const uint16_t* y = static_cast<const uint16_t*>(planes->plane[0]);
  const uint16_t* cr = static_cast<const uint16_t*>(planes->plane[1]);
  const uint16_t* cb = static_cast<const uint16_t*>(planes->plane[2]);
  const uint32_t s = uint32_t(shift) & 31;
  int32_t x = 0;
#if ZELT_X86
  if (width > 0) {
    const int32_t kk[6] = {k.crR, k.crG, k.cbG, k.cbB, k.gain, k.offset};
    if (CurrentPaths().avx2) {
      x = int32_t(MatrixBlocksAvx2(y, cr, cb, dst, size_t(width), s, kk, bpp, alpha));
      dst += size_t(x) * bpp;
      y += x, cr += x / 2, cb += x / 2;
    }
    if (CurrentPaths().sse41) {
      const int32_t more = int32_t(MatrixBlocksSse41(y, cr, cb, dst, size_t(width - x), s, kk, bpp, alpha));
      x += more;
      dst += size_t(more) * bpp;
      y += more, cr += more / 2, cb += more / 2;
    }
    // The pointers now stand at pixel x; the loop below counts from there.
    width -= x;
    x = 0;
  }
#endif
  for (int32_t i = x / 2; x < width; x += 2, ++i) {
    const int32_t c = int32_t(uint32_t(cr[i]) >> s), d = int32_t(uint32_t(cb[i]) >> s);
    uint8_t* p = dst + size_t(x) * bpp;
    MatrixPixel(k, int32_t(uint32_t(y[x]) >> s), c, d, p);
    MatrixPixel(k, int32_t(uint32_t(y[x + 1]) >> s), c, d, p + bpp);
    if (bpp == 4) p[3] = p[7] = alpha;
  }
}

// Sample << (16 - bits - extra), shift count modulo 32, clamped to 0..65535.
inline int32_t Scale16(int16_t v, uint32_t shift) {
  return std::clamp(static_cast<int32_t>(static_cast<uint32_t>(int32_t(v)) << shift), 0, 65535);
}

inline uint32_t Swap32(uint32_t v) {
  return (v >> 24) | ((v >> 8) & 0xFF00u) | ((v << 8) & 0xFF0000u) | (v << 24);
}

}  // namespace

// One RGB30 word from 10-bit R, G, B in the layout of `format` (one of the five codes).
uint32_t Rgb30Word(uint32_t r, uint32_t g, uint32_t b, int format) {
  switch (format) {
    case 122:
    case 125: return (b << 20) | (g << 10) | r;
    case 123: return Swap32((r << 20) | (g << 10) | b);
    case 124: return (r << 20) | (g << 10) | b;
    default: return Swap32((r << 22) | (g << 12) | (b << 2));  // 128
  }
}

}  // namespace zelt::rows

using namespace zelt;
using namespace zelt::rows;

extern "C" ZELT_API void zeltUnpacked16sRowToRGB24(const ZeltPlanes* planes, void*, uint8_t* dst, int32_t width,
                                                   int32_t shift, int32_t format, int32_t matrix) {
  SimdGuard();
  if (format != 7) return;
  MatrixRow(planes, dst, width, shift, matrix, 3, 0);
}

extern "C" ZELT_API void zeltUnpacked16sRowToRGB32(const ZeltPlanes* planes, void*, uint8_t* dst, int32_t width,
                                                   int32_t shift, int32_t format, int32_t matrix, uint8_t alpha) {
  SimdGuard();
  if (format != 8) return;
  MatrixRow(planes, dst, width, shift, matrix, 4, alpha);
}

extern "C" ZELT_API void zeltUnpacked16sRowToRGB48(const ZeltPlanes* planes, void*, uint16_t* dst, int32_t width,
                                                   int32_t bits, int32_t extra) {
  SimdGuard();
  const int16_t* g = static_cast<const int16_t*>(planes->plane[0]);
  const int16_t* r = static_cast<const int16_t*>(planes->plane[1]);
  const int16_t* b = static_cast<const int16_t*>(planes->plane[2]);
  const uint32_t s = uint32_t(16 - bits - extra) & 31;
  for (int32_t x = 0; x < width; ++x) {
    dst[3 * x] = static_cast<uint16_t>(Scale16(r[x], s));
    dst[3 * x + 1] = static_cast<uint16_t>(Scale16(g[x], s));
    dst[3 * x + 2] = static_cast<uint16_t>(Scale16(b[x], s));
  }
}

extern "C" ZELT_API void zeltUnpacked16sRowToRGB30(const ZeltPlanes* planes, void*, uint32_t* dst, int32_t width,
                                                   int32_t bits, int32_t extra, int32_t format) {
  SimdGuard();
  if (format != 122 && format != 123 && format != 124 && format != 125 && format != 128) return;
  if (width < 1) return;
  const int16_t* g = static_cast<const int16_t*>(planes->plane[0]);
  const int16_t* r = static_cast<const int16_t*>(planes->plane[1]);
  const int16_t* b = static_cast<const int16_t*>(planes->plane[2]);
  const uint32_t s = uint32_t(16 - bits - extra) & 31;
  size_t x = 0;
#if ZELT_X86
  if (CurrentPaths().sse41) x = Rgb30BlocksSse41(g, r, b, dst, size_t(width), s, format);
#endif
  for (; x < size_t(width); ++x) {
    dst[x] = Rgb30Word(uint32_t(Scale16(r[x], s)) >> 6, uint32_t(Scale16(g[x], s)) >> 6,
                       uint32_t(Scale16(b[x], s)) >> 6, format);
  }
}

extern "C" ZELT_API void zeltRow16uToDitheredRGB(void*, const ZeltPlanes* planes, const int32_t* pitches,
                                                 ZeltSize size, uint8_t* dst, void*, int32_t dstPitch, int32_t format,
                                                 int32_t matrix, uint8_t flip) {
  SimdGuard();
  if (size.width < 1 || size.height < 1) return;
  const Coeffs k = CoeffsFor(matrix);
  ptrdiff_t step = dstPitch;
  uint8_t* out = dst;
  if (flip != 0 && dstPitch > 0) {
    out = dst + ptrdiff_t(size.height - 1) * dstPitch;
    step = -step;
  }
  for (int32_t row = 0; row < size.height; ++row, out += step) {
    const uint16_t* y = static_cast<const uint16_t*>(planes->plane[0]) + row * ptrdiff_t(pitches[0] >> 1);
    const uint16_t* cr = static_cast<const uint16_t*>(planes->plane[1]) + row * ptrdiff_t(pitches[1] >> 1);
    const uint16_t* cb = static_cast<const uint16_t*>(planes->plane[2]) + row * ptrdiff_t(pitches[2] >> 1);
    for (int32_t x = 0, i = 0; x < size.width; x += 2, ++i) {
      if (format == 7) {
        const int32_t c = int32_t(cr[i]) - 32768, d = int32_t(cb[i]) - 32768;
        for (int p = 0; p < 2; ++p) {
          const int32_t yy = ((int32_t(y[x + p]) - k.offset * 256) * k.gain) >> 7;
          const int32_t n = std::rand() & 0x7FFF;
          uint8_t* o = out + 3 * size_t(x + p);
          o[0] = Clamp8((yy + d * k.cbB + n) >> 15);
          o[1] = Clamp8((yy - (d >> 1) * k.cbG - (c >> 1) * k.crG + n) >> 15);
          o[2] = Clamp8((yy + c * k.crR + n) >> 15);
        }
      } else {
        const int32_t c = int32_t(cr[i]) - 128, d = int32_t(cb[i]) - 128;
        for (int p = 0; p < 2; ++p) {
          const int32_t yy = ((int32_t(y[x + p]) - k.offset) * k.gain) >> 7;
          uint8_t* o = out + 4 * size_t(x + p);
          o[0] = Clamp8((yy + d * k.cbB + 64) >> 7);
          o[1] = Clamp8((2 * yy + 128 - d * k.cbG - c * k.crG) >> 8);
          o[2] = Clamp8((yy + c * k.crR + 64) >> 7);
          o[3] = 255;
        }
      }
    }
  }
}

extern "C" ZELT_API void zeltPlanarRGB16uToPackedRGB24(const ZeltPlanes* planes, const int32_t* pitches,
                                                       ZeltSize size, uint8_t* dst, int32_t dstPitch,
                                                       int32_t dstWidth, int32_t shift) {
  SimdGuard();
  if (size.height < 1 || dstWidth < 1) return;
  const uint8_t maskBits = static_cast<uint8_t>(shift - 1);
  const int32_t mask = maskBits >= 32 ? -1 : int32_t((1u << maskBits) - 1);
  const bool signedRead = shift < 8;
  const uint32_t s = uint32_t(shift) & 31;
  const int32_t width = std::max(size.width, 0);
  // The block path draws its sixteen values per block in pixel order, so its output
  // equals the per-pixel rule; it needs the sums to fit 32 bits (shift 1..16).
  const bool blocks = CurrentPaths().sse41 && shift >= 1 && shift <= 16;
  for (int32_t row = 0; row < size.height; ++row) {
    const uint16_t* g = static_cast<const uint16_t*>(planes->plane[0]) + row * ptrdiff_t(pitches[0] >> 1);
    const uint16_t* r = static_cast<const uint16_t*>(planes->plane[1]) + row * ptrdiff_t(pitches[1] >> 1);
    const uint16_t* b = static_cast<const uint16_t*>(planes->plane[2]) + row * ptrdiff_t(pitches[2] >> 1);
    uint8_t* out = dst + ptrdiff_t(row) * dstPitch;
    int32_t x = 0;
#if ZELT_X86
    if (blocks) {
      int32_t noise[16];
      for (; x + 16 <= width; x += 16) {
        for (int& n : noise) n = std::rand() & mask;
        PlanarRgb24BlocksSse41(g + x, r + x, b + x, out + 3 * size_t(x), 16, shift, signedRead, noise);
      }
    }
#endif
    for (; x < width; ++x) {
      const int32_t n = std::rand() & mask;
      auto ch = [&](uint16_t v) {
        const int32_t sample = signedRead ? int32_t(int16_t(v)) : int32_t(v);
        const int32_t o = int32_t(uint32_t(sample + int64_t(n)) & 0xFFFFFFFFu) >> s;
        return signedRead ? Clamp8(o) : static_cast<uint8_t>(std::min(o, 255));
      };
      uint8_t* o = out + 3 * size_t(x);
      o[0] = ch(b[x]);
      o[1] = ch(g[x]);
      o[2] = ch(r[x]);
    }
    if (dstWidth > width) std::memset(out + 3 * size_t(width), 0, 3 * size_t(dstWidth - width));
  }
}

extern "C" ZELT_API void zeltPlanarRGB16uToPackedRGB48(const ZeltPlanes* planes, const int32_t* pitches,
                                                       ZeltSize size, uint16_t* dst, int32_t dstPitch,
                                                       int32_t dstWidth) {
  SimdGuard();
  if (size.height < 1 || dstWidth < 1) return;
  const int32_t width = std::max(size.width, 0);
  for (int32_t row = 0; row < size.height; ++row) {
    const uint16_t* g = static_cast<const uint16_t*>(planes->plane[0]) + row * ptrdiff_t(pitches[0] >> 1);
    const uint16_t* r = static_cast<const uint16_t*>(planes->plane[1]) + row * ptrdiff_t(pitches[1] >> 1);
    const uint16_t* b = static_cast<const uint16_t*>(planes->plane[2]) + row * ptrdiff_t(pitches[2] >> 1);
    uint16_t* out = reinterpret_cast<uint16_t*>(reinterpret_cast<uint8_t*>(dst) + ptrdiff_t(row) * dstPitch);
    for (int32_t x = 0; x < width; ++x) {
      out[3 * x] = r[x];
      out[3 * x + 1] = g[x];
      out[3 * x + 2] = b[x];
    }
    if (dstWidth > width) std::memset(out + 3 * size_t(width), 0, 6 * size_t(dstWidth - width));
  }
}

extern "C" ZELT_API void* zeltPlanarGRBToPlanarRGB(void* dst, const void* src, int32_t width) {
  SimdGuard();
  const size_t plane = 2 * size_t(std::max(width, 0));
  uint8_t* d = static_cast<uint8_t*>(dst);
  const uint8_t* s = static_cast<const uint8_t*>(src);
  CopyMemoryFast(d + plane, s, plane);
  CopyMemoryFast(d, s + plane, plane);
  CopyMemoryFast(d + 2 * plane, s + 2 * plane, plane);
  return d + 2 * plane;
}

extern "C" ZELT_API void* zeltPlanarGRBAToPlanarRGBA(void* dst, const void* src, int32_t width) {
  SimdGuard();
  const size_t plane = 2 * size_t(std::max(width, 0));
  uint8_t* d = static_cast<uint8_t*>(dst);
  const uint8_t* s = static_cast<const uint8_t*>(src);
  zeltPlanarGRBToPlanarRGB(dst, src, width);
  CopyMemoryFast(d + 3 * plane, s + 3 * plane, plane);
  return d + 3 * plane;
}
