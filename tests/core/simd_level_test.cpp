#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "core/arch.h"
#include "support/paths.h"
#include "core/simd_level.h"
#include "core/testing.h"
#include "zelt/ycbcr.h"

namespace zelt {
namespace {

constexpr uint32_t B5 = 1u << 5, B7 = 1u << 7, B13 = 1u << 13, B14 = 1u << 14, B23 = 1u << 23;

struct LevelCase {
  uint32_t requested;
  uint32_t mask;
  int32_t expected;
};

class SelectSimdLevelTest : public ::testing::TestWithParam<LevelCase> {};

TEST_P(SelectSimdLevelTest, ChoosesAndStoresLevel) {
  const LevelCase c = GetParam();
  test::ScopedFeatures features(c.mask);
  EXPECT_EQ(SelectSimdLevel(c.requested), c.expected);
  EXPECT_EQ(CurrentSimdLevel(), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Levels, SelectSimdLevelTest,
    ::testing::Values(
        // 0 and 1 never look at the processor
        LevelCase{0, B5 | B7 | B13 | B14 | B23, 0}, LevelCase{1, B5 | B23, 1}, LevelCase{1, 0, 1},
        // 2: bit 5 or 1
        LevelCase{2, B5, 2}, LevelCase{2, B23 | B14, 1},
        // 3: bit 13, then the 2/1 fallback
        LevelCase{3, B13, 3}, LevelCase{3, B5 | B14, 2}, LevelCase{3, B14, 1},
        // 4: 14, 13, then 2/1
        LevelCase{4, B14, 4}, LevelCase{4, B13 | B5, 3}, LevelCase{4, B5 | B7, 2}, LevelCase{4, B23, 1},
        // 5: 23, otherwise as 4
        LevelCase{5, B23, 5}, LevelCase{5, B14 | B13 | B5, 4}, LevelCase{5, B13, 3}, LevelCase{5, B5, 2},
        LevelCase{5, 0, 1}, LevelCase{5, B7, 1},
        // 6: bit 7, else 2/1 -- skipping 3 and 4 on purpose
        LevelCase{6, B7, 6}, LevelCase{6, B13 | B14 | B5, 2}, LevelCase{6, B13 | B14, 1}, LevelCase{6, B23, 1},
        // automatic: 23, 14, 13, 7, then 2/0
        LevelCase{7, B23 | B7, 5}, LevelCase{0xFFFFFFFFu, B14 | B7, 4}, LevelCase{0xFFFFFFFEu, B13 | B7, 3},
        LevelCase{100, B7 | B5, 6}, LevelCase{7, B5, 2}, LevelCase{7, 0, 0}, LevelCase{7, 0x7Fu & ~B5, 0},
        // bit 7 is read as the sign of the low byte; higher bits do not matter
        LevelCase{6, 0xFFFFFF7Fu & ~B5, 1}, LevelCase{6, 0x80u | B23, 6}),
    [](const ::testing::TestParamInfo<LevelCase>& i) {
      char name[64];
      std::snprintf(name, sizeof name, "req%u_mask%08x", i.param.requested, i.param.mask);
      return std::string(name);
    });

TEST(SimdGuard, FirstConversionChoosesLevelFive) {
  test::ScopedFeatures features(B14 | B13 | B5);
  ASSERT_EQ(CurrentSimdLevel(), -2);
  uint8_t src[8] = {1, 2, 3, 4, 5, 6, 7, 8}, dst[8] = {};
  cycbcr_uyvy_to_yuy2(dst, src, 2, 2, 4, 4);
  EXPECT_EQ(CurrentSimdLevel(), 4);  // no bit 23: level 4, baseline paths
}

TEST(SimdGuard, AutomaticRequestOnBareProcessorGivesZeroExplicitFiveGivesOne) {
  test::ScopedFeatures features(0);
  EXPECT_EQ(SelectSimdLevel(0xFFFFFFFFu), 0);
  EXPECT_EQ(SelectSimdLevel(5), 1);
}

TEST(SimdGuard, AutomaticRequestFirstSettlesAnUnchosenLevel) {
  // Request 7 with SimdLevel at -2 runs a request of 5 first; the final answer is
  // the automatic one.
  test::ScopedFeatures features(B7 | B5);
  EXPECT_EQ(SelectSimdLevel(7), 6);
}

TEST(BaselineVectorFlag, LazyInitKeepsAnExistingValue) {
  HasBaselineVector.store(0);
  test::ScopedFeatures features(B5);
  EXPECT_EQ(InitBaselineVectorFlag(), 0);
  EXPECT_EQ(HasBaselineVector.load(), 1u);
  zelt::testing::ForceFeatureMask(0);
  InitBaselineVectorFlag();
  EXPECT_EQ(HasBaselineVector.load(), 1u);  // already set: left alone
  HasBaselineVector.store(0);
  InitBaselineVectorFlag();
  EXPECT_EQ(HasBaselineVector.load(), 0u);
}

TEST(CpuFeatures, RealMaskUsesOnlyTheDocumentedBits) {
  const uint32_t mask = test::RealFeatureMask();
  EXPECT_EQ(mask & ~(B5 | B7 | B13 | B14 | B23), 0u);
#if ZELT_X86
  EXPECT_NE(mask & B5, 0u);  // every x86-64 processor has SSE2
#endif
#if defined(__AVX2__)
  EXPECT_NE(mask & B23, 0u);
#endif
}

}  // namespace
}  // namespace zelt
