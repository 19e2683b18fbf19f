// The level rules of the path selector, one row per processor and level.
#include <gtest/gtest.h>

#include "core/paths.h"
#include "core/testing.h"
#include "support/paths.h"

namespace zelt {
namespace {

constexpr uint32_t B5 = 1u << 5, B7 = 1u << 7, B13 = 1u << 13, B14 = 1u << 14, B23 = 1u << 23;

struct RuleCase {
  const char* what;
  uint32_t mask;      // CPUFeatureFlags() at the first conversion
  uint32_t extended;  // ExtendedFeatures()
  uint32_t request;   // level requested before the call (7: the converters' guard)
  uint32_t maskLater; // CPUFeatureFlags() when the converter asks
  // expected
  int32_t level;
  bool avx2, avx512, sse41, reorder, packedDecode;
};

const RuleCase kRules[] = {
    {"avx512 host", B5 | B7 | B13 | B14 | B23, kExtAvx512, 7, B5 | B7 | B13 | B14 | B23, 5, true, true, true, true, false},
    {"avx2 host, avx512 hidden", B5 | B7 | B13 | B14 | B23, 0, 7, B5 | B7 | B13 | B14 | B23, 5, true, false, true, true, false},
    {"avx2 lost after the choice", B5 | B14 | B23, kExtAvx512, 7, B5 | B14, 5, false, false, true, true, false},
    {"sse4.1 host", B5 | B7 | B13 | B14, kExtAvx512, 7, B5 | B7 | B13 | B14, 4, false, false, true, true, true},
    {"ssse3 host", B5 | B7 | B13, 0, 7, B5 | B7 | B13, 3, false, false, false, false, true},
    {"sse3 host", B5 | B7, 0, 7, B5 | B7, 2, false, false, false, false, true},
    {"sse2 host", B5, 0, 7, B5, 2, false, false, false, false, true},
    {"bare host", 0, 0, 7, 0, 1, false, false, false, false, true},
    {"level 6 asked, bit 7 present", B5 | B7, 0, 6, B5 | B7, 6, false, false, false, true, true},
    {"level 1 asked on avx2 host", B5 | B14 | B23, kExtAvx512, 1, B5 | B14 | B23, 1, false, false, true, false, true},
    {"level 0 asked on avx2 host", B5 | B14 | B23, 0, 0, B5 | B14 | B23, 0, false, false, true, false, false},
    {"level 6 asked, bit 7 absent", B5 | B13 | B14, 0, 6, B5 | B13 | B14, 2, false, false, true, false, true},
};

class PathRules : public ::testing::TestWithParam<RuleCase> {};

TEST_P(PathRules, FollowTheLevelAndAFreshFeatureMask) {
  const RuleCase& c = GetParam();
  test::ScopedFeatures features(c.mask);
  zelt::testing::ForceExtendedFeatures(c.extended);
  if (c.request <= 6) {
    SelectSimdLevel(c.request);
  } else {
    SimdGuard();
  }
  zelt::testing::ForceFeatureMask(c.maskLater);
  const Paths p = CurrentPaths();
  zelt::testing::ClearExtendedFeatures();
  EXPECT_EQ(p.level, c.level);
  EXPECT_EQ(p.avx2, c.avx2);
  EXPECT_EQ(p.avx512, c.avx512);
#if ZELT_X86
  EXPECT_EQ(p.sse41, c.sse41);
#else
  EXPECT_FALSE(p.sse41);
#endif
  EXPECT_EQ(AtLevels(kPlanarReorderLevels, p), c.reorder);
  EXPECT_EQ(AtLevels(kPackedDecodeLevels, p), c.packedDecode);
}

INSTANTIATE_TEST_SUITE_P(Rules, PathRules, ::testing::ValuesIn(kRules));

using Fn = int (*)();
int Portable() { return 0; }
int Sse41() { return 1; }
int Avx2() { return 2; }
int Avx512() { return 3; }

TEST(Select, TakesTheWidestAllowedVariantTheSetHas) {
  const KernelSet<Fn> all{Portable, Sse41, Avx2, Avx512};
  const KernelSet<Fn> noWide{Portable, Sse41};
  const KernelSet<Fn> only256{Portable, nullptr, Avx2};
  const KernelSet<Fn> vectorOnly{nullptr, nullptr, Avx2};
  const Paths everything{5, true, true, true}, level5{5, true, false, true}, level4{4, false, false, true},
      plain{2, false, false, false};
  EXPECT_EQ(Select(all, everything)(), 3);
  EXPECT_EQ(Select(all, level5)(), 2);
  EXPECT_EQ(Select(all, level4)(), 1);
  EXPECT_EQ(Select(all, plain)(), 0);
  EXPECT_EQ(Select(noWide, everything)(), 1);
  EXPECT_EQ(Select(only256, everything)(), 2);
  EXPECT_EQ(Select(only256, level4)(), 0);
  EXPECT_EQ(Select(vectorOnly, level4), nullptr);
}

}  // namespace
}  // namespace zelt
