// 10/12-bit planar to 012v and UYVY: the single-threaded kernels on every path
// against a bit-level model, and the eight-band threaded split against them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>

#include "support/buffers.h"
#include "support/paths.h"
#include "support/v012_bits.h"
#include "zelt/ycbcr_v210.h"

namespace zelt {
namespace {

using HbdFn = uint32_t (*)(uint8_t*, const uint16_t*, const uint16_t*, const uint16_t*, uint32_t, uint32_t, uint32_t,
                           uint32_t);

// Sample depth (bits) and chroma arrangement of each source.
enum class Src { P10, P12, P16, P444p10, P444p12, P420p10, P420p16 };

unsigned Bits(Src s) {
  switch (s) {
    case Src::P12:
    case Src::P444p12: return 12;
    case Src::P16:
    case Src::P420p16: return 16;
    default: return 10;
  }
}
bool Full(Src s) { return s == Src::P444p10 || s == Src::P444p12; }
bool Is420(Src s) { return s == Src::P420p10 || s == Src::P420p16; }

struct Conv {
  const char* name;
  HbdFn fn;
  Src src;
  bool uyvy;
  uint32_t threshold;  // widest frame still converted on the calling thread
};

const Conv kConvs[] = {
    {"yuv422p10_to_012v", cycbcr_yuv422p10_to_012v, Src::P10, false, 2048},
    {"yuv422p12_to_012v", cycbcr_yuv422p12_to_012v, Src::P12, false, 1920},
    {"yuv444p12_to_012v", cycbcr_yuv444p12_to_012v, Src::P444p12, false, 2048},
    {"yuv422p10_to_uyvy", cycbcr_yuv422p10_to_uyvy, Src::P10, true, 2048},
    {"yuv422p16_to_012v", cycbcr_yuv422p16_to_012v, Src::P16, false, 2048},
    {"yuv444p10_to_012v", cycbcr_yuv444p10_to_012v, Src::P444p10, false, 2048},
    {"yuv420p10_to_012v", cycbcr_yuv420p10_to_012v, Src::P420p10, false, 2048},
    {"yuv420p16_to_012v", cycbcr_yuv420p16_to_012v, Src::P420p16, false, 2048},
    {"yuv420p10_to_uyvy", cycbcr_yuv420p10_to_uyvy, Src::P420p10, true, 2048},
    {"yuv420p16_to_uyvy", cycbcr_yuv420p16_to_uyvy, Src::P420p16, true, 2048},
};

uint32_t MinPitch(uint32_t w) { return (w + 47) / 48 * 128; }

// Three planes of random 16-bit samples (every bit set somewhere, so masking and
// shifting are exercised), with room after each plane for the reads past the row.
// The luma stride is a multiple of 4 bytes so that 4:2:2 chroma rows, half as far
// apart, stay 16-bit aligned; `ssPad` must be a multiple of 4 too.
struct Planes {
  uint32_t w, h, ss;
  bool full;    // 4:4:4 chroma
  bool is420;   // picture row r reads chroma row r/2
  std::vector<uint16_t> y, cb, cr;

