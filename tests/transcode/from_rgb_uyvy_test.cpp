// The BGR fast path of RGB32 to UYVY (formula, source side effect, flip and its
// fault path, result) and the 14-bit 256-bit variant of the 4:2:2 kernel.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "support/buffers.h"
#include "support/paths.h"
#include "core/testing.h"
#include "zelt/ycbcr_from_rgb.h"

namespace zelt {
namespace {

struct Formula {
  double y[3], yOff, cb[3], cr[3];  // weights of R, G, B
};
const Formula kBt601{{0.257, 0.504, 0.098}, 16, {-0.148, -0.291, 0.439}, {0.439, -0.368, -0.071}};
const Formula kBt709Hdtv{{0.213, 0.715, 0.072}, 0, {-0.117, -0.394, 0.511}, {0.511, -0.464, -0.047}};

double Apply(const double w[3], double r, double g, double b) { return w[0] * r + w[1] * g + w[2] * b; }

// Checks one UYVY group against the formula, with chroma from the pair's average.
// Values within 0.01 of a half may round either way.
void ExpectGroup(const Formula& f, const uint8_t* bgra0, const uint8_t* bgra1, const uint8_t* out, const char* what) {
  auto check = [&](double v, uint8_t got, const char* sample) {
    v = std::min(255.0, std::max(0.0, v));
    const double frac = v - std::floor(v);
    if (std::abs(frac - 0.5) < 0.01) {
      EXPECT_NEAR(got, v, 0.52) << what << " " << sample;
    } else {
      EXPECT_EQ(got, static_cast<int>(std::lround(v))) << what << " " << sample << " " << v;
    }
  };
  const double r = (bgra0[2] + bgra1[2]) / 2.0, g = (bgra0[1] + bgra1[1]) / 2.0, b = (bgra0[0] + bgra1[0]) / 2.0;
  check(Apply(f.cb, r, g, b) + 128, out[0], "Cb");
  check(Apply(f.y, bgra0[2], bgra0[1], bgra0[0]) + f.yOff, out[1], "Y0");
  check(Apply(f.cr, r, g, b) + 128, out[2], "Cr");
  check(Apply(f.y, bgra1[2], bgra1[1], bgra1[0]) + f.yOff, out[3], "Y1");
}

TEST(Rgb32ToUyvyFastPath, FollowsTheDocumentedFormulasWithPairAveragedChroma) {
  test::ScopedFeatures baseline(test::kMaskSse41);
  struct Case {
    uint32_t matrix;
    const Formula* f;
  };
  for (const Case c : {Case{0, &kBt601}, Case{5, &kBt709Hdtv}}) {
    for (uint32_t w : {2u, 7u, 64u, 333u}) {
      const uint32_t h = 3, ss = w * 4 + 4, ds = w * 2 + 6;
      std::vector<uint8_t> src = test::RandomBytes(size_t{ss} * h, w + c.matrix);
      src[0] = src[1] = src[2] = 255;  // a white and a black pixel
      src[4] = src[5] = src[6] = 0;
      const std::vector<uint8_t> original = src;
      test::GuardedBuffer dst(size_t{ds} * h, 64, 0xA5);
      EXPECT_EQ(cycbcr_RGB32_to_uyvy(dst.data(), src.data(), w, h, ds, ss, c.matrix, 0), w * ds);
      EXPECT_TRUE(dst.GuardsIntact());
      EXPECT_EQ(src, original);
      for (uint32_t r = 0; r < h; ++r) {
        const uint8_t* s = src.data() + size_t{r} * ss;
        const uint8_t* d = dst.data() + size_t{r} * ds;
        for (uint32_t x = 0; x + 1 < w; x += 2) ExpectGroup(*c.f, s + 4 * x, s + 4 * x + 4, d + 2 * x, "group");
        // An odd last pixel and the row padding stay as they were.
        for (uint32_t i = (w / 2) * 4; i < ds; ++i) ASSERT_EQ(d[i], 0xA5) << "row " << r << " byte " << i;
      }
    }
  }
}

// Order 2 (R, G, B, A) is turned into B, G, R, A inside the caller's frame, and
// then converted as order 0.
TEST(Rgb32ToUyvyFastPath, RewritesAnRgbaSourceInPlace) {
  test::ScopedFeatures baseline(test::kMaskSse41);
  const uint32_t w = 9, h = 4, ss = w * 4 + 8, ds = w * 2;
  const std::vector<uint8_t> rgba = test::RandomBytes(size_t{ss} * h, 5);
  std::vector<uint8_t> src = rgba;
  std::vector<uint8_t> a(size_t{ds} * h), b(size_t{ds} * h);
  cycbcr_RGB32_to_uyvy(a.data(), src.data(), w, h, ds, ss, 0, 2);
  std::vector<uint8_t> bgra = rgba;
  for (uint32_t r = 0; r < h; ++r)
    for (uint32_t x = 0; x < w; ++x) std::swap(bgra[size_t{r} * ss + 4 * x], bgra[size_t{r} * ss + 4 * x + 2]);
  EXPECT_EQ(src, bgra) << "every pixel of every row swapped, padding untouched";
  std::vector<uint8_t> again = bgra;
  cycbcr_RGB32_to_uyvy(b.data(), again.data(), w, h, ds, ss, 0, 0);
  EXPECT_EQ(a, b);
}

// Other matrices and orders go to the kernel, which leaves the source alone and
// counts 2 * width * height.
TEST(Rgb32ToUyvyFastPath, OtherMatricesAndOrdersTakeTheKernel) {
  test::ScopedFeatures baseline(test::kMaskSse41);
  const uint32_t w = 8, h = 3, ds = 2 * w;
  const std::vector<uint8_t> original = test::RandomBytes(w * 4 * h, 8);
  struct Case {
    uint32_t matrix, flags, result;
  };
  for (const Case c : {Case{2, 0, 2 * w * h}, Case{0, 1, 2 * w * h}, Case{5, 3, 2 * w * h}, Case{11, 2, 2 * w * h},
                       Case{0, 0, w * ds}, Case{5, 0x8002, w * ds}}) {
    std::vector<uint8_t> src = original, dst(ds * h);
    EXPECT_EQ(cycbcr_RGB32_to_uyvy(dst.data(), src.data(), w, h, ds, w * 4, c.matrix, c.flags), c.result)
        << c.matrix << "/" << c.flags;
    EXPECT_EQ(src == original, (c.flags & 0x7FFF) != 2 || c.matrix == 11) << c.matrix << "/" << c.flags;
  }
}

std::vector<uint8_t> Flipped(const std::vector<uint8_t>& f, uint32_t h, uint32_t stride) {
  std::vector<uint8_t> out(f.size());
  for (uint32_t r = 0; r < h; ++r) std::memcpy(&out[size_t{r} * stride], &f[size_t{h - 1 - r} * stride], stride);
  return out;
}

TEST(Rgb32ToUyvyFastPath, BottomUpFlipsTheOutputThroughOneScratchRow) {
  test::ScopedFeatures baseline(test::kMaskSse41);
  for (uint32_t h : {1u, 4u, 5u}) {
    const uint32_t w = 6, ds = 16;
    std::vector<uint8_t> src = test::RandomBytes(w * 4 * h, h);
    std::vector<uint8_t> top(ds * h, 1), bottom(ds * h, 1);
    cycbcr_RGB32_to_uyvy(top.data(), src.data(), w, h, ds, w * 4, 0, 0);
    const uint64_t allocs = zelt::testing::QrAllocCount();
    EXPECT_EQ(cycbcr_RGB32_to_uyvy(bottom.data(), src.data(), w, h, ds, w * 4, 0, 0x8000), w * ds);
    EXPECT_EQ(zelt::testing::QrAllocCount(), allocs + 1);
    EXPECT_EQ(bottom, Flipped(top, h, ds)) << "height " << h;
  }
}

TEST(Rgb32ToUyvyFastPath, AFaultInTheFlipIsReportedAndLeavesTheRowsUnflipped) {
  test::ScopedFeatures baseline(test::kMaskSse41);
  std::vector<std::string> messages;
  zeltSetErrorLog([](void* u, uint32_t flags, const char* m) {
    EXPECT_EQ(flags, 0xC0000000u);
    static_cast<std::vector<std::string>*>(u)->push_back(m);
  }, &messages);
  const uint32_t w = 4, h = 4, ds = 8;
  std::vector<uint8_t> src = test::RandomBytes(w * 4 * h, 1);
  std::vector<uint8_t> top(ds * h), faulted(ds * h);
  cycbcr_RGB32_to_uyvy(top.data(), src.data(), w, h, ds, w * 4, 5, 0);
  zelt::testing::ArmFault("cycbcr_RGB32_to_uyvy");
  EXPECT_EQ(cycbcr_RGB32_to_uyvy(faulted.data(), src.data(), w, h, ds, w * 4, 5, 0x8000), w * ds);
  zelt::testing::DisarmFault();
  zeltSetErrorLog(nullptr, nullptr);
  EXPECT_EQ(faulted, top);
  EXPECT_EQ(messages, std::vector<std::string>{"ERROR(gen): Exception cycbcr_RGB32_to_uyvy\n"});
}

// With the 256-bit level the kernel's variant does the frame: no fast path, no
// source rewrite, the kernel's byte count.
TEST(Rgb32ToUyvyFastPath, TheWidePathReplacesItWholly) {
  if (!test::HostHasAvx2()) GTEST_SKIP() << "no AVX2";
  test::ScopedFeatures wide(test::kMaskAvx2);
  const uint32_t w = 32, h = 2, ds = 2 * w;
  const std::vector<uint8_t> original = test::RandomBytes(w * 4 * h, 4);
  std::vector<uint8_t> src = original, dst(ds * h);
  EXPECT_EQ(cycbcr_RGB32_to_uyvy(dst.data(), src.data(), w, h, ds, w * 4, 0, 0x8002), 2 * w * h);
  EXPECT_EQ(src, original);
}

// The 14-bit rule of the 256-bit variant, written out per pixel.
int16_t Q14(int32_t w) { return static_cast<int16_t>(std::lround(w * 16384.0 / 1e6)); }
int Fixed14(int32_t wr, int32_t wg, int32_t wb, int r, int g, int b, int add, bool round) {
  int32_t v = (Q14(wr) * r + Q14(wg) * g + Q14(wb) * b + (round ? 8192 : 0)) >> 14;
  v = std::min(32767, std::max(-32768, v)) + add;
  return std::min(255, std::max(0, v));
}

struct Weights {
  int32_t off, y[3], cb[3], cr[3];  // R, G, B
};
const Weights kWeights[] = {
    {16, {257000, 504000, 98000}, {-148000, -291000, 439000}, {439000, -368000, -71000}},     // 0
    {16, {182068, 612427, 61829}, {-100342, -337585, 437927}, {437927, -397766, -40161}},     // 4
    {0, {259000, 738000, 580000}, {-308000, -878000, 1186000}, {537000, -498000, -39000}},    // 9
};
const uint32_t kWeightIds[] = {0, 4, 9};

// Blocks of 16 pixels follow the 14-bit rule exactly; the rest of a row is the
// portable kernel's (checked against it byte for byte).
TEST(RgbToYcbcrWide, BlocksFollowTheFourteenBitRuleAndTailsThePortableOne) {
  if (!test::HostHasAvx2()) GTEST_SKIP() << "no AVX2";
  for (size_t k = 0; k < std::size(kWeights); ++k) {
    const Weights& m = kWeights[k];
    for (uint32_t w : {16u, 33u, 47u, 64u, 101u}) {
      for (uint32_t order : {0u, 1u, 2u, 3u}) {
        const uint32_t h = 2, ss = w * 4;
        const std::vector<uint8_t> src = test::RandomBytes(ss * h, w * 7 + order);
        std::vector<uint8_t> wide(2 * w * h), portable(2 * w * h), yuy2(2 * w * h);
        {
          test::ScopedFeatures f(test::kMaskAvx2);
          cycbcr_RGB32_to_p422(wide.data(), src.data(), w, h, w, ss, kWeightIds[k], order);
          cycbcr_RGB32_to_yuy2(yuy2.data(), src.data(), w, h, 2 * w, ss, kWeightIds[k], order);
        }
        {
          test::ScopedFeatures f(test::kMaskSse41);
          cycbcr_RGB32_to_p422(portable.data(), src.data(), w, h, w, ss, kWeightIds[k], order);
        }
        const char* layout[] = {"BGRA", "ABGR", "RGBA", "ARGB"};
        const uint32_t blockPixels = w / 16 * 16;
        for (uint32_t r = 0; r < h; ++r) {
          for (uint32_t x = 0; x + 1 < w; x += 2) {
            const uint8_t* p = &src[r * ss + 4 * x];
            auto ch = [&](const uint8_t* px, char c) { return int(px[std::strchr(layout[order], c) - layout[order]]); };
            const int r0 = ch(p, 'R'), g0 = ch(p, 'G'), b0 = ch(p, 'B');
            const int r1 = ch(p + 4, 'R'), g1 = ch(p + 4, 'G'), b1 = ch(p + 4, 'B');
            const size_t yAt = r * w + x, cAt = r * (w / 2) + x / 2;
            const uint8_t* cbPlane = wide.data() + w * h;
            const uint8_t* crPlane = cbPlane + w * h / 2;
            if (x < blockPixels) {
              const int y0 = Fixed14(m.y[0], m.y[1], m.y[2], r0, g0, b0, m.off, true);
              const int y1 = Fixed14(m.y[0], m.y[1], m.y[2], r1, g1, b1, m.off, false);
              const int cb = Fixed14(m.cb[0], m.cb[1], m.cb[2], r0, g0, b0, 128, true);
              const int cr = Fixed14(m.cr[0], m.cr[1], m.cr[2], r0, g0, b0, 128, true);
              ASSERT_EQ(wide[yAt], y0) << "id " << kWeightIds[k] << " w " << w << " x " << x;
              ASSERT_EQ(wide[yAt + 1], y1) << "id " << kWeightIds[k] << " w " << w << " x " << x;
              ASSERT_EQ(cbPlane[cAt], cb);
              ASSERT_EQ(crPlane[cAt], cr);
              const uint8_t* g = &yuy2[r * 2 * w + 2 * x];
              ASSERT_EQ(g[0], y0);
              ASSERT_EQ(g[1], cb);
              ASSERT_EQ(g[2], Fixed14(m.y[0], m.y[1], m.y[2], r1, g1, b1, m.off, true));
              ASSERT_EQ(g[3], cr);
            } else {
              ASSERT_EQ(wide[yAt], portable[yAt]);
              ASSERT_EQ(wide[yAt + 1], portable[yAt + 1]);
              ASSERT_EQ(cbPlane[cAt], portable[w * h + cAt]);
              ASSERT_EQ(crPlane[cAt], portable[w * h + w * h / 2 + cAt]);
            }
          }
        }
      }
    }
  }
}

// The 256-bit variant stays within one code value of the portable rule, over a
// lattice of the RGB cube (both ends included) and every matrix id.
TEST(RgbToYcbcrWide, NeverMoreThanOneCodeValueFromThePortableRule) {
  if (!test::HostHasAvx2()) GTEST_SKIP() << "no AVX2";
  std::vector<uint8_t> src;
  for (int r = 0; r <= 255; r += 15)
    for (int g = 0; g <= 255; g += 5)
      for (int b = 0; b <= 255; b += 3) src.insert(src.end(), {uint8_t(b), uint8_t(g), uint8_t(r), 0});
  // Every pixel also as the first of a pair: shift by one pixel on the second row.
  const uint32_t w = static_cast<uint32_t>(src.size() / 4) - 1, h = 2, ss = w * 4 + 4;
  for (uint32_t id = 0; id < 11; ++id) {
    std::vector<uint8_t> wide(2 * w * h + 8), portable(2 * w * h + 8);
    {
      test::ScopedFeatures f(test::kMaskAvx2);
      cycbcr_RGB32_to_uyvy(wide.data(), src.data(), w, 1, 2 * w, ss, id, 0);
      cycbcr_RGB32_to_uyvy(wide.data() + 2 * w, src.data() + 4, w, 1, 2 * w, ss, id, 0);
    }
    {
      test::ScopedFeatures f(test::kMaskSse41);
      // matrix 0 and 5 would take the BGR path here: go through YUY2 instead and
      // reorder, so the portable kernel is what is compared.
      std::vector<uint8_t> yuy2(2 * w * h + 8);
      cycbcr_RGB32_to_yuy2(yuy2.data(), src.data(), w, 1, 2 * w, ss, id, 0);
      cycbcr_RGB32_to_yuy2(yuy2.data() + 2 * w, src.data() + 4, w, 1, 2 * w, ss, id, 0);
      for (size_t i = 0; i + 3 < yuy2.size(); i += 4) {
        portable[i] = yuy2[i + 1];
        portable[i + 1] = yuy2[i];
        portable[i + 2] = yuy2[i + 3];
        portable[i + 3] = yuy2[i + 2];
      }
    }
    int worst = 0;
    for (size_t i = 0; i < wide.size(); ++i) worst = std::max(worst, std::abs(int(wide[i]) - int(portable[i])));
    EXPECT_LE(worst, 1) << "matrix " << id;
  }
}

// 4:2:0 has no 14-bit variant: every path gives the same bytes, over the RGB
// lattice (each colour once as a pair's first pixel, once as its second), every id.
TEST(RgbToYcbcrWide, FourTwoZeroIsTheSameOnEveryPath) {
  std::vector<uint8_t> lattice;
  for (int r = 0; r <= 255; r += 15)
    for (int g = 0; g <= 255; g += 5)
      for (int b = 0; b <= 255; b += 3) lattice.insert(lattice.end(), {uint8_t(b), uint8_t(g), uint8_t(r), 0});
  const uint32_t w = 1024, pixels = static_cast<uint32_t>(lattice.size() / 4);
  const uint32_t h = (pixels + w - 1) / w / 4 * 4 + 4;
  lattice.resize(size_t{w} * 4 * h + 4, 0);
  for (uint32_t id = 0; id < 11; ++id) {
    for (uint32_t shift : {0u, 4u}) {
      const auto runs = test::RunEveryPath([&] {
        std::vector<uint8_t> dst(size_t{w} * h * 3 / 2);
        cycbcr_RGB32_to_i420(dst.data(), lattice.data() + shift, w, h, w, w * 4, id, 2);
        return dst;
      });
      for (const auto& run : runs) EXPECT_EQ(run.bytes, runs[0].bytes) << run.path << " id " << id;
    }
  }
}

}  // namespace
}  // namespace zelt
