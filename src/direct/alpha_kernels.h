// Row kernels of the alpha and key-plane exports.
#pragma once

#include "core/arch.h"
#include <cstddef>
#include <cstdint>

namespace zelt::direct {

// Every 2vuy pair word w becomes (w & ~0x007F007F) | 0x00800080: U and V 0x80,
// both lumas kept. `pairs` words.
void StripChromaRow(uint8_t* dst, const uint8_t* src, size_t pairs);

#if ZELT_X86
// Whole blocks of 32 pair words; returns the pairs done. `stream`: non-temporal
// stores when dst is 32-byte aligned and distinct from src (StreamFence after the
// last line).
size_t StripChromaBlocksAvx2(uint8_t* dst, const uint8_t* src, size_t pairs, bool stream);
void StreamFence();
#endif

}  // namespace zelt::direct