  Planes(Src s, uint32_t w_, uint32_t h_, uint32_t ssPad, uint32_t seed)
      : w(w_), h(h_), ss((2 * w_ + 3) / 4 * 4 + ssPad), full(Full(s)), is420(Is420(s)) {
    std::mt19937 rng(seed);
    const size_t lumaSamples = size_t{h} * ss / 2 + 64;
    const size_t chromaSamples = (full ? size_t{h} * ss / 2 : size_t{h} * ss / 4) + 64;
    auto fill = [&](std::vector<uint16_t>& v, size_t n) {
      v.resize(n);
      for (auto& x : v) x = static_cast<uint16_t>(rng());
    };
    fill(y, lumaSamples);
    fill(cb, chromaSamples);
    fill(cr, chromaSamples);
  }
  // Row r of a plane; chroma rows of 4:2:2 are half as far apart.
  uint16_t Y(uint32_t r, size_t i) const { return y[size_t{r} * ss / 2 + i]; }
  uint16_t C(const std::vector<uint16_t>& p, uint32_t r, size_t k) const {
    if (full) return p[size_t{r} * ss / 2 + 2 * k];
    return p[size_t{is420 ? r / 2 : r} * ss / 4 + k];
  }
};

// Samples deeper than 10 bits lose their low bits; bits above the depth are
// dropped by the 10-bit mask.
uint32_t Fit10(Src s, uint16_t v) { return (v >> (Bits(s) - 10)) & 0x3FFu; }
uint8_t Fit8(Src s, uint16_t v) { return static_cast<uint8_t>(v >> (Bits(s) - 8)); }

// Expected destination: 012v groups (with the two overrun words where the row has
// room for them) or UYVY rows of ceil(w/2) groups.
uint32_t Expect(const Conv& c, const Planes& p, std::vector<uint8_t>& dst, uint32_t ds) {
  if (c.uyvy) {
    for (uint32_t r = 0; r < p.h; ++r) {
      for (uint32_t k = 0; k < (p.w + 1) / 2; ++k) {
        uint8_t* g = dst.data() + size_t{r} * ds + 4 * k;
        g[0] = Fit8(c.src, p.C(p.cb, r, k));
        g[1] = Fit8(c.src, p.Y(r, 2 * k));
        g[2] = Fit8(c.src, p.C(p.cr, r, k));
        g[3] = Fit8(c.src, p.Y(r, 2 * k + 1));
      }
    }
    return p.h * ds;
  }
  const uint32_t pitch = std::max(ds, MinPitch(p.w));
  const uint32_t groups = (p.w + 5) / 6;
  for (uint32_t r = 0; r < p.h; ++r) {
    auto group = [&](uint32_t g) {
      std::array<uint32_t, 12> s;
      for (uint32_t q = 0; q < 3; ++q) {
        const size_t k = size_t{g} * 3 + q;
        s[4 * q] = Fit10(c.src, p.C(p.cb, r, k));
        s[4 * q + 1] = Fit10(c.src, p.Y(r, 2 * k));
        s[4 * q + 2] = Fit10(c.src, p.C(p.cr, r, k));
        s[4 * q + 3] = Fit10(c.src, p.Y(r, 2 * k + 1));
      }
      return s;
    };
    uint8_t* row = dst.data() + size_t{r} * pitch;
    for (uint32_t g = 0; g < groups; ++g) test::PutV012Group(row + 16 * g, group(g));
    if (p.w % 6 != 0 && groups * 16 + 8 <= pitch) {
      uint8_t next[16];
      test::PutV012Group(next, group(groups));
      std::memcpy(row + 16 * groups, next, 8);
    }
  }
  return p.h * pitch;
}

std::vector<uint8_t> Convert(const Conv& c, const Planes& p, const std::vector<uint8_t>& before, uint32_t ds,
                         uint32_t* result) {
  test::GuardedBuffer out(before.size());
  std::copy(before.begin(), before.end(), out.data());
  *result = c.fn(out.data(), p.y.data(), p.cb.data(), p.cr.data(), p.w, p.h, ds, p.ss);
  EXPECT_TRUE(out.GuardsIntact()) << c.name << " w=" << p.w << " h=" << p.h;
  return out.Bytes();
}

size_t FrameBytes(const Conv& c, uint32_t w, uint32_t h, uint32_t ds) {
  return size_t{h} * (c.uyvy ? ds : std::max(ds, MinPitch(w)));
}

TEST(HbdKernels, MatchTheBitModelOnEveryPath) {
  std::vector<uint32_t> widths = test::InterestingWidths();
  widths.insert(widths.end(), {1280, 1920});
  for (const Conv& c : kConvs) {
    for (uint32_t w : widths) {
      for (auto [h, ssPad, dsPad] : {std::array<uint32_t, 3>{3, 0, 0}, {2, 8, 32}, {1, 0, 64}}) {
        const Planes p(c.src, w, h, ssPad, w * 3 + h);
        const uint32_t ds = c.uyvy ? (w + 1) / 2 * 4 + dsPad : (dsPad == 0 ? 0 : MinPitch(w) + dsPad);
        const std::vector<uint8_t> before = test::RandomBytes(FrameBytes(c, w, h, ds), 1);
        std::vector<uint8_t> want = before;
        const uint32_t result = Expect(c, p, want, ds);
        for (const auto& res : test::RunEveryPath([&] {
               uint32_t n = 0;
               auto bytes = Convert(c, p, before, ds, &n);
               EXPECT_EQ(n, result) << c.name << " w=" << w;
               return bytes;
             })) {
          EXPECT_EQ(res.bytes, want) << c.name << " [" << res.path << "] w=" << w << " h=" << h << " ds=" << ds
                                     << ": " << test::FirstDifference(res.bytes, want);
        }
      }
    }
  }
}

TEST(HbdKernels, SampleDepthRules) {
  const struct {
    Src src;
    uint16_t in;
    uint32_t ten;
  } cases[] = {{Src::P10, 0x7FF, 0x3FF}, {Src::P10, 0x400, 0}, {Src::P10, 0x3FF, 0x3FF},
               {Src::P12, 4095, 1023},   {Src::P12, 4094, 1023}, {Src::P12, 4, 1},
               {Src::P12, 3, 0},         {Src::P444p12, 4095, 1023}, {Src::P16, 65535, 1023},
               {Src::P16, 64, 1},        {Src::P16, 63, 0}};
  for (const auto& c : cases) {
    const HbdFn fn = c.src == Src::P10   ? cycbcr_yuv422p10_to_012v
                     : c.src == Src::P12 ? cycbcr_yuv422p12_to_012v
                     : c.src == Src::P16 ? cycbcr_yuv422p16_to_012v
                                         : cycbcr_yuv444p12_to_012v;
    const std::vector<uint16_t> plane(64, c.in);
    std::vector<uint8_t> out(128, 0xEE);
    fn(out.data(), plane.data(), plane.data(), plane.data(), 6, 1, 128, 12);
    for (size_t i = 0; i < 12; ++i) EXPECT_EQ(test::GetV012Sample(out.data(), i), c.ten) << c.in << " sample " << i;
  }
}

// Width 1280 is not a multiple of 6: 214 groups, then words 0 and 1 of a 215th,
// and nothing more of the 3456-byte row.
TEST(HbdKernels, PartialLastGroupSpillsTwoWordsIntoThePadding) {
  for (const auto& res : test::RunEveryPath([] {
         const std::vector<uint16_t> plane(1400, 0x155);
         std::vector<uint8_t> out(3456, 0xEE);
         EXPECT_EQ(cycbcr_yuv422p10_to_012v(out.data(), plane.data(), plane.data(), plane.data(), 1280, 1, 0, 2560),
                   3456u);
         return out;
       })) {
    const auto& b = res.bytes;
    EXPECT_NE(b[214 * 16 + 7], 0xEE) << res.path;
    EXPECT_TRUE(std::all_of(b.begin() + 214 * 16 + 8, b.end(), [](uint8_t v) { return v == 0xEE; })) << res.path;
    EXPECT_EQ(test::GetV012Sample(b.data() + 214 * 16, 5), 0x155u) << res.path;
  }
}

// Below the 256-bit level, frames wider than the threshold go to eight worker
// threads. The bands must add up to the single-threaded bytes: short bands, the
// remainder band, heights below 8 (seven empty bands).
TEST(HbdThreaded, BandsGiveTheSingleThreadedBytes) {
  test::ScopedFeatures baseline(test::kMaskSse41);
  for (const Conv& c : kConvs) {
    for (uint32_t w : {c.threshold, c.threshold + 1, c.threshold + 7}) {
      for (uint32_t h : {1u, 7u, 10u, 17u}) {  // 10: bands of one row, 4:2:0 bands on odd rows
        const Planes p(c.src, w, h, 4, w + h);
        const uint32_t ds = c.uyvy ? (w + 1) / 2 * 4 : MinPitch(w) + 128;
        const std::vector<uint8_t> before = test::RandomBytes(FrameBytes(c, w, h, ds), 2);
        std::vector<uint8_t> want = before;
        Expect(c, p, want, ds);
        uint32_t n = 0;
        const auto got = Convert(c, p, before, ds, &n);
        EXPECT_EQ(n, h * ds) << c.name << " w=" << w << " h=" << h;
        EXPECT_EQ(got, want) << c.name << " w=" << w << " h=" << h << ": " << test::FirstDifference(got, want);
      }
    }
  }
}

// The threshold shows in the result: the threaded split reports height *
// dst_stride, the single-threaded kernel height * the pitch in use. With five
// rows the whole frame is the last band, so a zero dst_stride is still safe.
TEST(HbdThreaded, WidthThresholdsAndResults) {
  const struct {
    HbdFn fn;
    uint32_t w;
    bool threaded;
  } cases[] = {{cycbcr_yuv422p10_to_012v, 2048, false}, {cycbcr_yuv422p10_to_012v, 2049, true},
               {cycbcr_yuv422p12_to_012v, 1920, false}, {cycbcr_yuv422p12_to_012v, 1921, true},
               {cycbcr_yuv444p12_to_012v, 2048, false}, {cycbcr_yuv444p12_to_012v, 2049, true}};
  const std::vector<uint16_t> plane(size_t{4200} * 5, 0x200);
  for (const auto& c : cases) {
    std::vector<uint8_t> out(size_t{MinPitch(c.w)} * 5);
    {
      test::ScopedFeatures baseline(test::kMaskSse41);
      EXPECT_EQ(c.fn(out.data(), plane.data(), plane.data(), plane.data(), c.w, 5, 0, 2 * 4200),
                c.threaded ? 0u : 5 * MinPitch(c.w))
          << c.w;
    }
    if (test::HostHasAvx2()) {
      test::ScopedFeatures avx2(test::kMaskAvx2);  // one 256-bit pass, never threaded
      EXPECT_EQ(c.fn(out.data(), plane.data(), plane.data(), plane.data(), c.w, 5, 0, 2 * 4200), 5 * MinPitch(c.w))
          << c.w;
    }
  }
  // The UYVY converter reports height * dst_stride either way.
  std::vector<uint8_t> uyvy(size_t{4200} * 2);
  EXPECT_EQ(cycbcr_yuv422p10_to_uyvy(uyvy.data(), plane.data(), plane.data(), plane.data(), 2049, 2, 4200, 8400),
            8400u);
}

}  // namespace
}  // namespace zelt

