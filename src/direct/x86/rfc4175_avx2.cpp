// AVX2 kernels of the packed 10-bit transport; this file alone is compiled with
// -mavx2 and is reached only through the path selector (core/paths.h).
#include "core/paths.h"
#include "direct/rfc4175_kernels.h"

#if ZELT_X86
#include <immintrin.h>

namespace zelt::transport {

namespace {

// For field m (0..2) of word j (0..3) of a group, sample s = 3j + m of the
// stream: its two bytes 5(s/4) + s%4 (high) and the next (low), gathered into
// the low half of dword j as a big-endian pair, then shifted right by 6 - 2(s%4).
struct FieldPlan {
  alignas(32) int8_t shuffle[3][32];
  alignas(32) int32_t shift[3][8];
};

constexpr FieldPlan MakePlan() {
  FieldPlan plan{};
  for (int m = 0; m < 3; ++m) {
    for (int lane = 0; lane < 2; ++lane) {
      for (int j = 0; j < 4; ++j) {
        const int s = 3 * j + m, hi = 5 * (s / 4) + s % 4;
        int8_t* b = plan.shuffle[m] + 16 * lane + 4 * j;
        b[0] = static_cast<int8_t>(hi + 1);
        b[1] = static_cast<int8_t>(hi);
        b[2] = -128;
        b[3] = -128;
        plan.shift[m][4 * lane + j] = 6 - 2 * (s % 4);
      }
    }
  }
  return plan;
}

constexpr FieldPlan kPlan = MakePlan();

inline __m256i Field(__m256i bytes, int m) {
  const __m256i shuf = _mm256_load_si256(reinterpret_cast<const __m256i*>(kPlan.shuffle[m]));
  const __m256i shift = _mm256_load_si256(reinterpret_cast<const __m256i*>(kPlan.shift[m]));
  return _mm256_and_si256(_mm256_srlv_epi32(_mm256_shuffle_epi8(bytes, shuf), shift), _mm256_set1_epi32(0x3FF));
}

// Packing four groups (48 samples) takes three registers of 16 samples, one per
// 128-bit lane q = 0..5 holding samples 8q .. 8q + 7 as 16-bit values. Lane q is
// loaded from byte kPackLoad[q] of the 64 input bytes; each slot gathers the two
// bytes holding its sample (word s / 3, field s % 3 at bit 2(s % 3) of byte
// 4(s / 3) + s % 3) and a multiply by 2^(6 - 2m) lifts the sample to bits 6-15.
struct PackPlan {
  alignas(32) int8_t shuffle[3][32];
  alignas(32) int16_t scale[3][16];
};
constexpr int kPackLoad[6] = {0, 8, 20, 32, 40, 48};

constexpr PackPlan MakePackPlan() {
  PackPlan plan{};
  for (int q = 0; q < 6; ++q) {
    for (int i = 0; i < 8; ++i) {
      const int s = 8 * q + i, m = s % 3, rel = 4 * (s / 3) + m - kPackLoad[q];
      plan.shuffle[q / 2][16 * (q % 2) + 2 * i] = static_cast<int8_t>(rel);
      plan.shuffle[q / 2][16 * (q % 2) + 2 * i + 1] = static_cast<int8_t>(rel + 1);
      plan.scale[q / 2][8 * (q % 2) + i] = static_cast<int16_t>(1 << (6 - 2 * m));
    }
  }
  return plan;
}

constexpr PackPlan kPackPlan = MakePackPlan();

}  // namespace

size_t PackGroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups) {
  const __m256i pairWeights = _mm256_set1_epi32(0x0001'0400);  // s_even * 1024 + s_odd
  // Bytes 4..0 of each 64-bit block value, most significant first.
  const __m256i beBytes = _mm256_setr_epi8(4, 3, 2, 1, 0, 12, 11, 10, 9, 8, -128, -128, -128, -128, -128, -128,  //
                                           4, 3, 2, 1, 0, 12, 11, 10, 9, 8, -128, -128, -128, -128, -128, -128);
  size_t g = 0;
  for (; g + 5 <= groups; g += 4) {
    const uint8_t* in = src + 16 * g;
    uint8_t* out = dst + 15 * g;
    for (int r = 0; r < 3; ++r) {
      const __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + kPackLoad[2 * r]));
      const __m128i hi = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + kPackLoad[2 * r + 1]));
      __m256i x = _mm256_inserti128_si256(_mm256_castsi128_si256(lo), hi, 1);
      x = _mm256_shuffle_epi8(x, _mm256_load_si256(reinterpret_cast<const __m256i*>(kPackPlan.shuffle[r])));
      x = _mm256_srli_epi16(_mm256_mullo_epi16(x, _mm256_load_si256(reinterpret_cast<const __m256i*>(kPackPlan.scale[r]))), 6);
      // Dwords P = s0 * 1024 + s1, Q = s2 * 1024 + s3 per block; the 40-bit block is P << 20 | Q.
      const __m256i pq = _mm256_madd_epi16(x, pairWeights);
      const __m256i block = _mm256_or_si256(_mm256_slli_epi64(pq, 20), _mm256_srli_epi64(pq, 32));
      const __m256i bytes = _mm256_shuffle_epi8(block, beBytes);
      // Ten bytes per lane; each 16-byte store is overwritten past its ten by the next.
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 20 * r), _mm256_castsi256_si128(bytes));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 20 * r + 10), _mm256_extracti128_si256(bytes, 1));
    }
  }
  return g;
}

