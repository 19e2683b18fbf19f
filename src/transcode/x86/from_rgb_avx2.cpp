// 256-bit RGB32 to 4:2:2 YCbCr in 14-bit fixed point; this file alone is compiled
// with -mavx2 and is reached only through the path selector (core/paths.h).
#include "core/paths.h"
#include "transcode/from_rgb_kernel.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::transcode {

namespace {

// Weights for (B, R) word pairs and (G, 0) word pairs, for _mm256_madd_epi16.
inline __m256i PairBR(int16_t b, int16_t r) {
  return _mm256_set1_epi32(static_cast<int32_t>(static_cast<uint16_t>(b)) | (static_cast<int32_t>(r) << 16));
}
inline __m256i PairG(int16_t g) { return _mm256_set1_epi32(static_cast<uint16_t>(g)); }

struct Weights {
  __m256i br, g;
};

// One weighted sum per 32-bit pixel, rounded (or not) and shifted down by 14.
inline __m256i Weigh(__m256i br, __m256i g0, const Weights& w, __m256i round) {
  const __m256i sum = _mm256_add_epi32(_mm256_madd_epi16(br, w.br), _mm256_madd_epi16(g0, w.g));
  return _mm256_srai_epi32(_mm256_add_epi32(sum, round), 14);
}

}  // namespace

uint32_t EncodeRgb32Row422Avx2(const uint8_t* src, RgbOffsets off, const Rgb14Matrix& m, Chroma422 layout,
                               uint8_t* y, uint8_t* cb, uint8_t* cr, uint32_t pairs) {
  const uint32_t blocks = pairs / 8;  // 16 pixels a block
  if (blocks == 0) return 0;

  // Each pixel to B, G, R, 0 in its 32-bit lane.
  const auto b = static_cast<char>(off.b), g = static_cast<char>(off.g), r = static_cast<char>(off.r);
  const __m256i order = _mm256_setr_epi8(b, g, r, -1, b + 4, g + 4, r + 4, -1, b + 8, g + 8, r + 8, -1, b + 12, g + 12,
                                         r + 12, -1, b, g, r, -1, b + 4, g + 4, r + 4, -1, b + 8, g + 8, r + 8, -1,
                                         b + 12, g + 12, r + 12, -1);
  const __m256i lowBytes = _mm256_set1_epi32(0x00FF00FF);
  const Weights wy{PairBR(m.yB, m.yR), PairG(m.yG)};
  const Weights wcb{PairBR(m.cbB, m.cbR), PairG(m.cbG)};
  const Weights wcr{PairBR(m.crB, m.crR), PairG(m.crG)};
  const __m256i half = _mm256_set1_epi32(8192);
  // Planar output truncates the second luma of each pair.
  const __m256i yRound = layout == Chroma422::kPlanar ? _mm256_setr_epi32(8192, 0, 8192, 0, 8192, 0, 8192, 0) : half;
  const __m256i yOffset = _mm256_set1_epi16(m.yOffset);
  const __m256i centre = _mm256_set1_epi16(128);
  const __m256i zero = _mm256_setzero_si256();
  const __m256i max8 = _mm256_set1_epi16(255);
  // Words 0 4 2 6 1 5 3 7 of each lane.
  const __m256i pairOrder = _mm256_setr_epi8(0, 1, 8, 9, 4, 5, 12, 13, 2, 3, 10, 11, 6, 7, 14, 15, 0, 1, 8, 9, 4, 5,
                                             12, 13, 2, 3, 10, 11, 6, 7, 14, 15);
  // 16 bytes Cb0 Cr0 Cb2 Cr2 ... -> Cb0 Cb2 ... Cr0 Cr2 ...
  const __m128i split = _mm_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15);

  for (uint32_t k = 0; k < blocks; ++k, src += 64) {
    const __m256i p0 = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src)), order);
    const __m256i p1 = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 32)), order);
    const __m256i br0 = _mm256_and_si256(p0, lowBytes), g0 = _mm256_srli_epi16(p0, 8);
    const __m256i br1 = _mm256_and_si256(p1, lowBytes), g1 = _mm256_srli_epi16(p1, 8);

    // Words in the order p0..3, p8..11 | p4..7, p12..15 (packs works per lane).
    __m256i y16 = _mm256_packs_epi32(Weigh(br0, g0, wy, yRound), Weigh(br1, g1, wy, yRound));
    y16 = _mm256_min_epi16(_mm256_max_epi16(_mm256_adds_epi16(y16, yOffset), zero), max8);

    // Chroma only for the first pixel of each pair: one vector of them, lanes
    // p0 p8 p2 p10 | p4 p12 p6 p14. Packed as (first, second) chroma sample words
    // it comes out p0 p8 p2 p10 (first) p0 p8 p2 p10 (second) per lane; the byte
    // shuffle puts each pair's two samples side by side in y16's pair order.
    const __m256i e = _mm256_blend_epi32(p0, _mm256_slli_epi64(p1, 32), 0xAA);
    const __m256i bre = _mm256_and_si256(e, lowBytes), ge = _mm256_srli_epi16(e, 8);
    const __m256i vcb = Weigh(bre, ge, wcb, half), vcr = Weigh(bre, ge, wcr, half);
    __m256i c16 = layout == Chroma422::kYvyu ? _mm256_packs_epi32(vcr, vcb) : _mm256_packs_epi32(vcb, vcr);
    c16 = _mm256_shuffle_epi8(c16, pairOrder);
    c16 = _mm256_min_epi16(_mm256_max_epi16(_mm256_adds_epi16(c16, centre), zero), max8);

    switch (layout) {
      case Chroma422::kUyvy: {
        const __m256i out = _mm256_or_si256(c16, _mm256_slli_epi16(y16, 8));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(y), _mm256_permute4x64_epi64(out, 0xD8));
        y += 32;
        break;
      }
      case Chroma422::kYuy2:
      case Chroma422::kYvyu: {
        const __m256i out = _mm256_or_si256(y16, _mm256_slli_epi16(c16, 8));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(y), _mm256_permute4x64_epi64(out, 0xD8));
        y += 32;
        break;
      }
      case Chroma422::kPlanar: {
        const __m256i yp = _mm256_permute4x64_epi64(y16, 0xD8);
        const __m256i cp = _mm256_permute4x64_epi64(c16, 0xD8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(y),
                         _mm_packus_epi16(_mm256_castsi256_si128(yp), _mm256_extracti128_si256(yp, 1)));
        const __m128i c8 = _mm_shuffle_epi8(
            _mm_packus_epi16(_mm256_castsi256_si128(cp), _mm256_extracti128_si256(cp, 1)), split);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cb), c8);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cr), _mm_srli_si128(c8, 8));
        y += 16;
        cb += 8;
        cr += 8;
        break;
      }
    }
  }
  return blocks * 8;
}

