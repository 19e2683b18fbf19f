#include "core/simd_level.h"

namespace zelt {

std::atomic<int32_t> SimdLevel{-2};
std::atomic<uint32_t> HasBaselineVector{0};

namespace {

int32_t Fallback125(uint32_t f) { return (f & kFeatSse2) ? 2 : 1; }

int32_t Explicit4(uint32_t f) {
  if (f & kFeatSse41) return 4;
  if (f & kFeatSsse3) return 3;
  return Fallback125(f);
}

}  // namespace

int32_t SelectSimdLevel(uint32_t requested) {
  int32_t level;
  switch (requested) {
    case 0: level = 0; break;
    case 1: level = 1; break;
    case 2: level = Fallback125(CPUFeatureFlags()); break;
    case 3: {
      const uint32_t f = CPUFeatureFlags();
      level = (f & kFeatSsse3) ? 3 : Fallback125(f);
      break;
    }
    case 4: level = Explicit4(CPUFeatureFlags()); break;
    case 5: {
      const uint32_t f = CPUFeatureFlags();
      level = (f & kFeatAvx2) ? 5 : Explicit4(f);
      break;
    }
    case 6: {
      // Skips levels 3 and 4 on purpose.
      const uint32_t f = CPUFeatureFlags();
      level = static_cast<int8_t>(f & 0xFF) < 0 ? 6 : Fallback125(f);
      break;
    }
    default: {
      // Automatic choice. Bit 7 ranks below bits 14 and 13 here (unlike request 6)
      // and the last fallback is 0, not 1; both differences are intended.
      if (SimdLevel.load(std::memory_order_relaxed) == -2) SelectSimdLevel(5);
      const uint32_t f = CPUFeatureFlags();
      if (f & kFeatAvx2) level = 5;
      else if (f & kFeatSse41) level = 4;
      else if (f & kFeatSsse3) level = 3;
      else if (static_cast<int8_t>(f & 0xFF) < 0) level = 6;
      else level = (f & kFeatSse2) ? 2 : 0;
      break;
    }
  }
  SimdLevel.store(level, std::memory_order_relaxed);
  return level;
}

int InitBaselineVectorFlag() {
  if (HasBaselineVector.load(std::memory_order_relaxed) != 0) return 0;
  HasBaselineVector.store((CPUFeatureFlags() & kFeatSse2) ? 1u : 0u, std::memory_order_relaxed);
  return 0;
}

}  // namespace zelt