namespace zelt {
namespace {

// Any depth: 10, 12 and 16 bits are the named converters; other depths shift by
// bits - 10.
TEST(HbdKernels, AnyDepthPlanarTo012v) {
  const uint32_t w = 13, h = 3;
  const Planes p(Src::P16, w, h, 0, 77);
  for (uint32_t bits : {10u, 11u, 12u, 14u, 15u, 16u}) {
    std::vector<uint8_t> out(size_t{MinPitch(w)} * h, 0xEE);
    EXPECT_EQ(cycbcr_planar_16_to_012v(out.data(), p.y.data(), p.cb.data(), p.cr.data(), w, h, 0, p.ss, bits),
              MinPitch(w) * h);
    for (uint32_t r = 0; r < h; ++r) {
      for (uint32_t g = 0; g < 3; ++g) {
        for (uint32_t i = 0; i < 12; ++i) {
          const size_t k = size_t{g} * 3 + i / 4;
          const uint16_t in = i % 4 == 0 ? p.C(p.cb, r, k) : i % 4 == 2 ? p.C(p.cr, r, k) : p.Y(r, 2 * k + i % 4 / 2);
          ASSERT_EQ(test::GetV012Sample(out.data() + size_t{r} * MinPitch(w) + 16 * g, i), (in >> (bits - 10)) & 0x3FFu)
              << bits << " bits, row " << r << " group " << g << " sample " << i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace zelt

#if defined(__linux__)
#include <dirent.h>

#include <atomic>
#include <fstream>
#include <set>
#include <string>
#include <thread>

namespace zelt {
namespace {

// Names of this process's threads right now.
std::set<std::string> ThreadNames() {
  std::set<std::string> names;
  if (DIR* dir = opendir("/proc/self/task")) {
    while (dirent* e = readdir(dir)) {
      if (e->d_name[0] == '.') continue;
      std::ifstream comm(std::string("/proc/self/task/") + e->d_name + "/comm");
      std::string name;
      if (std::getline(comm, name)) names.insert(name);
    }
    closedir(dir);
  }
  return names;
}

// The workers carry the converter's thread name while they run.
TEST(HbdThreaded, WorkersAreNamedAfterTheirConverter) {
  test::ScopedFeatures baseline(test::kMaskSse41);
  const struct {
    HbdFn fn;
    const char* name;
  } cases[] = {{cycbcr_yuv422p10_to_012v, "ycbcr422p10"},
               {cycbcr_yuv422p10_to_uyvy, "ycbcr422p10"},
               {cycbcr_yuv422p12_to_012v, "ycbcr422p12"},
               {cycbcr_yuv444p12_to_012v, "yuv444p12"}};
  const uint32_t w = 4096, h = 256, ss = 2 * w * 2;  // room for 4:4:4 chroma
  const std::vector<uint16_t> plane(size_t{ss} / 2 * h, 0x155);
  std::vector<uint8_t> out(size_t{MinPitch(w)} * h);
  for (const auto& c : cases) {
    std::atomic<bool> running{true}, found{false};
    std::thread watcher([&] {
      while (running.load() && !found.load()) {
        if (ThreadNames().count(c.name) != 0) found = true;
      }
    });
    // Several calls: the workers are short-lived and the watcher has to catch one.
    for (int i = 0; i < 20 && !found.load(); ++i) {
      c.fn(out.data(), plane.data(), plane.data(), plane.data(), w, h, MinPitch(w), ss);
    }
    running = false;
    watcher.join();
    EXPECT_TRUE(found.load()) << c.name;
  }
}

}  // namespace
}  // namespace zelt
#endif
