// AVX2 012v kernels; this file alone is compiled with -mavx2 and is reached only
// through the path selector (core/paths.h). Each does whole blocks and leaves the rest to the portable
// kernel, so the bytes are the same.
#include "core/paths.h"
#include "transcode/v210_kernels.h"

#if ZELT_X86
#include <immintrin.h>

#include <algorithm>

#include "core/formats.h"

namespace zelt::transcode {

namespace {

inline __m256i Load2x128(const void* lo, const void* hi) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(lo))),
                                 _mm_loadu_si128(static_cast<const __m128i*>(hi)), 1);
}

inline __m256i Load2x64(const void* lo, const void* hi) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadl_epi64(static_cast<const __m128i*>(lo))),
                                 _mm_loadl_epi64(static_cast<const __m128i*>(hi)), 1);
}

// Same 16-byte pattern in both lanes; -1 bytes become zero.
#define ZELT_LANES(...) _mm256_setr_epi8(__VA_ARGS__, __VA_ARGS__)

}  // namespace

void UyvyToV012GroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups) {
  // Word j of a group holds bytes 3j, 3j+1, 3j+2 times 4, at bits 0, 10 and 20.
  const __m256i lo = ZELT_LANES(0, -1, -1, -1, 3, -1, -1, -1, 6, -1, -1, -1, 9, -1, -1, -1);
  const __m256i mid = ZELT_LANES(1, -1, -1, -1, 4, -1, -1, -1, 7, -1, -1, -1, 10, -1, -1, -1);
  const __m256i hi = ZELT_LANES(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1);
  size_t g = 0;
  // Each lane loads 16 bytes of which it uses 12: keep a group in hand so the
  // extra 4 bytes stay inside the run.
  for (; g + 3 <= groups; g += 2) {
    const __m256i v = Load2x128(src + 12 * g, src + 12 * g + 12);
    const __m256i a = _mm256_slli_epi32(_mm256_shuffle_epi8(v, lo), 2);
    const __m256i b = _mm256_slli_epi32(_mm256_shuffle_epi8(v, mid), 12);
    const __m256i c = _mm256_slli_epi32(_mm256_shuffle_epi8(v, hi), 22);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 16 * g), _mm256_or_si256(_mm256_or_si256(a, b), c));
  }
  UyvyToV012Groups(dst + 16 * g, src + 12 * g, groups - g);
}

void V012ToUyvyGroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups) {
  // Four groups a step. Lane 0 takes groups 0 and 1, lane 1 groups 2 and 3. The
  // three fields of every word are narrowed to 16 bits, rounded there, and
  // packed to bytes: ab holds per lane the low fields (a) of both groups' words,
  // then the middle fields (b); cc the high fields (c), twice.
  const __m256i mask = _mm256_set1_epi32(0x3FF);
  const __m256i two = _mm256_set1_epi16(2);
  const __m256i headAb = ZELT_LANES(0, 8, -1, 1, 9, -1, 2, 10, -1, 3, 11, -1, 4, 12, -1, 5);
  const __m256i headCc = ZELT_LANES(-1, -1, 0, -1, -1, 1, -1, -1, 2, -1, -1, 3, -1, -1, 4, -1);
  const __m256i tailAb = ZELT_LANES(13, -1, 6, 14, -1, 7, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m256i tailCc = ZELT_LANES(-1, 5, -1, -1, 6, -1, -1, 7, -1, -1, -1, -1, -1, -1, -1, -1);
  // (v + 2) >> 2, then saturation to 255 in the byte pack: the 10-to-8-bit rule
  // (1021..1023 all give 255).
  auto round = [&](__m256i v) { return _mm256_srli_epi16(_mm256_add_epi16(v, two), 2); };
  size_t g = 0;
  for (; g + 4 <= groups; g += 4) {
    const uint8_t* s = src + 16 * g;
    const __m256i v0 = Load2x128(s, s + 32);
    const __m256i v1 = Load2x128(s + 16, s + 48);
    auto field = [&](int shift) {
      return _mm256_packus_epi32(_mm256_and_si256(_mm256_srli_epi32(v0, shift), mask),
                                 _mm256_and_si256(_mm256_srli_epi32(v1, shift), mask));
    };
    const __m256i ab = _mm256_packus_epi16(round(field(0)), round(field(10)));
    const __m256i c = round(field(20));
    const __m256i cc = _mm256_packus_epi16(c, c);
    const __m256i head = _mm256_or_si256(_mm256_shuffle_epi8(ab, headAb), _mm256_shuffle_epi8(cc, headCc));
    const __m256i tail = _mm256_or_si256(_mm256_shuffle_epi8(ab, tailAb), _mm256_shuffle_epi8(cc, tailCc));
    uint8_t* d = dst + 12 * g;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm256_castsi256_si128(head));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d + 16), _mm256_castsi256_si128(tail));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 24), _mm256_extracti128_si256(head, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d + 40), _mm256_extracti128_si256(tail, 1));
  }
  V012ToUyvyGroups(dst + 12 * g, src + 16 * g, groups - g);
}

