// Field and frame operations on 32-bit RGB and 8-bit 2vuy pictures: the edge-aware
// deinterlacer, the luma smoother, field swap and line average, and the flips.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/paths.h"
#include "zelt/direct.h"
#include "direct/fields_kernels.h"
#include "core/fault.h"
#include "core/error_log.h"
#include "core/platform.h"
#include "core/simd_level.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ZELT_DIRECT_SSE2 1
#endif

namespace zelt::direct {

namespace {

constexpr uint32_t kFaultFlags = 0xC0000000u;
constexpr const char* kFaultFormat = "ERROR(Zelt): %s\n";

uint32_t Load32(const uint8_t* p) {
  uint32_t v;
  std::memcpy(&v, p, 4);
  return v;
}
void Store32(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }

void FlipRowScalar(uint8_t* dst, const uint8_t* src, size_t width) {
  if (dst == src) {
    for (size_t i = 0, j = width; i < width / 2; ++i) {
      --j;
      const uint32_t a = Load32(dst + 4 * i), b = Load32(dst + 4 * j);
      Store32(dst + 4 * i, b);
      Store32(dst + 4 * j, a);
    }
    return;
  }
  for (size_t x = 0; x < width; ++x) Store32(dst + 4 * x, Load32(src + 4 * (width - 1 - x)));
}

}  // namespace

void FlipRow32(uint8_t* dst, const uint8_t* src, size_t width) {
#if defined(ZELT_DIRECT_SSE2)
  if (dst == src) {
    // Swap four-pixel blocks from both ends while they stay apart; the middle is
    // left to the pixel loop.
    size_t i = 0;
    for (; 2 * i + 8 <= width; i += 4) {
      __m128i* l = reinterpret_cast<__m128i*>(dst + 4 * i);
      __m128i* r = reinterpret_cast<__m128i*>(dst + 4 * (width - 4 - i));
      const __m128i a = _mm_loadu_si128(l), b = _mm_loadu_si128(r);
      _mm_storeu_si128(l, _mm_shuffle_epi32(b, 0x1B));
      _mm_storeu_si128(r, _mm_shuffle_epi32(a, 0x1B));
    }
    FlipRowScalar(dst + 4 * i, dst + 4 * i, width - 2 * i);
    return;
  }
  if (!PartlyOverlap(dst, src, 4 * width)) {
    size_t x = 0;
    for (; x + 4 <= width; x += 4) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 4 * (width - 4 - x)));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * x), _mm_shuffle_epi32(v, 0x1B));
    }
    FlipRowScalar(dst + 4 * x, src, width - x);
    return;
  }
#endif
  FlipRowScalar(dst, src, width);
}

void AverageInto(uint8_t* dst, const uint8_t* other, size_t bytes) {
  size_t i = 0;
#if defined(ZELT_DIRECT_SSE2)
  if (!PartlyOverlap(dst, other, bytes)) {
    const __m128i one = _mm_set1_epi8(1);
    for (; i + 16 <= bytes; i += 16) {
      const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dst + i));
      const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(other + i));
      // pavgb rounds up; take back the half where the sum is odd.
      const __m128i avg = _mm_sub_epi8(_mm_avg_epu8(a, b), _mm_and_si128(_mm_xor_si128(a, b), one));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), avg);
    }
  }
#endif
  for (; i < bytes; ++i) dst[i] = static_cast<uint8_t>((dst[i] + other[i]) >> 1);
}

namespace {

// One pixel of the deinterlacer. Returns true when the pixel is combed (M > T).
struct CombParams {
  int64_t t;  // threshold squared (32-bit, as the caller's value squares)
  int64_t w;  // softness squared, capped at 5500
};

bool Combed(const CombParams& p, uint32_t c, uint32_t u, uint32_t d) {
  auto ch = [](uint32_t v, int shift) { return static_cast<int64_t>((v >> shift) & 0xFF); };
  const int64_t cb = ch(c, 0), cg = ch(c, 8), cr = ch(c, 16);
  const int64_t ub = ch(u, 0), ug = ch(u, 8), ur = ch(u, 16);
  const int64_t db = ch(d, 0), dg = ch(d, 8), dr = ch(d, 16);
  const int64_t b = (db - cb) * (ub - cb);
  const int64_t r = (dr - cr) * (ur - cr);
  const int64_t g = (dg - cg) * (ug - cg);
  int64_t m;
  if (p.w > 0) {
    // Each term is its own truncating division: a steep edge (large |u - d|)
    // weakens the measure, a flat one keeps it.
    m = p.w * b / ((ub - db) * (ub - db) + p.w) + 3 * p.w * r / ((ur - dr) * (ur - dr) + p.w) +
        6 * p.w * g / ((ug - dg) * (ug - dg) + p.w);
  } else {
    m = b + 3 * r + 6 * g;
  }
  return m > p.t;
}

uint32_t Blend121(uint32_t c, uint32_t u, uint32_t d) {
  uint32_t out = 0;
  for (int s = 0; s < 24; s += 8) {
    const uint32_t v = (((u >> s) & 0xFF) + 2 * ((c >> s) & 0xFF) + ((d >> s) & 0xFF)) >> 2;
    out |= v << s;
  }
  return out;  // fourth byte 0
}

uint32_t Blend11(uint32_t u, uint32_t d) {
  uint32_t out = 0;
  for (int s = 0; s < 24; s += 8) out |= ((((u >> s) & 0xFF) + ((d >> s) & 0xFF)) >> 1) << s;
  return out;  // fourth byte 0
}

}  // namespace

}  // namespace zelt::direct

