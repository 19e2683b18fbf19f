#include "support/paths.h"

#include <algorithm>

#include "core/platform.h"
#include "core/simd_level.h"
#include "core/testing.h"

namespace zelt::test {

ScopedFeatures::ScopedFeatures(uint32_t mask, uint32_t extended) {
  zelt::testing::ForceFeatureMask(mask);
  zelt::testing::ForceExtendedFeatures(extended);
  zelt::testing::ResetSimdLevel();
}

ScopedFeatures::~ScopedFeatures() {
  zelt::testing::ClearFeatureMask();
  zelt::testing::ClearExtendedFeatures();
  zelt::testing::ResetSimdLevel();
}

uint32_t RealFeatureMask() {
  zelt::testing::ClearFeatureMask();
  return zelt::CPUFeatureFlags();
}

bool HostHasAvx2() { return (RealFeatureMask() & zelt::kFeatAvx2) != 0; }

bool HostHasAvx512() {
  zelt::testing::ClearExtendedFeatures();
  return HostHasAvx2() && (zelt::ExtendedFeatures() & zelt::kExtAvx512) != 0;
}

std::vector<PathResult> RunEveryPath(const std::function<std::vector<uint8_t>()>& convert) {
  std::vector<PathResult> out;
  {
    ScopedFeatures f(kMaskSse41);
    out.push_back({"baseline", convert()});
  }
  if (HostHasAvx2()) {
    ScopedFeatures f(kMaskAvx2);
    out.push_back({"avx2", convert()});
  }
  if (HostHasAvx512()) {
    ScopedFeatures f(kMaskAvx2, zelt::kExtAvx512);
    out.push_back({"avx512", convert()});
  }
  return out;
}

std::vector<uint32_t> InterestingWidths() {
  std::vector<uint32_t> w = {1, 2, 3, 5, 7, 11, 13, 17, 23, 31, 33, 37, 47, 49, 53, 63, 65, 71, 95, 97, 127, 129, 191, 193, 257, 719, 1283};
  return w;
}

}  // namespace zelt::test