size_t UnpackGroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups, uint32_t keepMask) {
  const __m256i keep = _mm256_set1_epi32(static_cast<int>(keepMask));
  size_t g = 0;
  for (; g + 2 <= groups; g += 2) {
    // Group g in the low lane, group g + 1 in the high lane (16-byte loads of 15-byte groups).
    const __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 15 * g));
    const __m128i hi = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 15 * g + 15));
    const __m256i bytes = _mm256_inserti128_si256(_mm256_castsi128_si256(lo), hi, 1);
    __m256i words = _mm256_or_si256(Field(bytes, 0), _mm256_slli_epi32(Field(bytes, 1), 10));
    words = _mm256_or_si256(words, _mm256_slli_epi32(Field(bytes, 2), 20));
    __m256i* out = reinterpret_cast<__m256i*>(dst + 16 * g);
    if (keepMask != 0) words = _mm256_or_si256(words, _mm256_and_si256(_mm256_loadu_si256(out), keep));
    _mm256_storeu_si256(out, words);
  }
  return g;
}

size_t Y210GroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups) {
  // Two groups: 24 samples w0..w23 as dwords in r0 (0-7), r1 (8-15), r2 (16-23).
  // Output dword j = a << 14 | b << 4 | c >> 6 with (a, b, c) per j:
  //   (3,0,1) (4,5,2) (9,6,7) (10,11,8) (15,12,13) (16,17,14) (21,18,19) (22,23,20)
  // Each index is fetched from its register with a cross-lane permute and blended.
  const __m256i ia = _mm256_setr_epi32(3, 4, 9 - 8, 10 - 8, 15 - 8, 16 - 16, 21 - 16, 22 - 16);
  const __m256i ib = _mm256_setr_epi32(0, 5, 6, 11 - 8, 12 - 8, 17 - 16, 18 - 16, 23 - 16);
  const __m256i ic = _mm256_setr_epi32(1, 2, 7, 8 - 8, 13 - 8, 14 - 8, 19 - 16, 20 - 16);
  size_t g = 0;
  for (; g + 2 <= groups; g += 2) {
    const uint8_t* s = src + 24 * g;
    const __m256i r0 = _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s)));
    const __m256i r1 = _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 16)));
    const __m256i r2 = _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 32)));
    // Register of each index per dword: a: r0 r0 r1 r1 r1 r2 r2 r2; b: r0 r0 r0 r1 r1 r2 r2 r2; c: r0 r0 r0 r1 r1 r1 r2 r2.
    const __m256i a = _mm256_blend_epi32(
        _mm256_blend_epi32(_mm256_permutevar8x32_epi32(r0, ia), _mm256_permutevar8x32_epi32(r1, ia), 0x1C),
        _mm256_permutevar8x32_epi32(r2, ia), 0xE0);
    const __m256i b = _mm256_blend_epi32(
        _mm256_blend_epi32(_mm256_permutevar8x32_epi32(r0, ib), _mm256_permutevar8x32_epi32(r1, ib), 0x18),
        _mm256_permutevar8x32_epi32(r2, ib), 0xE0);
    const __m256i c = _mm256_blend_epi32(
        _mm256_blend_epi32(_mm256_permutevar8x32_epi32(r0, ic), _mm256_permutevar8x32_epi32(r1, ic), 0x38),
        _mm256_permutevar8x32_epi32(r2, ic), 0xC0);
    const __m256i out =
        _mm256_or_si256(_mm256_or_si256(_mm256_slli_epi32(a, 14), _mm256_slli_epi32(b, 4)), _mm256_srli_epi32(c, 6));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 16 * g), out);
  }
  return g;
}

size_t Y210HighBytesAvx2(uint8_t* dst, const uint8_t* src, size_t pairs) {
  const __m256i odd = _mm256_setr_epi8(1, 3, 5, 7, 9, 11, 13, 15, -128, -128, -128, -128, -128, -128, -128, -128,  //
                                       1, 3, 5, 7, 9, 11, 13, 15, -128, -128, -128, -128, -128, -128, -128, -128);
  size_t p = 0;
  for (; p + 8 <= pairs; p += 8) {
    const __m256i a = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 8 * p)), odd);
    const __m256i b = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 8 * p + 32)), odd);
    // a: bytes 0-7 in qword 0, 8-15 in qword 2; b likewise.
    const __m256i ab = _mm256_unpacklo_epi64(a, b);  // a0 b0 | a2 b2
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 4 * p), _mm256_permute4x64_epi64(ab, 0xD8));
  }
  return p;
}

}  // namespace zelt::transport

#endif
