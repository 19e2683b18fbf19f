// Packed 4:2:2 reorders, copies and flips against plain references, on every
// code path, with guard zones around every buffer.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "support/buffers.h"
#include "support/paths.h"
#include "core/testing.h"
#include "zelt/ycbcr.h"

namespace zelt {
namespace {

using PackedFn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

// References, written from the byte rules, one pixel group at a time.
enum class Op { SwapFrame, SwapGroups, Exchange, FlipCopy, SwapThenFlip, Copy };

std::vector<uint8_t> Reference(Op op, const std::vector<uint8_t>& src, std::vector<uint8_t> dst, uint32_t w,
                               uint32_t h, uint32_t ds, uint32_t ss) {
  auto swapRun = [&](size_t d, size_t s, size_t bytes) {
    for (size_t i = 0; i + 1 < bytes; i += 2) {
      dst[d + i] = src[s + i + 1];
      dst[d + i + 1] = src[s + i];
    }
  };
  const size_t minStride = std::min(ds, ss);
  switch (op) {
    case Op::SwapFrame:
    case Op::SwapThenFlip:
      if (ds == ss) {
        swapRun(0, 0, size_t{h} * ds / 2 * 2);
      } else {
        for (uint32_t r = 0; r < h; ++r) swapRun(size_t{r} * ds, size_t{r} * ss, minStride / 2 * 2);
      }
      if (op == Op::SwapThenFlip) {
        std::vector<uint8_t> flipped = dst;
        for (uint32_t r = 0; r < h; ++r)
          std::copy_n(dst.begin() + size_t{h - 1 - r} * ds, ds, flipped.begin() + size_t{r} * ds);
        dst = flipped;
      }
      break;
    case Op::SwapGroups:
      for (uint32_t r = 0; r < h; ++r) swapRun(size_t{r} * ds, size_t{r} * ss, size_t{w / 2} * 4);
      break;
    case Op::Exchange:
      for (uint32_t r = 0; r < h; ++r) {
        for (uint32_t g = 0; g < w / 2; ++g) {
          const size_t d = size_t{r} * ds + g * 4, s = size_t{r} * ss + g * 4;
          dst[d] = src[s];
          dst[d + 1] = src[s + 3];
          dst[d + 2] = src[s + 2];
          dst[d + 3] = src[s + 1];
        }
      }
      break;
    case Op::FlipCopy:
      for (uint32_t r = 0; r < h; ++r)
        std::copy_n(src.begin() + size_t{h - 1 - r} * ss, minStride, dst.begin() + size_t{r} * ds);
      break;
    case Op::Copy:
      if (ds == ss) {
        std::copy_n(src.begin(), size_t{h} * ds, dst.begin());
      } else {
        for (uint32_t r = 0; r < h; ++r) std::copy_n(src.begin() + size_t{r} * ss, minStride, dst.begin() + size_t{r} * ds);
      }
      break;
  }
  return dst;
}

struct Converter {
  const char* name;
  PackedFn fn;
  Op op;
};

const Converter kConverters[] = {
    {"uyvy_to_yuy2", cycbcr_uyvy_to_yuy2, Op::SwapFrame},    {"yuy2_to_uyvy", cycbcr_yuy2_to_uyvy, Op::SwapFrame},
    {"uyvy_to_yvyu", cycbcr_uyvy_to_yvyu, Op::SwapGroups},   {"yvyu_to_uyvy", cycbcr_yvyu_to_uyvy, Op::SwapGroups},
    {"yuy2_to_yvyu", cycbcr_yuy2_to_yvyu, Op::Exchange},     {"yvyu_to_yuy2", cycbcr_yvyu_to_yuy2, Op::Exchange},
    {"uyvy_to_cyuv", cycbcr_uyvy_to_cyuv, Op::FlipCopy},     {"cyuv_to_uyvy", cycbcr_cyuv_to_uyvy, Op::FlipCopy},
    {"yuy2_to_cyuv", cycbcr_yuy2_to_cyuv, Op::SwapThenFlip}, {"cyuv_to_yuy2", cycbcr_cyuv_to_yuy2, Op::SwapThenFlip},
    {"yvyu_to_cyuv", cycbcr_yvyu_to_cyuv, Op::SwapThenFlip}, {"cyuv_to_yvyu", cycbcr_cyuv_to_yvyu, Op::SwapThenFlip},
    {"uyvy_to_uyvy", cycbcr_uyvy_to_uyvy, Op::Copy},         {"yuy2_to_yuy2", cycbcr_yuy2_to_yuy2, Op::Copy},
    {"yvyu_to_yvyu", cycbcr_yvyu_to_yvyu, Op::Copy},         {"cyuv_to_cyuv", cycbcr_cyuv_to_cyuv, Op::Copy},
    {"012v_to_012v", cycbcr_012v_to_012v, Op::Copy},         {"interleaved_copy", cycbcr_interleaved_copy, Op::Copy},
};

struct Geometry {
  uint32_t w, h, dsPad, ssPad;
};

std::vector<Geometry> Geometries() {
  std::vector<Geometry> g;
  for (uint32_t w : test::InterestingWidths()) {
    g.push_back({w, 3, 0, 0});     // natural strides, one run
    g.push_back({w, 2, 6, 0});     // destination padded
    g.push_back({w, 5, 0, 10});    // source padded
    g.push_back({w, 1, 18, 18});   // equal padded strides: padding converted too
    g.push_back({w, 3, 1, 1});     // equal odd strides: words straddle rows
  }
  g.push_back({64, 0, 0, 0});
  g.push_back({2, 7, 2, 0});
  return g;
}

TEST(PackedConverters, MatchReferenceOnEveryPathWithoutStrayWrites) {
  for (const Converter& c : kConverters) {
    for (const Geometry& g : Geometries()) {
      const uint32_t ds = 2 * g.w + g.dsPad, ss = 2 * g.w + g.ssPad;
      const std::vector<uint8_t> src = test::RandomBytes(size_t{ss} * g.h, g.w * 31 + g.h);
      const std::vector<uint8_t> before = test::RandomBytes(size_t{ds} * g.h, 99);
      const std::vector<uint8_t> want = Reference(c.op, src, before, g.w, g.h, ds, ss);
      for (const test::PathResult& r : test::RunEveryPath([&] {
             test::GuardedBuffer s(src.size()), d(before.size());
             std::copy(src.begin(), src.end(), s.data());
             std::copy(before.begin(), before.end(), d.data());
             const uint32_t n = c.fn(d.data(), s.data(), g.w, g.h, ds, ss);
             EXPECT_EQ(n, g.h * ds) << c.name;
             EXPECT_TRUE(d.GuardsIntact() && s.GuardsIntact()) << c.name << " w=" << g.w;
             EXPECT_TRUE(std::equal(src.begin(), src.end(), s.data())) << c.name << ": source changed";
             return d.Bytes();
           })) {
        EXPECT_EQ(r.bytes, want) << c.name << " [" << r.path << "] w=" << g.w << " h=" << g.h << " ds=" << ds
                                 << " ss=" << ss << ": " << test::FirstDifference(r.bytes, want);
      }
    }
  }
}

TEST(PackedConverters, InPlaceGivesTheSequentialResultOnEveryPath) {
  for (const Converter& c : kConverters) {
    if (c.op == Op::FlipCopy || c.op == Op::Copy) continue;  // not meant to run in place
    for (uint32_t w : {7u, 64u, 300u}) {
      const uint32_t stride = 2 * w, h = 4;
      const std::vector<uint8_t> src = test::RandomBytes(size_t{stride} * h, w);
      const std::vector<uint8_t> want = Reference(c.op, src, src, w, h, stride, stride);
      for (const auto& r : test::RunEveryPath([&] {
             std::vector<uint8_t> buf = src;
             c.fn(buf.data(), buf.data(), w, h, stride, stride);
             return buf;
           })) {
        EXPECT_EQ(r.bytes, want) << c.name << " [" << r.path << "] w=" << w;
      }
    }
  }
}

TEST(PackedConverters, SwapRoutesDoNotExchangeChromaButTheExchangeDoes) {
  const uint8_t uyvy[4] = {0x80, 0x10, 0x90, 0x20};  // Cb Y0 Cr Y1
  uint8_t out[4], back[4];
  cycbcr_uyvy_to_yvyu(out, uyvy, 2, 1, 4, 4);
  EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{0x10, 0x80, 0x20, 0x90}));  // Y0 Cb Y1 Cr
  cycbcr_yvyu_to_uyvy(back, out, 2, 1, 4, 4);
  EXPECT_EQ(std::memcmp(back, uyvy, 4), 0);
  const uint8_t yuy2[4] = {0x10, 0x80, 0x20, 0x90};  // Y0 Cb Y1 Cr
  cycbcr_yuy2_to_yvyu(out, yuy2, 2, 1, 4, 4);
  EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{0x10, 0x90, 0x20, 0x80}));  // Y0 Cr Y1 Cb
}