using namespace zelt;
using namespace zelt::direct;

extern "C" {

ZELT_API uint32_t zlt_deinterlace_rgb(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t stride,
                                      uint32_t threshold, uint32_t softness, uint32_t /*reserved*/, uint32_t mode) {
  SimdGuard();
  const uint32_t s = softness * softness;  // 32-bit, as the arguments are
  const CombParams params{static_cast<int64_t>(threshold * threshold), static_cast<int64_t>(std::min(s, 5500u))};
  const size_t rowBytes = size_t{width} * 4;
  for (uint32_t n = 0; n < height; ++n) {
    const ptrdiff_t line = static_cast<ptrdiff_t>(size_t{n} * stride);
    const uint8_t* c = src + line;
    uint8_t* out = dst + line;
    const bool odd = (n & 1) != 0;
    // Mode 16 keeps the even lines, mode 17 the odd ones, as whole-stride line
    // copies (padding included).
    if ((mode == 16 && !odd) || (mode == 17 && odd)) {
      if (out != c) std::memmove(out, c, stride);
      continue;
    }
    // Outside mode 2 an even line comes out pixel for pixel as it went in, whatever
    // its measure.
    if (mode != 2 && !odd) {
      if (out != c) std::memmove(out, c, rowBytes);
      continue;
    }
    const uint8_t* up = c - static_cast<ptrdiff_t>(stride);  // line 0: the caller provides the line before
    const uint8_t* down = c + stride;
    if (n + 1 == height) {
      down = up;  // the last line looks up twice
    } else if (n == 1) {
      up = down;  // line 1 looks down twice
    }
    for (uint32_t x = 0; x < width; ++x) {
      const uint32_t cv = Load32(c + 4 * x), uv = Load32(up + 4 * x), dv = Load32(down + 4 * x);
      uint32_t v = cv;
      if (Combed(params, cv, uv, dv)) v = mode == 2 ? Blend121(cv, uv, dv) : Blend11(uv, dv);
      Store32(out + 4 * x, v);
    }
  }
  return 0;
}

ZELT_API uint32_t zlt_deinterlace_yuv(void) { return 0xFFFFFFFFu; }

ZELT_API uint32_t zlt_2yuv_average_2y(uint8_t* row, int32_t byte_count, int32_t mode) {
  SimdGuard();
  if (mode == 1) {
    const uint32_t end = static_cast<uint32_t>(byte_count);
    for (uint32_t i = 1; i < end; i += 4) row[i + 2] = static_cast<uint8_t>((row[i] + row[i + 2]) >> 1);
    return 0;
  }
  if (mode < 2 || mode > 6) return 0;
  const uint32_t end = static_cast<uint32_t>(byte_count) - 4u;  // unsigned on purpose
  for (uint32_t i = 1; i < end; i += 4) {
    const int y0 = row[i], y1 = row[i + 2], next = row[i + 4];
    if (std::abs(y0 - next) >= 8 || std::abs(y0 - y1) <= 10) continue;
    switch (mode) {
      case 2:
        if (y0 <= 127) row[i + 2] = static_cast<uint8_t>(y0);
        break;
      case 3:
        row[i + 2] = static_cast<uint8_t>(y0);
        break;
      case 4:
        if (y0 < 128) row[i + 2] = static_cast<uint8_t>((y0 + y1) >> 1);
        break;
      case 5:
        row[i + 2] = static_cast<uint8_t>((y0 + y1) >> 1);
        break;
      default:
        row[i + 2] = static_cast<uint8_t>((y0 + next) >> 1);
        break;
    }
  }
  return 0;
}

ZELT_API uint32_t zlt_change_field_rgb(uint8_t* picture, int32_t mode, int64_t width, int32_t height, uint32_t stride,
                                       uint8_t* /*second*/, uint32_t line_step) {
  SimdGuard();
  const int64_t lines = height < 0 ? -int64_t{height} : int64_t{height};
  const size_t step = line_step != 0 ? line_step : stride;
  if (mode == 3) {
    // Field flip: line 2k and the line one step after it trade places.
    uint8_t* tmp = static_cast<uint8_t*>(QrAlloc(std::max<size_t>(stride, step)));
    try {
      FaultPoint("zlt_change_field_rgb");
      for (int64_t k = 0; k < lines / 2; ++k) {
        uint8_t* a = picture + static_cast<size_t>(2 * k) * stride;
        uint8_t* b = a + step;
        CopyMemoryFast(tmp, a, step);
        CopyMemoryFast(a, b, step);
        CopyMemoryFast(b, tmp, step);
      }
    } catch (...) {
      ErrFmtOut(kFaultFlags, 0, 0, kFaultFormat, "exception-zlt_change_field_rgb(FieldFLip) ");
    }
    QrFree(tmp);
    return 0;
  }
  if (mode == 4) {
    // Line average: line n with the line n steps into the picture.
    if (lines < 2) return 0xFFFFFFFFu;
    const size_t bytes = width > 0 ? static_cast<size_t>(width) * 4 : 0;
    const bool avx2 = CurrentPaths().avx2;
    for (int64_t n = 0; n < lines; ++n) {
      uint8_t* row = picture + static_cast<size_t>(n) * stride;
      const uint8_t* other = picture + static_cast<size_t>(n) * step;
#if ZELT_X86
      if (avx2) {
        AverageIntoAvx2(row, other, bytes);
        continue;
      }
#endif
      AverageInto(row, other, bytes);
    }
    (void)avx2;
    return 0;
  }
  // Modes 1, 2 and 5 to 14 (copies to and from the second picture) are not provided.
  return 0;
}

ZELT_API uint32_t zlt_change_field_yuv(uint8_t* picture, uint32_t mode, int64_t width, int32_t height, uint32_t stride,
                                       uint8_t* second, uint32_t line_step) {
  uint32_t m = mode;
  if (m == 4) {
    m = 1;
  } else if (m == 11) {
    m = 9;
  } else if (m == 12) {
    m = 10;
  }
  return zlt_change_field_rgb(picture, static_cast<int32_t>(m), width, height, stride, second, line_step);
}

ZELT_API void zlt_flip_horz(uint8_t* dst, const uint8_t* src, uint32_t width, int32_t height, int32_t stride) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const bool stream = height > 0 && size_t(height) * size_t{width} * 4 >= kStreamFrameBytes;
  for (int32_t n = 0; n < height; ++n) {
    const ptrdiff_t off = static_cast<ptrdiff_t>(n) * stride;
#if ZELT_X86
    if (avx2) {
      FlipRow32Avx2(dst + off, src + off, width, stream);
      continue;
    }
#endif
    FlipRow32(dst + off, src + off, width);
  }
#if ZELT_X86
  if (avx2 && stream) _mm_sfence();  // streaming stores drain before the caller reads
#endif
  (void)avx2;
  (void)stream;
}

