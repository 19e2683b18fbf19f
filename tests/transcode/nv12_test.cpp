// NV12: planar 4:2:0 to 16-bit NV12, and 8-bit NV12 to UYVY.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/buffers.h"
#include "zelt/ycbcr_v210.h"

namespace zelt {
namespace {

using P16Fn = uint32_t (*)(uint16_t*, const uint16_t*, uint32_t);

struct P16Case {
  const char* name;
  P16Fn fn;
  unsigned bits;  // sample depth of the source
};

const P16Case kP16[] = {{"420p10", cycbcr_420p10_to_NV12p16, 10},
                        {"420p12", cycbcr_420p12_to_NV12p16, 12},
                        {"420p16", cycbcr_420p16_to_NV12p16, 16}};

// Left alignment: the top bit of the sample lands on bit 15.
uint16_t LeftAlign(uint16_t v, unsigned bits) { return static_cast<uint16_t>(v * (1u << (16 - bits))); }

TEST(Nv12p16, LumaThenInterleavedChromaLeftAligned) {
  // size is the source's byte count, three bytes per luma sample: 4:2:0 frames of
  // 16-bit samples (L + L/4 + L/4 samples = 3L bytes); sizes not a multiple of 3
  // round down; tiny frames have no chroma pair at all.
  for (const P16Case& c : kP16) {
    for (uint32_t size : {3u * 64 * 4, 3u * 1920 * 2, 3u * 7 * 3, 3u * 100 + 2, 3u * 4 + 1, 9u, 3u, 0u}) {
      const size_t L = size / 3, Q = L / 4;
      std::mt19937 rng(size);
      std::vector<uint16_t> src(L + 2 * Q + 8);
      for (auto& v : src) v = static_cast<uint16_t>(rng() & ((1u << c.bits) - 1));
      test::GuardedBuffer out((L + 2 * Q) * 2 + 16, 64, 0xEE);
      c.fn(reinterpret_cast<uint16_t*>(out.data()), src.data(), size);
      const auto* d = reinterpret_cast<const uint16_t*>(out.data());
      for (size_t i = 0; i < L; ++i) ASSERT_EQ(d[i], LeftAlign(src[i], c.bits)) << c.name << " luma " << i;
      for (size_t i = 0; i < Q; ++i) {
        ASSERT_EQ(d[L + 2 * i], LeftAlign(src[L + i], c.bits)) << c.name << " Cb " << i;
        ASSERT_EQ(d[L + 2 * i + 1], LeftAlign(src[L + Q + i], c.bits)) << c.name << " Cr " << i;
      }
      const uint8_t* tail = out.data() + (L + 2 * Q) * 2;
      EXPECT_TRUE(std::all_of(tail, tail + 16, [](uint8_t b) { return b == 0xEE; })) << c.name << " size " << size;
      EXPECT_TRUE(out.GuardsIntact()) << c.name;
    }
  }
}

TEST(Nv12p16, FullScaleValues) {
  const uint16_t src[3] = {1023, 4095, 65535};
  uint16_t out[3];
  cycbcr_420p10_to_NV12p16(out, src, 3);
  EXPECT_EQ(out[0], 65472);
  cycbcr_420p12_to_NV12p16(out, src + 1, 3);
  EXPECT_EQ(out[0], 65520);
  cycbcr_420p16_to_NV12p16(out, src + 2, 3);
  EXPECT_EQ(out[0], 65535);
}

TEST(Nv12ToUyvy, RowsShareChromaInPairsOddSizesCut) {
  const struct {
    uint32_t w, h, pad;
  } cases[] = {{2, 1, 0}, {4, 4, 0}, {5, 3, 6}, {64, 7, 0}, {33, 5, 2}, {640, 2, 16}, {8, 0, 0}, {1, 2, 0}};
  for (const auto& c : cases) {
    const uint32_t ds = c.w / 2 * 4 + c.pad;
    const std::vector<uint8_t> src = test::RandomBytes(size_t{c.w} * c.h + size_t{c.w} * ((c.h + 1) / 2), c.w + c.h);
    const std::vector<uint8_t> before = test::RandomBytes(size_t{ds} * c.h, 4);
    std::vector<uint8_t> want = before;
    for (uint32_t r = 0; r < c.h; ++r) {
      // Rows 2k and 2k+1 repeat chroma row k; the chroma rows follow the luma plane.
      const uint8_t* chroma = src.data() + size_t{c.w} * c.h + size_t{r / 2} * c.w;
      for (uint32_t p = 0; p < c.w / 2; ++p) {
        uint8_t* g = want.data() + size_t{r} * ds + 4 * p;
        g[0] = chroma[2 * p];
        g[1] = src[size_t{r} * c.w + 2 * p];
        g[2] = chroma[2 * p + 1];
        g[3] = src[size_t{r} * c.w + 2 * p + 1];
      }
    }
    test::GuardedBuffer in(src.size()), out(before.size());
    std::copy(src.begin(), src.end(), in.data());
    std::copy(before.begin(), before.end(), out.data());
    cycbcr_NV12_to_uyvy(out.data(), in.data(), c.w, c.h, ds);
    EXPECT_EQ(out.Bytes(), want) << c.w << "x" << c.h << ": " << test::FirstDifference(out.Bytes(), want);
    EXPECT_TRUE(out.GuardsIntact() && in.GuardsIntact()) << c.w << "x" << c.h;
  }
}

}  // namespace
}  // namespace zelt
