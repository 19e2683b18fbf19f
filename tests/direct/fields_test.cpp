// Field and frame operations: the deinterlacer's comb measure on hand-made
// pictures, the luma smoother's thresholds, field swap and line average, flips.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "support/aligned.h"
#include "support/buffers.h"
#include "support/levels.h"
#include "zelt/direct.h"
#include "core/testing.h"

namespace zelt {
namespace {

// ---- deinterlacer -----------------------------------------------------------------

constexpr uint32_t Px(uint32_t b, uint32_t g, uint32_t r, uint32_t a = 0xFF) { return b | g << 8 | r << 16 | a << 24; }
constexpr uint32_t Grey(uint32_t v, uint32_t a = 0xFF) { return Px(v, v, v, a); }

// A one-pixel-wide picture: one 32-bit pixel per line, lines 4 bytes apart, with a
// spare line in front (the line before line 0).
struct Column {
  std::vector<uint32_t> lines;  // lines[0] is the line before the picture
  uint32_t* picture() { return lines.data() + 1; }
  uint32_t height() const { return static_cast<uint32_t>(lines.size() - 1); }
};

std::vector<uint32_t> Deinterlace(Column in, uint32_t threshold, uint32_t softness, uint32_t mode) {
  std::vector<uint32_t> out(in.height(), 0xCCCCCCCCu);
  EXPECT_EQ(zlt_deinterlace_rgb(reinterpret_cast<uint8_t*>(out.data()), reinterpret_cast<uint8_t*>(in.picture()), 1,
                                in.height(), 4, threshold, softness, 0, mode),
            0u);
  return out;
}

struct CombCase {
  const char* what;
  std::vector<uint32_t> lines;  // line before the picture, then the picture
  uint32_t threshold, softness, mode;
  std::vector<uint32_t> want;
};

// Line 3 of a five-line picture in mode 16 has its true neighbours (lines 2 and 4);
// with u = d = 100 a deviation of 10 in one channel gives a product of 100, weighed
// 1 (blue), 3 (red) or 6 (green), against the threshold squared.
std::vector<uint32_t> Five(uint32_t line3) { return {0, Grey(100), Grey(100), Grey(100), line3, Grey(100)}; }
std::vector<uint32_t> FiveOut(uint32_t line3) { return {Grey(100), Grey(100), Grey(100), line3, Grey(100)}; }
// The same with blue 90 above line 3 and 110 below it.
std::vector<uint32_t> Edge(uint32_t line3) {
  return {0, Grey(100), Grey(100), Px(90, 100, 100), line3, Px(110, 100, 100)};
}
std::vector<uint32_t> EdgeOut(uint32_t line3) {
  return {Grey(100), Grey(100), Px(90, 100, 100), line3, Px(110, 100, 100)};
}

const CombCase kCombCases[] = {
    {"blue 100 <= 10^2", Five(Px(110, 100, 100)), 10, 0, 16, FiveOut(Px(110, 100, 100))},
    {"blue 100 > 9^2", Five(Px(110, 100, 100)), 9, 0, 16, FiveOut(Grey(100, 0))},
    {"red 300 <= 18^2", Five(Px(100, 100, 110)), 18, 0, 16, FiveOut(Px(100, 100, 110))},
    {"red 300 > 17^2", Five(Px(100, 100, 110)), 17, 0, 16, FiveOut(Grey(100, 0))},
    {"green 600 <= 25^2", Five(Px(100, 110, 100)), 25, 0, 16, FiveOut(Px(100, 110, 100))},
    {"green 600 > 24^2", Five(Px(100, 110, 100)), 24, 0, 16, FiveOut(Grey(100, 0))},
    // Between its neighbours the product is negative: kept even at threshold 0.
    {"ramp", {0, Grey(0), Grey(80), Grey(0), Grey(100), Grey(120)}, 0, 0, 16,
     {Grey(0), Grey(0, 0), Grey(0), Grey(100), Grey(120)}},
    // Softness weakens the measure across a steep edge: u = 90, d = 110, c = 130
    // (blue): product 800, edge 400. Softness 10 (W = 100): 100*800/500 = 160.
    {"soft 160 <= 13^2", Edge(Px(130, 100, 100)), 13, 10, 16, EdgeOut(Px(130, 100, 100))},
    {"soft 160 > 12^2", Edge(Px(130, 100, 100)), 12, 10, 16, EdgeOut(Grey(100, 0))},
    {"hard 800 > 13^2", Edge(Px(130, 100, 100)), 13, 0, 16, EdgeOut(Grey(100, 0))},
    // Softness 100 squares to 10000 but W is capped at 5500: green product 800,
    // edge 400: 6*5500*800/5900 = 4474 <= 67^2 = 4489 (uncapped it would be 4615).
    {"cap 4474 <= 67^2", {0, Grey(100), Grey(100), Px(100, 90, 100), Px(100, 130, 100), Px(100, 110, 100)}, 67, 100, 16,
     {Grey(100), Grey(100), Px(100, 90, 100), Px(100, 130, 100), Px(100, 110, 100)}},
    {"cap 4474 > 66^2", {0, Grey(100), Grey(100), Px(100, 90, 100), Px(100, 130, 100), Px(100, 110, 100)}, 66, 100, 16,
     {Grey(100), Grey(100), Px(100, 90, 100), Grey(100, 0), Px(100, 110, 100)}},
    // Line 1 looks at the line below twice: with its true neighbours (0 and 200)
    // it would sit between them and stay. The last line looks at the line above
    // twice. Replaced pixels lose their fourth byte.
    {"line 1 and last line", {0, Grey(0), Grey(100), Grey(200), Grey(50)}, 0, 0, 16,
     {Grey(0), Grey(200, 0), Grey(200), Grey(200, 0)}},
    // Mode 0 filters like mode 16; mode 17 keeps the odd lines and, outside mode
    // 2, the even ones too: it changes nothing.
    {"mode 0", {0, Grey(0), Grey(100), Grey(200), Grey(50)}, 0, 0, 0, {Grey(0), Grey(200, 0), Grey(200), Grey(200, 0)}},
    {"mode 17", {0, Grey(0), Grey(100), Grey(200), Grey(50)}, 0, 0, 17, {Grey(0), Grey(100), Grey(200), Grey(50)}},
    // Mode 2 filters every line with (u + 2c + d) >> 2, line 0 against the line
    // before the picture (here 50 above, 40 below: 0 -> (50 + 0 + 40) >> 2 = 22);
    // line 1 against line 2 twice, line 2 against 40 and 100.
    {"mode 2", {Grey(50), Grey(0), Grey(40), Px(110, 100, 100, 7), Grey(100), Grey(100)}, 0, 0, 2,
     {Grey(22, 0), Px(75, 70, 70, 0), Px(90, 85, 85, 0), Grey(100), Grey(100)}},
};

TEST(Deinterlace, CombMeasureWeightsThresholdSoftnessAndNeighbours) {
  for (const CombCase& c : kCombCases) {
    const std::vector<uint32_t> got = Deinterlace(Column{c.lines}, c.threshold, c.softness, c.mode);
    ASSERT_EQ(got.size(), c.want.size()) << c.what;
    for (size_t n = 0; n < got.size(); ++n) {
      EXPECT_EQ(got[n], c.want[n]) << c.what << ", line " << n << std::hex << ": got 0x" << got[n] << " want 0x"
                                   << c.want[n];
    }
  }
}

TEST(Deinterlace, KeptLinesAndPadding) {
  // 6 x 4 random picture, lines 32 bytes apart. Mode 16 keeps even lines as
  // whole-stride copies (padding included); filtered lines write their pixels only.
  const uint32_t w = 6, h = 4, stride = 32;
  const std::vector<uint8_t> src = test::RandomBytes(stride * h, 3);
  std::vector<uint8_t> dst16(stride * h, 0), dst0(stride * h, 0);
  zlt_deinterlace_rgb(dst16.data(), src.data(), w, h, stride, 0, 0, 0, 16);
  zlt_deinterlace_rgb(dst0.data(), src.data(), w, h, stride, 0, 0, 0, 0);
  for (uint32_t n = 0; n < h; n += 2) {
    EXPECT_EQ(0, std::memcmp(&dst16[stride * n], &src[stride * n], stride)) << "even line " << n;
    EXPECT_EQ(dst16[stride * (n + 1) + 4 * w], 0) << "padding of odd line " << n + 1;
  }
  // Mode 0 filters like mode 16 but keeps even lines pixel by pixel.
  EXPECT_EQ(0, std::memcmp(dst0.data(), src.data(), 4 * w));
  EXPECT_EQ(dst0[4 * w], 0);
  EXPECT_EQ(0, std::memcmp(&dst0[stride], &dst16[stride], 4 * w));
  EXPECT_EQ(zlt_deinterlace_yuv(), 0xFFFFFFFFu);
}

// ---- luma smoother ------------------------------------------------------------------

struct SmoothCase {
  const char* what;
  int32_t mode, byteCount;
  std::vector<uint8_t> row;  // U Y0 V Y1 ...
  std::vector<uint8_t> want;
};

// Pairs: (U, Y0, V, Y1); "next" is the following pair's Y0.
std::vector<uint8_t> Row(std::initializer_list<uint8_t> lumas) {
  std::vector<uint8_t> r;
  for (uint8_t y : lumas) {
    r.push_back(static_cast<uint8_t>(0x80 + r.size()));
    r.push_back(y);
  }
  return r;
}

const SmoothCase kSmoothCases[] = {
    // Mode 1 averages Y1 with Y0 in every pair below byteCount, truncating.
    {"mode 1", 1, 12, Row({10, 21, 100, 0, 255, 254}), Row({10, 15, 100, 50, 255, 254})},
    {"mode 1, byteCount 2 still reaches pair 0", 1, 2, Row({10, 21, 100, 0}), Row({10, 15, 100, 0})},
    {"mode 1, byteCount 1", 1, 1, Row({10, 21, 100, 0}), Row({10, 21, 100, 0})},
    // Modes 2..6 need |Y0 - next| < 8 and |Y0 - Y1| > 10.
    {"mode 6 worked", 6, 8, Row({100, 111, 107, 0}), Row({100, 103, 107, 0})},
    {"mode 6, next 8 away", 6, 8, Row({100, 111, 108, 0}), Row({100, 111, 108, 0})},
    {"mode 6, Y1 10 away", 6, 8, Row({100, 110, 107, 0}), Row({100, 110, 107, 0})},
    {"mode 6, below", 6, 8, Row({100, 89, 93, 0}), Row({100, 96, 93, 0})},
    {"mode 2, Y0 127", 2, 8, Row({127, 200, 127, 0}), Row({127, 127, 127, 0})},
    {"mode 2, Y0 128", 2, 8, Row({128, 200, 128, 0}), Row({128, 200, 128, 0})},
    {"mode 3", 3, 8, Row({128, 200, 128, 0}), Row({128, 128, 128, 0})},
    {"mode 4, Y0 127", 4, 8, Row({127, 200, 127, 0}), Row({127, 163, 127, 0})},
    {"mode 4, Y0 128", 4, 8, Row({128, 200, 128, 0}), Row({128, 200, 128, 0})},
    {"mode 5", 5, 8, Row({128, 201, 128, 0}), Row({128, 164, 128, 0})},
    // Pairs are visited while i < byteCount - 4: byteCount 9 stops after pair 0,
    // 10 takes pair 1 as well.
    {"mode 3, byteCount 9", 3, 9, Row({50, 70, 50, 70, 50, 0}), Row({50, 50, 50, 70, 50, 0})},
    {"mode 3, byteCount 10", 3, 10, Row({50, 70, 50, 70, 50, 0}), Row({50, 50, 50, 50, 50, 0})},
    {"mode 3, byteCount 5", 3, 5, Row({50, 70, 50, 0}), Row({50, 70, 50, 0})},
    {"mode 7 does nothing", 7, 8, Row({100, 111, 107, 0}), Row({100, 111, 107, 0})},
    {"mode 0 does nothing", 0, 8, Row({100, 111, 107, 0}), Row({100, 111, 107, 0})},
};

TEST(LumaSmoother, ModesThresholdsAndBounds) {
  for (const SmoothCase& c : kSmoothCases) {
    std::vector<uint8_t> row = c.row;
    EXPECT_EQ(zlt_2yuv_average_2y(row.data(), c.byteCount, c.mode), 0u) << c.what;
    EXPECT_EQ(row, c.want) << c.what << ": " << test::FirstDifference(row, c.want);
  }
}

// ---- field swap and line average ------------------------------------------------------

std::vector<uint8_t> Lines(uint32_t count, uint32_t stride, uint32_t seed) {
  return test::RandomBytes(size_t{count} * stride, seed);
}

TEST(ChangeField, FieldFlipSwapsLinePairs) {
  struct Case {
    int32_t height;
    uint32_t stride, lineStep;
  };
  for (const Case& c : std::initializer_list<Case>{{4, 64, 0}, {5, 64, 0}, {-6, 40, 0}, {1, 64, 0}, {4, 64, 16}, {6, 32, 96}}) {
    const uint32_t lines = static_cast<uint32_t>(std::abs(c.height));
    const size_t step = c.lineStep ? c.lineStep : c.stride;
    const std::vector<uint8_t> orig = test::RandomBytes(size_t{lines} * c.stride + 2 * step, lines);
    std::vector<uint8_t> want = orig;
    for (uint32_t k = 0; k < lines / 2; ++k) {
      const size_t a = size_t{2 * k} * c.stride, b = a + step;
      for (size_t i = 0; i < step; ++i) std::swap(want[a + i], want[b + i]);
    }
    std::vector<uint8_t> pic = orig;
    EXPECT_EQ(zlt_change_field_rgb(pic.data(), 3, 16, c.height, c.stride, nullptr, c.lineStep), 0u);
    EXPECT_EQ(pic, want) << "height " << c.height << " step " << c.lineStep;
    // The YUV entry passes mode 3 through.
    pic = orig;
    EXPECT_EQ(zlt_change_field_yuv(pic.data(), 3, 16, c.height, c.stride, nullptr, c.lineStep), 0u);
    EXPECT_EQ(pic, want) << "yuv, height " << c.height;
  }
}

TEST(ChangeField, FieldFlipFaultIsReportedAndFreesItsLine) {
  test::ErrorLogCapture log;
  std::vector<uint8_t> pic = Lines(4, 32, 9);
  const std::vector<uint8_t> orig = pic;
  const uint64_t allocs = zelt::testing::QrAllocCount();
  zelt::testing::ArmFault("zlt_change_field_rgb");
  EXPECT_EQ(zlt_change_field_rgb(pic.data(), 3, 8, 4, 32, nullptr, 0), 0u);
  zelt::testing::DisarmFault();
  EXPECT_EQ(zelt::testing::QrAllocCount(), allocs + 1);
  EXPECT_EQ(pic, orig);
  ASSERT_EQ(log.messages.size(), 1u);
  EXPECT_EQ(log.messages[0], "ERROR(Zelt): exception-zlt_change_field_rgb(FieldFLip) \n");
  EXPECT_EQ(log.flags[0], 0xC0000000u);
}

// Line n of the picture is averaged with the line n steps in, byte by byte in
// memory order (so a step smaller than the stride sees lines already averaged).
std::vector<uint8_t> LineAverage(std::vector<uint8_t> pic, uint32_t width, uint32_t lines, uint32_t stride,
                                 uint32_t step) {
  for (size_t n = 0; n < lines; ++n) {
    for (size_t i = 0; i < size_t{width} * 4; ++i) {
      uint8_t& b = pic[n * stride + i];
      b = static_cast<uint8_t>((b + pic[n * step + i]) >> 1);
    }
  }
  return pic;
}

TEST(ChangeField, LineAverageOnEveryPath) {
  // Line steps: 0 (the stride: every line with itself), twice the stride (apart),
  // and a pixel or two off the stride, so that the two ranges partly overlap and a
  // step below the stride reads bytes already averaged.
  struct Case {
    uint32_t lines, padPixels;
    int32_t stepPixels;  // line step = stride + 4 * stepPixels
    bool zeroStep, doubleStride;
  };
  const Case cases[] = {{2, 0, 0, true, false}, {3, 3, 0, true, false}, {4, 0, 0, false, true},
                        {5, 1, -1, false, false}, {3, 0, -2, false, false}, {4, 2, 1, false, false}};
  for (uint32_t w : test::InterestingWidths()) {
    for (const Case& c : cases) {
      const uint32_t stride = 4 * (w + c.padPixels);
      if (int64_t{stride} + 4 * int64_t{c.stepPixels} <= 0) continue;
      const uint32_t step = c.zeroStep       ? 0
                            : c.doubleStride ? 2 * stride
                                             : static_cast<uint32_t>(int64_t{stride} + 4 * int64_t{c.stepPixels});
      const size_t span = size_t{c.lines} * std::max(stride, step ? step : stride) + 4 * w;
      const std::vector<uint8_t> orig = test::RandomBytes(span, w + c.lines);
      const std::vector<uint8_t> want = LineAverage(orig, w, c.lines, stride, step ? step : stride);
      for (const test::PathResult& r : test::RunEveryLevel([&] {
             test::GuardedBuffer pic(span);
             std::memcpy(pic.data(), orig.data(), span);
             EXPECT_EQ(zlt_change_field_rgb(pic.data(), 4, w, static_cast<int32_t>(c.lines), stride, nullptr, step), 0u);
             EXPECT_TRUE(pic.GuardsIntact());
             return pic.Bytes();
           })) {
        EXPECT_EQ(r.bytes, want) << "w=" << w << " lines=" << c.lines << " step=" << step << " [" << r.path
                                 << "]: " << test::FirstDifference(r.bytes, want);
      }
    }
  }
}

TEST(ChangeField, LineAverageNeedsTwoLinesAndOtherModesDoNothing) {
  std::vector<uint8_t> pic = Lines(4, 64, 5);
  const std::vector<uint8_t> orig = pic;
  EXPECT_EQ(zlt_change_field_rgb(pic.data(), 4, 8, 1, 32, nullptr, 64), 0xFFFFFFFFu);
  EXPECT_EQ(zlt_change_field_rgb(pic.data(), 4, 8, -1, 32, nullptr, 64), 0xFFFFFFFFu);
  EXPECT_EQ(zlt_change_field_rgb(pic.data(), 4, 8, 0, 32, nullptr, 64), 0xFFFFFFFFu);
  for (int32_t mode : {0, 15, -3, 100}) EXPECT_EQ(zlt_change_field_rgb(pic.data(), mode, 8, 2, 32, nullptr, 64), 0u);
  EXPECT_EQ(pic, orig);
  // The YUV entry turns 4 into 1: no line average.
  EXPECT_EQ(zlt_change_field_yuv(pic.data(), 4, 8, 2, 32, nullptr, 64), 0u);
  EXPECT_EQ(pic, orig);
  // ... while the RGB entry's mode 4 does average (line 1 with the line 64 bytes in).
  EXPECT_EQ(zlt_change_field_rgb(pic.data(), 4, 8, 2, 32, nullptr, 64), 0u);
  EXPECT_NE(pic, orig);
}

// ---- flips ------------------------------------------------------------------------------

TEST(Flips, HorizontalOnEveryPathDistinctAndInPlace) {
  for (uint32_t w : test::InterestingWidths()) {
    for (uint32_t h : {1u, 2u, 3u}) {
      const uint32_t stride = 4 * w + (h == 2 ? 12 : 0);
      const std::vector<uint8_t> src = test::RandomBytes(size_t{stride} * h, w * 7 + h);
      for (bool inPlace : {false, true}) {
        // Distinct buffers leave the destination's padding alone; in place keeps it.
        std::vector<uint8_t> want = inPlace ? src : std::vector<uint8_t>(src.size(), 0x5A);
        for (uint32_t n = 0; n < h; ++n) {
          for (uint32_t x = 0; x < w; ++x) {
            std::memcpy(&want[size_t{n} * stride + 4 * x], &src[size_t{n} * stride + 4 * (w - 1 - x)], 4);
          }
        }
        for (const test::PathResult& r : test::RunEveryLevel([&] {
               test::GuardedBuffer s(src.size()), d(src.size(), 64, 0x5A);
               std::memcpy(s.data(), src.data(), src.size());
               uint8_t* out = inPlace ? s.data() : d.data();
               zlt_flip_horz(out, s.data(), w, static_cast<int32_t>(h), static_cast<int32_t>(stride));
               EXPECT_TRUE(s.GuardsIntact() && d.GuardsIntact());
               return inPlace ? s.Bytes() : d.Bytes();
             })) {
          EXPECT_EQ(r.bytes, want) << "w=" << w << " h=" << h << (inPlace ? " in place" : "") << " [" << r.path
                                   << "]: " << test::FirstDifference(r.bytes, want);
        }
      }
    }
  }
}

// A frame far larger than the cache with aligned lines takes streaming stores on
// the 256-bit path; the bytes stay the same.
TEST(Flips, HorizontalLargeAlignedFrame) {
  const uint32_t w = 1920, h = 1100, stride = 4 * w;
  const std::vector<uint8_t> src = test::RandomBytes(size_t{stride} * h, 8);
  std::vector<uint8_t> want(src.size());
  for (uint32_t n = 0; n < h; ++n)
    for (uint32_t x = 0; x < w; ++x)
      std::memcpy(&want[size_t{n} * stride + 4 * x], &src[size_t{n} * stride + 4 * (w - 1 - x)], 4);
  for (const test::PathResult& r : test::RunEveryPath([&] {
         test::AlignedBytes s(src.size()), d(src.size());
         s.Assign(src);
         zlt_flip_horz(d.data(), s.data(), w, h, stride);
         return d.Bytes();
       })) {
    EXPECT_TRUE(r.bytes == want) << r.path;
  }
}

TEST(Flips, VerticalDistinctAndInPlace) {
  for (int32_t h : {0, 1, 2, 5, 8}) {
    const uint32_t stride = 20;  // whole lines are moved, whatever the width says
    const std::vector<uint8_t> src = Lines(static_cast<uint32_t>(h), stride, static_cast<uint32_t>(h) + 1);
    std::vector<uint8_t> want(src.size());
    for (int32_t n = 0; n < h; ++n) std::memcpy(&want[size_t(n) * stride], &src[size_t(h - 1 - n) * stride], stride);
    test::GuardedBuffer d(src.size()), s(src.size());
    std::copy(src.begin(), src.end(), s.data());
    zlt_flip_vert(d.data(), s.data(), 1, h, stride);
    EXPECT_EQ(d.Bytes(), want) << "h=" << h;
    const uint64_t allocs = zelt::testing::QrAllocCount();
    zlt_flip_vert(s.data(), s.data(), 1, h, stride);
    EXPECT_EQ(s.Bytes(), want) << "in place, h=" << h;
    EXPECT_EQ(zelt::testing::QrAllocCount(), allocs + 1);
    EXPECT_TRUE(d.GuardsIntact() && s.GuardsIntact());
  }
}

TEST(Flips, VerticalInPlaceFaultIsReported) {
  test::ErrorLogCapture log;
  std::vector<uint8_t> pic = Lines(4, 16, 2);
  const std::vector<uint8_t> orig = pic;
  zelt::testing::ArmFault("zlt_flip_vert");
  zlt_flip_vert(pic.data(), pic.data(), 4, 4, 16);
  zelt::testing::DisarmFault();
  EXPECT_EQ(pic, orig);
  ASSERT_EQ(log.messages.size(), 1u);
  EXPECT_EQ(log.messages[0], "ERROR(Zelt): exception-zlt_flip_vert() \n");
  EXPECT_EQ(log.flags[0], 0xC0000000u);
}

}  // namespace
}  // namespace zelt