ZELT_API void zlt_flip_vert(uint8_t* dst, const uint8_t* src, uint32_t /*width*/, int32_t height, uint32_t stride) {
  SimdGuard();
  if (dst != src) {
    // A frame far larger than the cache goes out with streaming stores.
    const bool stream = height > 0 && size_t(height) * stride >= kStreamFrameBytes;
    for (int32_t n = 0; n < height; ++n) {
      uint8_t* d = dst + size_t(n) * stride;
      const uint8_t* s = src + size_t(height - 1 - n) * stride;
      if (stream) {
        CopyMemoryStreaming(d, s, stride);
      } else {
        CopyMemoryFast(d, s, stride);
      }
    }
    return;
  }
  uint8_t* tmp = static_cast<uint8_t*>(QrAlloc(size_t{stride} + 1));
  try {
    FaultPoint("zlt_flip_vert");
    for (int32_t n = 0; n < height / 2; ++n) {
      uint8_t* a = dst + size_t(n) * stride;
      uint8_t* b = dst + size_t(height - 1 - n) * stride;
      CopyMemoryFast(tmp, a, stride);
      CopyMemoryFast(a, b, stride);
      CopyMemoryFast(b, tmp, stride);
    }
  } catch (...) {
    ErrFmtOut(kFaultFlags, 0, 0, kFaultFormat, "exception-zlt_flip_vert() ");
  }
  QrFree(tmp);
}

}  // extern "C"
