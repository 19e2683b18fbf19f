// The byte reorders of 32-bit pixels behind the channel-order exports.
#pragma once

#include "core/arch.h"
#include <cstddef>
#include <cstdint>

namespace zelt::direct {

enum class Swap : uint8_t {
  Bytes02,   // exchange bytes 0 and 2
  Bytes03,   // exchange bytes 0 and 3
  Reverse,   // reverse all four bytes
  RotLeft8,  // (x << 8) | (x >> 24)
  RotRight8, // (x >> 8) | (x << 24)
};

inline uint32_t SwapPixel(Swap op, uint32_t x) {
  switch (op) {
    case Swap::Bytes02:
      return ((x >> 16) & 0xFFu) + ((x & 0xFFu) << 16) + (x & 0xFF00FF00u);
    case Swap::Bytes03:
      return (x >> 24) | (x << 24) | (x & 0x00FFFF00u);
    case Swap::Reverse:
      return (x >> 24) | ((x >> 8) & 0xFF00u) | ((x << 8) & 0xFF0000u) | (x << 24);
    case Swap::RotLeft8:
      return (x << 8) + (x >> 24);
    case Swap::RotRight8:
      return (x << 24) + (x >> 8);
  }
  return x;
}

// Pixel by pixel from the start of the run: runs that overlap see the pixels
// already written.
void SwapRunScalar(Swap op, uint32_t* dst, const uint32_t* src, size_t count);

#if ZELT_X86
// Whole blocks with pshufb; return the pixels done (the caller finishes the run).
size_t SwapBlocksSse41(Swap op, uint32_t* dst, const uint32_t* src, size_t count, size_t block);
// `stream`: non-temporal stores, for runs larger than the last-level cache share a
// frame should take (the caller checks that the runs do not overlap).
size_t SwapBlocksAvx2(Swap op, uint32_t* dst, const uint32_t* src, size_t count, bool stream);

// Runs of at least this many bytes are written with streaming stores.
inline constexpr size_t kStreamBytes = size_t{8} << 20;
#endif

}  // namespace zelt::direct
