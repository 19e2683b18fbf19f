// 256-bit row kernels of the YCbCr to 32-bit RGB converters.
//
// Exactness of the division: for an integer x the portable rule wants
// trunc(x / 10000) clamped to 0..255. Negative x can only give 0, and anything of
// 2560000 or more gives 255, so only 0 <= x < 2560000 needs an exact floor. The
// kernel converts x to float (|x| < 2^23: exact), multiplies by c = fl(10^-4 *
// (1 + 2^-22)), that is 1/10000 raised by 2^-22, and truncates. Against the
// two float roundings (each at most 2^-24 relative) the raise keeps an exact
// multiple 10000k at or above k, and keeps 10000k + 9999 below k + 1 (k < 256:
// the raise adds at most 256 * 3.6e-7 < 0.0001). Negative x truncate toward zero
// to at most 0. The saturating packs then clamp to 0..255.
#include "core/arch.h"

#if ZELT_X86

#include <immintrin.h>

#include <cstring>

#include "transcode/to_rgb_kernels.h"

namespace zelt::transcode {
namespace {

// Products are formed with 16-bit multiply-adds on the raw samples: each 32-bit
// lane holds a pair (Y, C) or (C, 0) and meets a pair of weights, the offsets and
// chroma centres being folded into one constant per channel.
struct Coefs {
  __m256i yCrToR, yCbToB, yCbToG, crToG;  // 16-bit weight pairs
  __m256i kR, kG, kB;                     // folded offsets and centres, negated
  __m256i alpha;
  __m256 scale;
  __m256i order;  // byte shuffle from B0-3 G0-3 R0-3 A0-3 (per lane) to pixels

  static __m256i Pair(int32_t lo, int32_t hi) {
    return _mm256_set1_epi32(static_cast<int32_t>((static_cast<uint32_t>(hi) << 16) | (static_cast<uint32_t>(lo) & 0xFFFF)));
  }