TEST(PackedConverters, NarrowRowsWriteNothingWhereTheRuleSaysSo) {
  uint8_t src[8] = {1, 2, 3, 4, 5, 6, 7, 8}, dst[8];
  std::memset(dst, 0xEE, sizeof dst);
  cycbcr_uyvy_to_yvyu(dst, src, 1, 2, 4, 4);
  cycbcr_yuy2_to_yvyu(dst, src, 1, 2, 4, 4);
  EXPECT_TRUE(std::all_of(dst, dst + 8, [](uint8_t b) { return b == 0xEE; }));
  // The frame swap works on strides, not widths: width 1 still swaps the row.
  cycbcr_uyvy_to_yuy2(dst, src, 1, 2, 4, 4);
  EXPECT_EQ(dst[0], 2);
  EXPECT_EQ(dst[7], 7);
}

TEST(Invert, FlipsRowsInPlaceMiddleRowStays) {
  for (uint32_t h : {0u, 1u, 2u, 5u, 6u}) {
    const uint32_t stride = 12;
    std::vector<uint8_t> buf = test::RandomBytes(size_t{stride} * h, h);
    const std::vector<uint8_t> orig = buf;
    cycbcr_invert(buf.data(), stride, h);
    for (uint32_t r = 0; r < h; ++r)
      EXPECT_TRUE(std::equal(buf.begin() + r * stride, buf.begin() + (r + 1) * stride,
                             orig.begin() + (h - 1 - r) * stride))
          << "h=" << h << " row " << r;
  }
}

TEST(Invert, WideRowsUseAllocatedScratchNarrowOnesTheStack) {
  struct Case {
    uint32_t stride;
    uint64_t allocs;
  } cases[] = {{5461, 0}, {5462, 1}, {6000, 1}};
  for (const Case& c : cases) {
    std::vector<uint8_t> buf = test::RandomBytes(size_t{c.stride} * 3, c.stride);
    const std::vector<uint8_t> orig = buf;
    const uint64_t before = zelt::testing::QrAllocCount();
    cycbcr_invert(buf.data(), c.stride, 3);
    EXPECT_EQ(zelt::testing::QrAllocCount() - before, c.allocs) << c.stride;
    EXPECT_TRUE(std::equal(buf.begin(), buf.begin() + c.stride, orig.begin() + 2 * c.stride));
  }
}

}  // namespace
}  // namespace zelt