namespace {

// floor(x / 1000000) for 0 <= x < 2^32 with x below 4.3e8: (x * 1125899907) >> 50.
// The multiplier exceeds 2^50 / 10^6 by 0.157, so the error stays below
// 4.3e8 * 0.157 / 2^50 < 10^-7, far less than the 10^-6 gap to the next quotient.
inline __m256i Div1e6(__m256i x) {
  const __m256i mul = _mm256_set1_epi32(1125899907);
  const __m256i even = _mm256_srli_epi64(_mm256_mul_epu32(x, mul), 50);
  const __m256i odd = _mm256_srli_epi64(_mm256_mul_epu32(_mm256_srli_epi64(x, 32), mul), 50);
  return _mm256_or_si256(even, _mm256_slli_epi64(odd, 32));
}

inline __m256i Weighted(__m256i r, __m256i g, __m256i b, int32_t wr, int32_t wg, int32_t wb) {
  return _mm256_add_epi32(_mm256_add_epi32(_mm256_mullo_epi32(r, _mm256_set1_epi32(wr)),
                                           _mm256_mullo_epi32(g, _mm256_set1_epi32(wg))),
                          _mm256_mullo_epi32(b, _mm256_set1_epi32(wb)));
}

// The chroma rule: q = floor((|s| + bias) / 10^6) with the up bias for s >= 0 and
// the down bias for s < 0, sign restored, centre added, clamped to 0..255.
inline __m256i Chroma(__m256i s, int32_t upBias, int32_t downBias) {
  const __m256i negative = _mm256_cmpgt_epi32(_mm256_setzero_si256(), s);
  const __m256i bias = _mm256_blendv_epi8(_mm256_set1_epi32(upBias), _mm256_set1_epi32(downBias), negative);
  const __m256i q = Div1e6(_mm256_add_epi32(_mm256_abs_epi32(s), bias));
  const __m256i signedQ = _mm256_sub_epi32(_mm256_xor_si256(q, negative), negative);
  return _mm256_add_epi32(signedQ, _mm256_set1_epi32(128));
}

}  // namespace

