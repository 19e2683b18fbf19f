// Internal test hooks. Defined in testing.cpp, which only the static twin carries;
// the shared library exports none of this.
#pragma once

#include <cstdint>

namespace zelt::testing {

// Replace the probed feature mask (CPUFeatureFlags returns `mask` from now on).
void ForceFeatureMask(uint32_t mask);
// Back to the real processor's mask.
void ClearFeatureMask();
// The same for ExtendedFeatures(): ForceExtendedFeatures(0) hides AVX-512, so the
// 256-bit kernels run on their own on a processor that has it.
void ForceExtendedFeatures(uint32_t mask);
void ClearExtendedFeatures();
// Put SimdLevel back to -2, "not chosen yet".
void ResetSimdLevel();
// Make FaultPoint(site) throw, after letting `skip` passes through it go by.
void ArmFault(const char* site, int skip = 0);
void DisarmFault();
// Number of QrAlloc calls since the process started.
uint64_t QrAllocCount();

}  // namespace zelt::testing
