// The bit writer: whole-byte pieces where the position allows, read-modify-write
// for the partial bytes at either end of a field.
#include "core/bit_writer.h"

namespace zelt {

void WriteBits(BitWriterState* state, uint32_t count, uint32_t value) {
  if (count > 32) {
    SkipBits(state, count - 32);
    count = 32;
  }
  uint64_t pos = state->bitPos;
  if (count != 0 && pos + count <= state->sizeBits) {
    // Inside the buffer: the field spans at most five bytes, merged in one go.
    uint8_t* p = state->buffer + (pos >> 3);
    const uint32_t used = static_cast<uint32_t>(pos & 7), nbytes = (used + count + 7) / 8;
    uint64_t acc = 0;
    for (uint32_t i = 0; i < nbytes; ++i) acc = acc << 8 | p[i];
    const uint32_t shift = nbytes * 8 - used - count;
    const uint64_t field = (count == 32 ? 0xFFFFFFFFull : (1ull << count) - 1) << shift;
    acc = (acc & ~field) | ((uint64_t{value} << shift) & field);
    for (uint32_t i = nbytes; i-- > 0; acc >>= 8) p[i] = static_cast<uint8_t>(acc);
    state->bitPos = pos + count;
    return;
  }
  uint32_t left = count;
  while (left != 0) {
    const uint64_t byteIndex = pos >> 3;
    const uint32_t used = static_cast<uint32_t>(pos & 7);
    const uint32_t room = 8 - used;
    const uint32_t take = left < room ? left : room;
    if (byteIndex >= state->sizeBytes) break;  // past the end: dropped
    // The `take` bits of value just below bit `left`, placed under the free bits.
    const uint32_t bits = (value >> (left - take)) & ((1u << take) - 1u);
    const uint32_t shift = room - take;
    const uint8_t mask = static_cast<uint8_t>(((1u << take) - 1u) << shift);
    uint8_t& b = state->buffer[byteIndex];
    b = static_cast<uint8_t>((b & ~mask) | (bits << shift));
    left -= take;
    pos += take;
  }
  state->bitPos += count;
}

void SkipBits(BitWriterState* state, uint32_t count) { state->bitPos += count; }

}  // namespace zelt
