// SSE4.1 block loops of the RGB packers (pmovsx/pmovzx, pmaxsd/pminsd, pshufb). This
// file alone is built with -msse4.1; callers reach it only when CPUFeatureFlags()
// reports SSE4.1.
#include "core/arch.h"
#include "rows/row_kernels.h"

#if ZELT_X86
#include <smmintrin.h>

namespace zelt::rows {
namespace {

// Four samples << shift (in 32 bits), clamped to 0..65535, then >> 6 to 10 bits.
inline __m128i Ten(__m128i v16, __m128i count) {
  const __m128i w = _mm_sll_epi32(v16, count);
  return _mm_srli_epi32(_mm_min_epi32(_mm_max_epi32(w, _mm_setzero_si128()), _mm_set1_epi32(65535)), 6);
}

inline __m128i Word(__m128i r, __m128i g, __m128i b, int format) {
  const __m128i swap = _mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12);
  switch (format) {
    case 122:
    case 125: return _mm_or_si128(_mm_or_si128(_mm_slli_epi32(b, 20), _mm_slli_epi32(g, 10)), r);
    case 123:
      return _mm_shuffle_epi8(_mm_or_si128(_mm_or_si128(_mm_slli_epi32(r, 20), _mm_slli_epi32(g, 10)), b), swap);
    case 124: return _mm_or_si128(_mm_or_si128(_mm_slli_epi32(r, 20), _mm_slli_epi32(g, 10)), b);
    default:
      return _mm_shuffle_epi8(
          _mm_or_si128(_mm_or_si128(_mm_slli_epi32(r, 22), _mm_slli_epi32(g, 12)), _mm_slli_epi32(b, 2)), swap);
  }
}

// pshufb masks that interleave three 16-byte channel vectors (B, G, R) into 48 bytes.
// Built at compile time: nothing in this file may run before the SSE4.1 check.
struct InterleaveMasks {
  alignas(16) int8_t m[3][3][16];  // [output vector][channel][byte]
};
constexpr InterleaveMasks MakeInterleave() {
  InterleaveMasks t{};
  for (int o = 0; o < 3; ++o)
    for (int c = 0; c < 3; ++c)
      for (int k = 0; k < 16; ++k) {
        const int j = 16 * o + k;
        t.m[o][c][k] = static_cast<int8_t>(j % 3 == c ? j / 3 : -1);
      }
  return t;
}
constexpr InterleaveMasks kInterleave = MakeInterleave();

inline __m128i Mask(int o, int c) { return _mm_load_si128(reinterpret_cast<const __m128i*>(kInterleave.m[o][c])); }

// Sixteen samples of one channel: (sample + noise) >> shift, clamped to 0..255, as bytes.
inline __m128i Channel(const uint16_t* p, bool signedRead, __m128i count, const __m128i noise[4]) {
  const __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i hi = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8));
  __m128i v[4];
  if (signedRead) {
    v[0] = _mm_cvtepi16_epi32(lo), v[1] = _mm_cvtepi16_epi32(_mm_srli_si128(lo, 8));
    v[2] = _mm_cvtepi16_epi32(hi), v[3] = _mm_cvtepi16_epi32(_mm_srli_si128(hi, 8));
  } else {
    v[0] = _mm_cvtepu16_epi32(lo), v[1] = _mm_cvtepu16_epi32(_mm_srli_si128(lo, 8));
    v[2] = _mm_cvtepu16_epi32(hi), v[3] = _mm_cvtepu16_epi32(_mm_srli_si128(hi, 8));
  }
  for (int i = 0; i < 4; ++i) {
    v[i] = _mm_sra_epi32(_mm_add_epi32(v[i], noise[i]), count);
    v[i] = _mm_min_epi32(_mm_max_epi32(v[i], _mm_setzero_si128()), _mm_set1_epi32(255));
  }
  return _mm_packus_epi16(_mm_packs_epi32(v[0], v[1]), _mm_packs_epi32(v[2], v[3]));
}

inline __m128i Clamp255(__m128i v) {
  return _mm_min_epi32(_mm_max_epi32(v, _mm_setzero_si128()), _mm_set1_epi32(255));
}

}  // namespace