namespace {

// One row, two groups (12 pixels) per step, each lane one group:
//   word 0 Cb0 Y0 Cr0 | word 1 Y1 Cb1 Y2 | word 2 Cr1 Y3 Cb2 | word 3 Y4 Cr2 Y5.
// The luma lane holds Y0..Y7; the chroma lane Cb0..Cb3 then Cr0..Cr3.
// Returns the number of groups done.
uint32_t HbdRowAvx2(HbdSource s, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                    uint32_t width) {
  const __m256i lowY = ZELT_LANES(-1, -1, -1, -1, 2, 3, -1, -1, -1, -1, -1, -1, 8, 9, -1, -1);
  const __m256i lowC = ZELT_LANES(0, 1, -1, -1, -1, -1, -1, -1, 10, 11, -1, -1, -1, -1, -1, -1);
  const __m256i midY = ZELT_LANES(0, 1, -1, -1, -1, -1, -1, -1, 6, 7, -1, -1, -1, -1, -1, -1);
  const __m256i midC = ZELT_LANES(-1, -1, -1, -1, 2, 3, -1, -1, -1, -1, -1, -1, 12, 13, -1, -1);
  const __m256i highY = ZELT_LANES(-1, -1, -1, -1, 4, 5, -1, -1, -1, -1, -1, -1, 10, 11, -1, -1);
  const __m256i highC = ZELT_LANES(8, 9, -1, -1, -1, -1, -1, -1, 4, 5, -1, -1, -1, -1, -1, -1);
  const __m256i evens = ZELT_LANES(0, 1, 4, 5, 8, 9, 12, 13, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m256i ten = _mm256_set1_epi16(0x3FF);
  const __m128i shift = _mm_cvtsi32_si128(static_cast<int>(HbdShift(s)));
  auto fit = [&](__m256i v) { return _mm256_and_si256(_mm256_srl_epi16(v, shift), ten); };

  uint32_t g = 0;
  // The second lane reads luma up to pixel 6g+13 and chroma up to pair 3g+6.
  for (; 6 * g + 15 <= width; g += 2) {
    const size_t p = size_t{6} * g;
    const __m256i yv = fit(Load2x128(y + p, y + p + 6));
    __m256i cv;
    if (HbdFullChroma(s)) {
      const __m256i u = _mm256_shuffle_epi8(Load2x128(cb + p, cb + p + 6), evens);
      const __m256i v = _mm256_shuffle_epi8(Load2x128(cr + p, cr + p + 6), evens);
      cv = fit(_mm256_unpacklo_epi64(u, v));
    } else {
      const size_t k = size_t{3} * g;
      cv = fit(_mm256_unpacklo_epi64(Load2x64(cb + k, cb + k + 3), Load2x64(cr + k, cr + k + 3)));
    }
    const __m256i a = _mm256_or_si256(_mm256_shuffle_epi8(yv, lowY), _mm256_shuffle_epi8(cv, lowC));
    const __m256i b = _mm256_or_si256(_mm256_shuffle_epi8(yv, midY), _mm256_shuffle_epi8(cv, midC));
    const __m256i c = _mm256_or_si256(_mm256_shuffle_epi8(yv, highY), _mm256_shuffle_epi8(cv, highC));
    const __m256i out = _mm256_or_si256(a, _mm256_or_si256(_mm256_slli_epi32(b, 10), _mm256_slli_epi32(c, 20)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 16 * size_t{g}), out);
  }
  return g;
}

// 32 pixels per step.
uint32_t UyvyRowAvx2(unsigned bits, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                     uint32_t width) {
  const __m256i low8 = _mm256_set1_epi16(0xFF);
  const __m128i shift = _mm_cvtsi32_si128(static_cast<int>(bits));
  const __m256i pairs = ZELT_LANES(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15);
  auto eight = [&](const uint16_t* p) {
    return _mm256_and_si256(_mm256_srl_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)), shift), low8);
  };
  uint32_t x = 0;
  for (; x + 32 <= width; x += 32) {
    const __m256i yb = _mm256_permute4x64_epi64(_mm256_packus_epi16(eight(y + x), eight(y + x + 16)), 0xD8);
    const __m256i uv = _mm256_shuffle_epi8(_mm256_packus_epi16(eight(cb + x / 2), eight(cr + x / 2)), pairs);
    const __m256i lo = _mm256_unpacklo_epi8(uv, yb);
    const __m256i hi = _mm256_unpackhi_epi8(uv, yb);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 2 * size_t{x}), _mm256_permute2x128_si256(lo, hi, 0x20));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 2 * size_t{x} + 32), _mm256_permute2x128_si256(lo, hi, 0x31));
  }
  return x / 2;
}

