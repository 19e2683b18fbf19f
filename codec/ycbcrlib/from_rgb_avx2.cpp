// 256-bit RGB32 to 4:2:2 YCbCr in 14-bit fixed point; this file alone is compiled
// with -mavx2 and is reached only through UseAvx2().
#include "ycbcrlib/from_rgb_kernel.h"

#if defined(__x86_64__) || defined(_M_X64)
#include <immintrin.h>

namespace zelt::ycbcr {

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
  // 16 bytes Cb0 Cr0 Cb2 Cr2 ... -> Cb0 Cb2 ... Cr0 Cr2 ...
  const __m128i split = _mm_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15);

  for (uint32_t k = 0; k < blocks; ++k, src += 64) {
    const __m256i p0 = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src)), order);
    const __m256i p1 = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 32)), order);
    const __m256i br0 = _mm256_and_si256(p0, lowBytes), g0 = _mm256_srli_epi16(p0, 8);
    const __m256i br1 = _mm256_and_si256(p1, lowBytes), g1 = _mm256_srli_epi16(p1, 8);

    // Words in the order p0..3, p8..11 | p4..7, p12..15 (packs works per lane).
    __m256i y16 = _mm256_packs_epi32(Weigh(br0, g0, wy, yRound), Weigh(br1, g1, wy, yRound));
    __m256i cb16 = _mm256_packs_epi32(Weigh(br0, g0, wcb, half), Weigh(br1, g1, wcb, half));
    __m256i cr16 = _mm256_packs_epi32(Weigh(br0, g0, wcr, half), Weigh(br1, g1, wcr, half));
    y16 = _mm256_min_epi16(_mm256_max_epi16(_mm256_adds_epi16(y16, yOffset), zero), max8);
    cb16 = _mm256_min_epi16(_mm256_max_epi16(_mm256_adds_epi16(cb16, centre), zero), max8);
    cr16 = _mm256_min_epi16(_mm256_max_epi16(_mm256_adds_epi16(cr16, centre), zero), max8);

    // Chroma of the first pixel of each pair sits in the even words; put the pair's
    // second chroma sample in the odd word beside it.
    const __m256i c16 = layout == Chroma422::kYvyu ? _mm256_blend_epi16(cr16, _mm256_slli_epi32(cb16, 16), 0xAA)
                                                   : _mm256_blend_epi16(cb16, _mm256_slli_epi32(cr16, 16), 0xAA);
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

}  // namespace zelt::ycbcr

#endif