size_t MatrixBlocksSse41(const uint16_t* y, const uint16_t* cr, const uint16_t* cb, uint8_t* dst, size_t pixels,
                         uint32_t shift, const int32_t k[6], int bpp, uint8_t alpha) {
  const __m128i count = _mm_cvtsi32_si128(int(shift));
  const __m128i crR = _mm_set1_epi32(k[0]), crG = _mm_set1_epi32(k[1]), cbG = _mm_set1_epi32(k[2]);
  const __m128i cbB = _mm_set1_epi32(k[3]), gain = _mm_set1_epi32(k[4]), offset = _mm_set1_epi32(k[5]);
  const __m128i c128 = _mm_set1_epi32(128);
  const __m128i alphaBits = _mm_set1_epi32(int32_t(uint32_t(alpha) << 24));
  const __m128i to24 = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  size_t x = 0;
  for (; x + 8 <= pixels; x += 8) {
    const __m128i yv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(y + x));
    const __m128i c = _mm_sub_epi32(
        _mm_srl_epi32(_mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(cr + x / 2))), count), c128);
    const __m128i d = _mm_sub_epi32(
        _mm_srl_epi32(_mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(cb + x / 2))), count), c128);
    __m128i words[2];
    for (int half = 0; half < 2; ++half) {
      const __m128i y32 = _mm_srl_epi32(_mm_cvtepu16_epi32(half ? _mm_srli_si128(yv, 8) : yv), count);
      const __m128i ch = half ? _mm_unpackhi_epi32(c, c) : _mm_unpacklo_epi32(c, c);
      const __m128i dh = half ? _mm_unpackhi_epi32(d, d) : _mm_unpacklo_epi32(d, d);
      const __m128i yy = _mm_srai_epi32(_mm_mullo_epi32(_mm_sub_epi32(y32, offset), gain), 7);
      const __m128i b = Clamp255(_mm_srai_epi32(_mm_add_epi32(yy, _mm_mullo_epi32(dh, cbB)), 7));
      const __m128i g = Clamp255(_mm_srai_epi32(
          _mm_sub_epi32(_mm_sub_epi32(_mm_add_epi32(yy, yy), _mm_mullo_epi32(dh, cbG)), _mm_mullo_epi32(ch, crG)), 8));
      const __m128i r = Clamp255(_mm_srai_epi32(_mm_add_epi32(yy, _mm_mullo_epi32(ch, crR)), 7));
      words[half] = _mm_or_si128(_mm_or_si128(b, _mm_slli_epi32(g, 8)), _mm_slli_epi32(r, 16));
    }
    if (bpp == 4) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * x), _mm_or_si128(words[0], alphaBits));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * x + 16), _mm_or_si128(words[1], alphaBits));
    } else {
      const __m128i lo = _mm_shuffle_epi8(words[0], to24), hi = _mm_shuffle_epi8(words[1], to24);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 3 * x), _mm_or_si128(lo, _mm_slli_si128(hi, 12)));
      _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 3 * x + 16), _mm_srli_si128(hi, 4));
    }
  }
  return x;
}

size_t Rgb30BlocksSse41(const int16_t* g, const int16_t* r, const int16_t* b, uint32_t* dst, size_t pixels,
                        uint32_t shift, int format) {
  const __m128i count = _mm_cvtsi32_si128(int(shift));
  size_t x = 0;
  for (; x + 8 <= pixels; x += 8) {
    const __m128i gv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(g + x));
    const __m128i rv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(r + x));
    const __m128i bv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + x));
    for (int half = 0; half < 2; ++half) {
      const __m128i gh = _mm_cvtepi16_epi32(half ? _mm_srli_si128(gv, 8) : gv);
      const __m128i rh = _mm_cvtepi16_epi32(half ? _mm_srli_si128(rv, 8) : rv);
      const __m128i bh = _mm_cvtepi16_epi32(half ? _mm_srli_si128(bv, 8) : bv);
      const __m128i w = Word(Ten(rh, count), Ten(gh, count), Ten(bh, count), format);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x + 4 * half), w);
    }
  }
  return x;
}

size_t PlanarRgb24BlocksSse41(const uint16_t* g, const uint16_t* r, const uint16_t* b, uint8_t* dst, size_t pixels,
                              int shift, bool signedRead, const int32_t* noise) {
  const __m128i count = _mm_cvtsi32_si128(shift);
  size_t x = 0;
  for (; x + 16 <= pixels; x += 16, noise += 16) {
    __m128i n[4];
    for (int i = 0; i < 4; ++i) n[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(noise + 4 * i));
    const __m128i ch[3] = {Channel(b + x, signedRead, count, n), Channel(g + x, signedRead, count, n),
                           Channel(r + x, signedRead, count, n)};
    for (int o = 0; o < 3; ++o) {
      const __m128i v = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(ch[0], Mask(o, 0)), _mm_shuffle_epi8(ch[1], Mask(o, 1))),
                                     _mm_shuffle_epi8(ch[2], Mask(o, 2)));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 3 * x + 16 * o), v);
    }
  }
  return x;
}

}  // namespace zelt::rows

#endif
