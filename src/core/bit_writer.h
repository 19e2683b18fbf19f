// Most-significant-bit-first bit writer over a caller's buffer.
//
// The state holds the buffer, its size in bytes and in bits, and a bit position
// starting at 0. WriteBits stores the low `count` bits of `value`, most
// significant first, at the position and advances it; the other bits of a
// partly written byte keep what they held. SkipBits only advances.
//
// At the buffer end: bits that would land at or past the end are dropped and
// nothing outside the buffer is ever touched; the position still advances, so a
// writer that ran over can be detected by BitPosition() > SizeBits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt {

struct BitWriterState {
  uint8_t* buffer;
  uint32_t sizeBytes;
  uint64_t sizeBits;
  uint64_t bitPos;
};

inline BitWriterState MakeBitWriter(uint8_t* buffer, uint32_t sizeBytes) {
  return BitWriterState{buffer, sizeBytes, uint64_t{sizeBytes} * 8, 0};
}

// count 0..32; larger counts write only the low 32 bits' worth and skip the rest.
void WriteBits(BitWriterState* state, uint32_t count, uint32_t value);
void SkipBits(BitWriterState* state, uint32_t count);

}  // namespace zelt