template <typename T>
const T* Advance(const T* p, size_t bytes) {
  return reinterpret_cast<const T*>(reinterpret_cast<const uint8_t*>(p) + bytes);
}

}  // namespace

uint32_t HbdTo012vFrameAvx2(HbdSource s, const HbdFrame& f) {
  // No std::max here: its instantiation would be shared with baseline objects.
  const size_t pitch = f.dst_stride > V012MinPitch(f.width) ? f.dst_stride : V012MinPitch(f.width);
  for (uint32_t r = 0; r < f.height; ++r) {
    const size_t c = HbdBandChroma(s, f, r);
    const uint16_t* y = Advance(f.y, size_t{r} * f.src_stride);
    const uint16_t* cb = Advance(f.cb, c);
    const uint16_t* cr = Advance(f.cr, c);
    uint8_t* d = f.dst + r * pitch;
    const uint32_t done = HbdRowAvx2(s, d, y, cb, cr, f.width);
    HbdTo012vRow(s, d, y, cb, cr, f.width, done, pitch);
  }
  return f.height * static_cast<uint32_t>(pitch);
}

uint32_t HbdToUyvyFrameAvx2(HbdSource s, const HbdFrame& f) {
  const unsigned shift = HbdShift(s) + 2;
  for (uint32_t r = 0; r < f.height; ++r) {
    const size_t c = HbdBandChroma(s, f, r);
    const uint16_t* y = Advance(f.y, size_t{r} * f.src_stride);
    const uint16_t* cb = Advance(f.cb, c);
    const uint16_t* cr = Advance(f.cr, c);
    uint8_t* d = f.dst + size_t{r} * f.dst_stride;
    const uint32_t done = UyvyRowAvx2(shift, d, y, cb, cr, f.width);
    HbdToUyvyRow(shift, d, y, cb, cr, f.width, done);
  }
  return f.height * f.dst_stride;
}

}  // namespace zelt::transcode

#endif
