// 256-bit row kernels of the YCbCr to 32-bit RGB converters.
//
// Exactness of the division: for an integer x the portable rule wants
// trunc(x / 10000) clamped to 0..255. Negative x can only give 0, and anything of
// 2560000 or more gives 255, so only 0 <= x < 2560000 needs an exact floor. The
// kernel forms 2x + 1 in 32-bit integers (|2x + 1| < 2^24, so exact in float),
// multiplies by fl(1/20000) and truncates. (x + 0.5) / 10000 lies at least
// 0.00005 away from every integer, and the two float roundings move it by at most
// 2^-23 * 256 < 0.000031 below 256, so the truncation is floor(x / 10000). The
// saturating packs then clamp to 0..255.
#if defined(__x86_64__) || defined(_M_X64)

#include <immintrin.h>

#include <cstring>

#include "ycbcrlib/to_rgb_kernels.h"

namespace zelt::ycbcr {
namespace {

struct Coefs {
  __m256i yOffset, yScale2, one, crToR2, cbToG2, crToG2, cbToB2, centre, alpha;
  __m256 scale;
  __m256i order;  // byte shuffle from B0-3 G0-3 R0-3 A0-3 (per lane) to pixels

  Coefs(const YcbcrToRgbMatrix& m, uint32_t channelOrder)
      : yOffset(_mm256_set1_epi32(m.yOffset)), yScale2(_mm256_set1_epi32(2 * m.yScale)),
        one(_mm256_set1_epi32(1)), crToR2(_mm256_set1_epi32(2 * m.crToR)), cbToG2(_mm256_set1_epi32(2 * m.cbToG)),
        crToG2(_mm256_set1_epi32(2 * m.crToG)), cbToB2(_mm256_set1_epi32(2 * m.cbToB)),
        centre(_mm256_set1_epi32(128)), alpha(_mm256_set1_epi32(255)), scale(_mm256_set1_ps(1.0f / 20000.0f)) {
    // Channel positions within each pixel, as indices 0 (B), 4 (G), 8 (R), 12 (A).
    static const int8_t kPos[4][4] = {{0, 4, 8, 12}, {12, 0, 4, 8}, {8, 4, 0, 12}, {12, 8, 4, 0}};
    alignas(32) int8_t mask[32];
    for (int lane = 0; lane < 2; ++lane) {
      for (int px = 0; px < 4; ++px) {
        for (int c = 0; c < 4; ++c) mask[16 * lane + 4 * px + c] = static_cast<int8_t>(kPos[channelOrder][c] + px);
      }
    }
    order = _mm256_load_si256(reinterpret_cast<const __m256i*>(mask));
  }
};

inline __m256i Quotient(const Coefs& k, __m256i twoXPlusOne) {
  return _mm256_cvttps_epi32(_mm256_mul_ps(_mm256_cvtepi32_ps(twoXPlusOne), k.scale));
}

// Eight pixels from luma and (already duplicated) chroma in 32-bit lanes; lane 0
// holds pixels 0-3 and lane 1 pixels 4-7. Writes 32 bytes.
inline void Decode8(const Coefs& k, __m256i y, __m256i cb, __m256i cr, uint8_t* dst) {
  const __m256i u = _mm256_sub_epi32(cb, k.centre), v = _mm256_sub_epi32(cr, k.centre);
  const __m256i y2 = _mm256_add_epi32(_mm256_mullo_epi32(_mm256_sub_epi32(y, k.yOffset), k.yScale2), k.one);
  const __m256i r = Quotient(k, _mm256_add_epi32(y2, _mm256_mullo_epi32(v, k.crToR2)));
  const __m256i g = Quotient(
      k, _mm256_sub_epi32(y2, _mm256_add_epi32(_mm256_mullo_epi32(u, k.cbToG2), _mm256_mullo_epi32(v, k.crToG2))));
  const __m256i b = Quotient(k, _mm256_add_epi32(y2, _mm256_mullo_epi32(u, k.cbToB2)));
  const __m256i bg = _mm256_packus_epi32(b, g);
  const __m256i ra = _mm256_packus_epi32(r, k.alpha);
  const __m256i bytes = _mm256_packus_epi16(bg, ra);  // per lane: B0-3 G0-3 R0-3 A0-3
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), _mm256_shuffle_epi8(bytes, k.order));
}

inline __m256i Widen8(__m128i bytes) { return _mm256_cvtepu8_epi32(bytes); }

}  // namespace

size_t PackedPairsToRgb32Avx2(uint8_t* dst, const uint8_t* groups, int yAt, int cbAt, int crAt, size_t pairs,
                              const YcbcrToRgbMatrix& m, uint32_t order) {
  const Coefs k(m, order);
  alignas(16) int8_t ys[16], cbs[16], crs[16];
  for (int i = 0; i < 16; ++i) {
    ys[i] = i < 8 ? static_cast<int8_t>(yAt + 2 * i) : -1;
    cbs[i] = i < 8 ? static_cast<int8_t>(cbAt + 4 * (i / 2)) : -1;
    crs[i] = i < 8 ? static_cast<int8_t>(crAt + 4 * (i / 2)) : -1;
  }
  const __m128i ySel = _mm_load_si128(reinterpret_cast<const __m128i*>(ys));
  const __m128i cbSel = _mm_load_si128(reinterpret_cast<const __m128i*>(cbs));
  const __m128i crSel = _mm_load_si128(reinterpret_cast<const __m128i*>(crs));
  const size_t blocks = pairs / 4;
  for (size_t i = 0; i < blocks; ++i) {
    const __m128i g = _mm_loadu_si128(reinterpret_cast<const __m128i*>(groups + 16 * i));
    Decode8(k, Widen8(_mm_shuffle_epi8(g, ySel)), Widen8(_mm_shuffle_epi8(g, cbSel)),
            Widen8(_mm_shuffle_epi8(g, crSel)), dst + 32 * i);
  }
  return blocks * 4;
}

size_t PlanarPairsToRgb32Avx2(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, size_t pairs,
                              const YcbcrToRgbMatrix& m, uint32_t order) {
  const Coefs k(m, order);
  const __m128i dup = _mm_setr_epi8(0, 0, 1, 1, 2, 2, 3, 3, -1, -1, -1, -1, -1, -1, -1, -1);
  const size_t blocks = pairs / 4;
  for (size_t i = 0; i < blocks; ++i) {
    int32_t cb4, cr4;
    std::memcpy(&cb4, cb + 4 * i, 4);
    std::memcpy(&cr4, cr + 4 * i, 4);
    Decode8(k, Widen8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(y + 8 * i))),
            Widen8(_mm_shuffle_epi8(_mm_cvtsi32_si128(cb4), dup)), Widen8(_mm_shuffle_epi8(_mm_cvtsi32_si128(cr4), dup)),
            dst + 32 * i);
  }
  return blocks * 4;
}

}  // namespace zelt::ycbcr

#endif