uint32_t EncodeRgb32PlanarRowExactAvx2(const uint8_t* src, RgbOffsets off, const RgbToYcbcrMatrix& m, uint8_t* y,
                                       uint8_t* cb, uint8_t* cr, uint32_t pairs) {
  const uint32_t blocks = pairs / 8;  // 16 pixels a block
  if (blocks == 0) return 0;
  // R in bits 0-7, G in 8-15, B in 16-23 of each pixel's 32-bit lane.
  const auto b = static_cast<char>(off.b), g = static_cast<char>(off.g), r = static_cast<char>(off.r);
  const __m256i order = _mm256_setr_epi8(r, g, b, -1, r + 4, g + 4, b + 4, -1, r + 8, g + 8, b + 8, -1, r + 12, g + 12,
                                         b + 12, -1, r, g, b, -1, r + 4, g + 4, b + 4, -1, r + 8, g + 8, b + 8, -1,
                                         r + 12, g + 12, b + 12, -1);
  const __m256i byte = _mm256_set1_epi32(0xFF);
  // Luma: first of a pair rounds up from a remainder of 500001, the second truncates.
  const __m256i yBias = _mm256_setr_epi32(499999, 0, 499999, 0, 499999, 0, 499999, 0);
  const __m256i yOffset = _mm256_set1_epi32(m.yOffset);
  const __m256i max8 = _mm256_set1_epi32(255);
  const __m256i zero = _mm256_setzero_si256();
  const __m256i gather = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);

  // Chroma of 8 pairs from one vector of their first pixels, lanes a0 b0 a2 b2 |
  // a4 b4 a6 b6 (a: pixels 0-7, b: pixels 8-15); this puts Cb, then Cr, in pair order.
  const __m128i split = _mm_setr_epi8(0, 2, 4, 6, 1, 3, 5, 7, 8, 10, 12, 14, 9, 11, 13, 15);

  for (uint32_t k = 0; k < blocks; ++k, src += 64, y += 16) {
    const __m256i p0 = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src)), order);
    const __m256i p1 = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 32)), order);
    __m256i yv[2];
    for (int h = 0; h < 2; ++h) {
      const __m256i p = h == 0 ? p0 : p1;
      const __m256i rr = _mm256_and_si256(p, byte);
      const __m256i gg = _mm256_and_si256(_mm256_srli_epi32(p, 8), byte);
      const __m256i bb = _mm256_srli_epi32(p, 16);
      const __m256i sy = _mm256_add_epi32(Weighted(rr, gg, bb, m.yR, m.yG, m.yB), yBias);
      yv[h] = _mm256_min_epi32(_mm256_add_epi32(Div1e6(sy), yOffset), max8);
    }
    // packs/packus work per 128-bit lane; the dword gather puts the 16 bytes in
    // pixel order.
    const __m256i y8 = _mm256_packus_epi16(_mm256_packs_epi32(yv[0], yv[1]), zero);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y),
                     _mm256_castsi256_si128(_mm256_permutevar8x32_epi32(y8, gather)));
    if (cb != nullptr) {
      const __m256i p = _mm256_blend_epi32(p0, _mm256_slli_epi64(p1, 32), 0xAA);
      const __m256i rr = _mm256_and_si256(p, byte);
      const __m256i gg = _mm256_and_si256(_mm256_srli_epi32(p, 8), byte);
      const __m256i bb = _mm256_srli_epi32(p, 16);
      const __m256i vcb = Chroma(Weighted(rr, gg, bb, m.cbR, m.cbG, m.cbB), 549999, 749999);
      const __m256i vcr = Chroma(Weighted(rr, gg, bb, m.crR, m.crG, m.crB), 499999, 499999);
      const __m256i c8 = _mm256_packus_epi16(_mm256_packs_epi32(vcb, vcr), zero);
      const __m128i c = _mm_shuffle_epi8(_mm256_castsi256_si128(_mm256_permutevar8x32_epi32(c8, gather)), split);
      _mm_storel_epi64(reinterpret_cast<__m128i*>(cb), c);
      _mm_storel_epi64(reinterpret_cast<__m128i*>(cr), _mm_srli_si128(c, 8));
      cb += 8;
      cr += 8;
    }
  }
  return blocks * 8;
}

}  // namespace zelt::transcode

#endif
