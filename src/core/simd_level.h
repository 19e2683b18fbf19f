// The process-wide processor level that converters dispatch on.
//
// SimdLevel is -2 until the first conversion chooses it (0..6 after). Only level 5
// has code paths of its own: a converter with a 256-bit variant takes it when
// SimdLevel is 5 and a fresh CPUFeatureFlags() still reports AVX2. Every other
// level runs the baseline code, except where a fast 8-bit primitive path names
// the levels it is taken at. core/paths.h turns the level into a choice of kernels.
#pragma once

#include <atomic>
#include <cstdint>

#include "core/arch.h"
#include "core/platform.h"

namespace zelt {

// Relaxed atomics: the same plain aligned 32-bit loads and stores as an int, but
// free of data races in the C++ sense. Two threads racing through the first-use
// guard both compute and store the same value.
extern std::atomic<int32_t> SimdLevel;
extern std::atomic<uint32_t> HasBaselineVector;

// Chooses the level for `requested` (0..6; anything else is the automatic choice),
// stores it in SimdLevel and returns it.
int32_t SelectSimdLevel(uint32_t requested);

// Sets HasBaselineVector from bit 5 unless it is already non-zero. Returns 0.
int InitBaselineVectorFlag();

inline int32_t CurrentSimdLevel() { return SimdLevel.load(std::memory_order_relaxed); }

// The guard that opens a converter: the first conversion chooses the level.
inline void SimdGuard() {
  if (SimdLevel.load(std::memory_order_relaxed) == -2) SelectSimdLevel(5);
}

}  // namespace zelt
