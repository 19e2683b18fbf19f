#include "core/testing.h"

#include "core/fault.h"
#include "core/hooks.h"
#include "core/simd_level.h"

namespace zelt::testing {

void ForceFeatureMask(uint32_t mask) {
  detail::g_featureOverride.store((uint64_t{1} << 32) | mask, std::memory_order_relaxed);
}

void ClearFeatureMask() { detail::g_featureOverride.store(0, std::memory_order_relaxed); }

void ForceExtendedFeatures(uint32_t mask) {
  detail::g_extendedOverride.store((uint64_t{1} << 32) | mask, std::memory_order_relaxed);
}

void ClearExtendedFeatures() { detail::g_extendedOverride.store(0, std::memory_order_relaxed); }

void ResetSimdLevel() { SimdLevel.store(-2, std::memory_order_relaxed); }

void ArmFault(const char* site, int skip) {
  detail::g_faultCountdown.store(skip, std::memory_order_relaxed);
  detail::g_faultSite.store(site, std::memory_order_relaxed);
}

void DisarmFault() { detail::g_faultSite.store(nullptr, std::memory_order_relaxed); }

uint64_t QrAllocCount() { return detail::g_allocCount.load(std::memory_order_relaxed); }

}  // namespace zelt::testing
