// A bit-level model of the 012v group for tests: each of the twelve samples of a
// group is placed (or read) one bit at a time at its documented position, so the
// model shares no shifting or masking code with the converters.
//
// Sample order in a group: Cb0 Y0 Cr0 Y1 Cb1 Y2 Cr1 Y3 Cb2 Y4 Cr2 Y5; sample i
// lives in little-endian word i/3 at bits 10*(i%3) .. 10*(i%3)+9.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelt::test {

inline size_t V012BitOf(size_t index, unsigned bit) { return 32 * (index / 3) + 10 * (index % 3) + bit; }

// Writes a whole group at `at` (bits 30 and 31 of every word cleared).
inline void PutV012Group(uint8_t* at, const std::array<uint32_t, 12>& samples) {
  for (int i = 0; i < 16; ++i) at[i] = 0;
  for (size_t i = 0; i < 12; ++i) {
    for (unsigned b = 0; b < 10; ++b) {
      if ((samples[i] >> b) & 1u) {
        const size_t bit = V012BitOf(i, b);
        at[bit / 8] = static_cast<uint8_t>(at[bit / 8] | (1u << (bit % 8)));
      }
    }
  }
}

// Reads sample `index` (0..11) of the group at `at`.
inline uint32_t GetV012Sample(const uint8_t* at, size_t index) {
  uint32_t v = 0;
  for (unsigned b = 0; b < 10; ++b) {
    const size_t bit = V012BitOf(index, b);
    v |= static_cast<uint32_t>((at[bit / 8] >> (bit % 8)) & 1u) << b;
  }
  return v;
}

// The 10-to-8-bit rule at the 012v boundary, as stated for 8-bit readers.
inline uint8_t TenBitToEight(uint32_t v) { return static_cast<uint8_t>(v < 1021 ? (v + 2) / 4 : v / 4); }

}  // namespace zelt::test