  Coefs(const YcbcrToRgbMatrix& m, uint32_t channelOrder, int32_t centre = 128)
      : yCrToR(Pair(m.yScale, m.crToR)), yCbToB(Pair(m.yScale, m.cbToB)), yCbToG(Pair(m.yScale, -m.cbToG)),
        crToG(Pair(-m.crToG, 0)), kR(_mm256_set1_epi32(-(m.yScale * m.yOffset + centre * m.crToR))),
        kG(_mm256_set1_epi32(-(m.yScale * m.yOffset - centre * (m.cbToG + m.crToG)))),
        kB(_mm256_set1_epi32(-(m.yScale * m.yOffset + centre * m.cbToB))), alpha(_mm256_set1_epi32(255)),
        scale(_mm256_set1_ps(static_cast<float>(1.0e-4 * (1.0 + 1.0 / 4194304.0)))) {
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

// floor(x / 10000) for 0 <= x < 2560000, at most 0 below (see the top).
inline __m256i Quotient(const Coefs& k, __m256i x) {
  return _mm256_cvttps_epi32(_mm256_mul_ps(_mm256_cvtepi32_ps(x), k.scale));
}

inline __m256i Offset(__m256i raw, __m256i k) { return _mm256_add_epi32(raw, k); }

// Eight pixels; lane 0 holds pixels 0-3 and lane 1 pixels 4-7. `yCr` and `yCb`
// carry (Y, Cr) and (Y, Cb) per 32-bit lane, `cr0` (Cr, 0). Writes 32 bytes.
inline void Decode8(const Coefs& k, __m256i yCr, __m256i yCb, __m256i cr0, uint8_t* dst) {
  const __m256i r = Quotient(k, Offset(_mm256_madd_epi16(yCr, k.yCrToR), k.kR));
  const __m256i g = Quotient(
      k, Offset(_mm256_add_epi32(_mm256_madd_epi16(yCb, k.yCbToG), _mm256_madd_epi16(cr0, k.crToG)), k.kG));
  const __m256i b = Quotient(k, Offset(_mm256_madd_epi16(yCb, k.yCbToB), k.kB));
  const __m256i bytes = _mm256_packus_epi16(_mm256_packus_epi32(b, g), _mm256_packus_epi32(r, k.alpha));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), _mm256_shuffle_epi8(bytes, k.order));
}

}  // namespace

size_t PackedPairsToRgb32Avx2(uint8_t* dst, const uint8_t* groups, int yAt, int cbAt, int crAt, size_t pairs,
                              const YcbcrToRgbMatrix& m, uint32_t order) {
  const Coefs k(m, order);
  // Per lane (pixels 4L..4L+3 of the 16 source bytes): byte selectors building the
  // 16-bit pairs (Y, Cr), (Y, Cb) and (Cr, 0) of each pixel.
  alignas(32) int8_t yCrSel[32], yCbSel[32], crSel[32];
  for (int i = 0; i < 8; ++i) {
    const int at = 4 * i;
    const int8_t y = static_cast<int8_t>(yAt + 2 * i), cb = static_cast<int8_t>(cbAt + 4 * (i / 2)),
                 cr = static_cast<int8_t>(crAt + 4 * (i / 2));
    const int8_t yCr[4] = {y, -1, cr, -1}, yCb[4] = {y, -1, cb, -1}, c0[4] = {cr, -1, -1, -1};
    for (int j = 0; j < 4; ++j) {
      yCrSel[at + j] = yCr[j];
      yCbSel[at + j] = yCb[j];
      crSel[at + j] = c0[j];
    }
  }
  const __m256i selYCr = _mm256_load_si256(reinterpret_cast<const __m256i*>(yCrSel));
  const __m256i selYCb = _mm256_load_si256(reinterpret_cast<const __m256i*>(yCbSel));
  const __m256i selCr = _mm256_load_si256(reinterpret_cast<const __m256i*>(crSel));
  const size_t blocks = pairs / 4;
  for (size_t i = 0; i < blocks; ++i) {
    const __m256i g =
        _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(groups + 16 * i)));
    Decode8(k, _mm256_shuffle_epi8(g, selYCr), _mm256_shuffle_epi8(g, selYCb), _mm256_shuffle_epi8(g, selCr),
            dst + 32 * i);
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
    const __m128i y8 = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(y + 8 * i));
    const __m128i cb8 = _mm_shuffle_epi8(_mm_cvtsi32_si128(cb4), dup);
    const __m128i cr8 = _mm_shuffle_epi8(_mm_cvtsi32_si128(cr4), dup);
    Decode8(k, _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(y8, cr8)), _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(y8, cb8)),
            _mm256_cvtepu8_epi32(cr8), dst + 32 * i);
  }
  return blocks * 4;
}

size_t Planar16PairsToRgb32Avx2(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                                size_t pairs, const YcbcrToRgbMatrix& m, int32_t centre, uint32_t order, int rshift) {
  const Coefs k(m, order, centre);
  const __m128i count = _mm_cvtsi32_si128(rshift);
  const __m128i dup = _mm_setr_epi8(0, 1, 0, 1, 2, 3, 2, 3, 4, 5, 4, 5, 6, 7, 6, 7);
  const size_t blocks = pairs / 4;
  for (size_t i = 0; i < blocks; ++i) {
    const __m128i y8 = _mm_srl_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(y + 8 * i)), count);
    const __m128i cb8 =
        _mm_shuffle_epi8(_mm_srl_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(cb + 4 * i)), count), dup);
    const __m128i cr8 =
        _mm_shuffle_epi8(_mm_srl_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(cr + 4 * i)), count), dup);
    const __m256i yCr = _mm256_set_m128i(_mm_unpackhi_epi16(y8, cr8), _mm_unpacklo_epi16(y8, cr8));
    const __m256i yCb = _mm256_set_m128i(_mm_unpackhi_epi16(y8, cb8), _mm_unpacklo_epi16(y8, cb8));
    Decode8(k, yCr, yCb, _mm256_cvtepu16_epi32(cr8), dst + 32 * i);
  }
  return blocks * 4;
}

}  // namespace zelt::transcode

#endif
