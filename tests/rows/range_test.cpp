// Full-range to video-range mapping: the block rule for whole runs of eight samples
// and the exact rule for the rest, so a sample's result depends on its position.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/levels.h"
#include "support/paths.h"
#include "zelt/rows.h"

namespace zelt::test {
namespace {

// A run filled with one value: the first eight samples of three pixels fall in the
// block, the ninth does not; two pixels (six samples) never reach a block.
struct Case {
  const char* name;
  int32_t bits;
  uint16_t in, inBlock, outside;
};

const Case kCases[] = {
    {"16-bit black", 16, 0, 4096, 4096},
    {"16-bit top stays above 60160", 16, 65535, 60378, 60379},
    {"16-bit read unsigned", 16, 0x8000, 32237, 32237},
    {"10-bit white", 10, 1023, 942, 942},
    {"10-bit one", 10, 1, 64, 64},
    {"10-bit block results are even", 10, 255, 282, 283},
    {"8-bit white", 8, 255, 234, 235},
    {"8-bit black", 8, 0, 16, 16},
    {"12-bit white", 12, 4095, 3772, 3772},
    // Below 16 bits the container is signed: -1 and -32768.
    {"10-bit minus one", 10, 0xFFFF, 62, 64},
    {"10-bit most negative", 10, 0x8000, 37458, 37459},
    // Black offset 16384: the block saturates at 32767, the exact rule wraps.
    {"18-bit block saturates", 18, 32767, 32767, 44525},
    // (1 << bits) >> 4 kept in 16 bits, shift count modulo 32.
    {"20-bit offset wraps to 0", 20, 255, 218, 219},
    {"bits 36 acts as 4", 36, 255, 219, 220},
};

TEST(CGRGBtoVSRGB, BlockAndExactRules) {
  for (const Level& level : HostLevels()) {
    ScopedFeatures features(level.mask, level.extended);
    for (const Case& c : kCases) {
      SCOPED_TRACE(level.name + " " + c.name);
      std::vector<uint16_t> three(9, c.in), two(6, c.in);
      zeltCGRGBtoVSRGB(three.data(), 3, c.bits);
      zeltCGRGBtoVSRGB(two.data(), 2, c.bits);
      EXPECT_EQ(std::vector<uint16_t>(three.begin(), three.begin() + 8), std::vector<uint16_t>(8, c.inBlock));
      EXPECT_EQ(three[8], c.outside);
      EXPECT_EQ(two, std::vector<uint16_t>(6, c.outside));
    }
  }
}

// Where the block/exact boundary falls for every run length: 10-bit 255 marks it.
TEST(CGRGBtoVSRGB, BoundaryFollowsRunLength) {
  for (const Level& level : HostLevels()) {
    ScopedFeatures features(level.mask, level.extended);
    for (uint32_t pixels = 0; pixels < 70; ++pixels) {
      std::vector<uint16_t> run(3 * pixels + 5, 255);
      zeltCGRGBtoVSRGB(run.data(), pixels, 10);
      const size_t blocked = 3 * pixels / 8 * 8;
      for (size_t i = 0; i < run.size(); ++i) {
        const uint16_t expect = i < blocked ? 282 : i < 3 * pixels ? 283 : 255;
        ASSERT_EQ(run[i], expect) << level.name << " pixels " << pixels << " sample " << i;
      }
    }
  }
}

TEST(CGRGBtoVSRGB, EveryLevelGivesTheSameRun) {
  std::mt19937 gen(6);
  std::vector<uint16_t> source(3 * 5000);
  for (auto& v : source) v = static_cast<uint16_t>(gen());
  for (int32_t bits : {8, 10, 12, 16, 18, 0}) {
    for (uint32_t pixels : {1u, 5u, 6u, 11u, 16u, 21u, 43u, 64u, 1283u, 5000u}) {
      std::vector<std::vector<uint16_t>> outs;
      for (const Level& level : HostLevels()) {
        ScopedFeatures features(level.mask, level.extended);
        std::vector<uint16_t> run(source.begin(), source.begin() + 3 * pixels);
        run.push_back(0x1234);
        zeltCGRGBtoVSRGB(run.data(), pixels, bits);
        EXPECT_EQ(run.back(), 0x1234);
        outs.push_back(run);
      }
      for (size_t i = 1; i < outs.size(); ++i) ASSERT_EQ(outs[i], outs[0]) << "bits " << bits << " pixels " << pixels;
    }
  }
}

TEST(CGRGBAtoVSRGBA, ExactRuleUnsignedAlphaKept) {
  struct Rgba {
    int32_t bits;
    uint16_t in, out;
  };
  const Rgba cases[] = {{8, 255, 235}, {10, 1023, 942}, {16, 65535, 60379}, {16, 0, 4096},
                        {10, 0xFFFF, 56347}};  // read unsigned at every depth
  for (const Rgba& c : cases) {
    std::vector<uint16_t> px;
    for (int p = 0; p < 5; ++p) px.insert(px.end(), {c.in, c.in, c.in, uint16_t(0xA000 + p)});
    zeltCGRGBAtoVSRGBA(px.data(), 5, c.bits);
    for (int p = 0; p < 5; ++p) {
      for (int k = 0; k < 3; ++k) EXPECT_EQ(px[4 * p + k], c.out) << c.bits << " " << c.in;
      EXPECT_EQ(px[4 * p + 3], 0xA000 + p);
    }
  }
  std::vector<uint16_t> untouched(8, 777);
  zeltCGRGBAtoVSRGBA(untouched.data(), 0, 16);
  zeltCGRGBtoVSRGB(untouched.data(), 0, 16);
  EXPECT_EQ(untouched, std::vector<uint16_t>(8, 777));
}

}  // namespace
}  // namespace zelt::test
