// 8-bit layouts to 012v and back, against a bit-level model of the 012v group,
// on every code path, with guard zones around every buffer.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "support/buffers.h"
#include "support/paths.h"
#include "support/v012_bits.h"
#include "core/formats.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_v210.h"

namespace zelt {
namespace {

using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

enum class Kind { UYVY, YUY2, YVYU, CYUV, I420, YV12, P422 };

struct Layout8 {
  const char* name;
  Kind kind;
  Fn to012v;
  Fn from012v;
  uint32_t code;
};

const Layout8 kLayouts[] = {
    {"uyvy", Kind::UYVY, cycbcr_uyvy_to_012v, cycbcr_012v_to_uyvy, FourCC('2', 'v', 'u', 'y')},
    {"yuy2", Kind::YUY2, cycbcr_yuy2_to_012v, cycbcr_012v_to_yuy2, FourCC('Y', 'U', 'Y', '2')},
    {"yvyu", Kind::YVYU, cycbcr_yvyu_to_012v, cycbcr_012v_to_yvyu, FourCC('Y', 'V', 'Y', 'U')},
    {"cyuv", Kind::CYUV, cycbcr_cyuv_to_012v, cycbcr_012v_to_cyuv, FourCC('c', 'y', 'u', 'v')},
    {"i420", Kind::I420, cycbcr_i420_to_012v, cycbcr_012v_to_i420, FourCC('I', 'Y', 'U', 'V')},
    {"yv12", Kind::YV12, cycbcr_yv12_to_012v, cycbcr_012v_to_yv12, FourCC('Y', 'V', '1', '2')},
    {"p422", Kind::P422, cycbcr_p422_to_012v, cycbcr_012v_to_p422, FourCC('P', '4', '2', '2')},
};

bool Planar(Kind k) { return k == Kind::I420 || k == Kind::YV12 || k == Kind::P422; }

// 128 bytes for every 48 pixels or part of 48.
uint32_t MinPitch(uint32_t w) { return (w + 47) / 48 * 128; }

// Packed byte offsets of Cb, Y0, Cr, Y1 in a 4-byte group.
std::array<int, 4> PackedOrder(Kind k) {
  switch (k) {
    case Kind::YUY2: return {1, 0, 3, 2};
    case Kind::YVYU: return {3, 0, 1, 2};
    default: return {0, 1, 2, 3};
  }
}

// Pixel pair k of picture row r of an 8-bit frame as {Cb, Y0, Cr, Y1}.
std::array<uint32_t, 4> PairOf(Kind kind, const uint8_t* f, uint32_t w, uint32_t h, uint32_t ss, uint32_t r,
                               size_t k) {
  if (!Planar(kind)) {
    const uint32_t row = kind == Kind::CYUV ? h - 1 - r : r;
    const uint8_t* g = f + size_t{row} * ss + 4 * k;
    const auto o = PackedOrder(kind);
    return {g[o[0]], g[o[1]], g[o[2]], g[o[3]]};
  }
  const size_t luma = size_t{w} * h;
  const bool is422 = kind == Kind::P422;
  const size_t second = luma, third = luma + (is422 ? luma / 2 : luma / 4);
  const size_t cbPlane = kind == Kind::YV12 ? third : second, crPlane = kind == Kind::YV12 ? second : third;
  const size_t c = size_t{w / 2} * (is422 ? r : r / 2) + k;
  const uint8_t* y = f + size_t{r} * w + 2 * k;
  return {f[cbPlane + c], y[0], f[crPlane + c], y[1]};
}

size_t SourceBytes(Kind kind, uint32_t w, uint32_t h, uint32_t ss) {
  return (Planar(kind) ? size_t{w} * h * 2 : size_t{ss} * h) + 16;  // room for the last group's over-read
}

struct PackCase {
  uint32_t w, h;
  int dsMode;  // 0: pitch 0, 1: below the minimum, 2: padded
  uint32_t ssPad;
};

uint32_t DstStride(int mode, uint32_t w) {
  switch (mode) {
    case 0: return 0;
    case 1: return w / 6 * 16;
    default: return MinPitch(w) + 64;
  }
}

TEST(V012Pack, EightBitSourcesMatchTheBitModelOnEveryPath) {
  std::vector<PackCase> cases;
  for (uint32_t w : test::InterestingWidths()) {
    cases.push_back({w, 3, 0, 0});
    cases.push_back({w, 2, 1, 6});
    cases.push_back({w, 1, 2, 0});
  }
  cases.push_back({1920, 2, 2, 0});
  cases.push_back({6, 0, 0, 0});
  for (const Layout8& L : kLayouts) {
    for (const PackCase& c : cases) {
      const uint32_t ds = DstStride(c.dsMode, c.w);
      const uint32_t pitch = std::max(ds, MinPitch(c.w));
      const uint32_t ss = 2 * c.w + c.ssPad;
      const std::vector<uint8_t> src = test::RandomBytes(SourceBytes(L.kind, c.w, c.h, ss), c.w * 7 + c.h);
      const std::vector<uint8_t> before = test::RandomBytes(size_t{pitch} * c.h, 5);
      std::vector<uint8_t> want = before;
      for (uint32_t r = 0; r < c.h; ++r) {
        for (uint32_t g = 0; g < (c.w + 5) / 6; ++g) {
          std::array<uint32_t, 12> s{};
          for (uint32_t p = 0; p < 3; ++p) {
            const auto px = PairOf(L.kind, src.data(), c.w, c.h, ss, r, size_t{g} * 3 + p);
            for (int i = 0; i < 4; ++i) s[4 * p + i] = px[i] * 4;
          }
          test::PutV012Group(want.data() + size_t{r} * pitch + 16 * g, s);
        }
      }
      for (const auto& res : test::RunEveryPath([&] {
             test::GuardedBuffer in(src.size()), out(before.size());
             std::copy(src.begin(), src.end(), in.data());
             std::copy(before.begin(), before.end(), out.data());
             EXPECT_EQ(L.to012v(out.data(), in.data(), c.w, c.h, ds, ss), MinPitch(c.w) * c.h) << L.name;
             EXPECT_TRUE(out.GuardsIntact() && in.GuardsIntact()) << L.name << " w=" << c.w;
             return out.Bytes();
           })) {
        EXPECT_EQ(res.bytes, want) << L.name << " [" << res.path << "] w=" << c.w << " h=" << c.h << " ds=" << ds
                                   << ": " << test::FirstDifference(res.bytes, want);
      }
    }
  }
}

// A 012v source of random samples; pair (r, k) sits at row r of the pitch in use,
// or, with a pitch of 0, at pair r*ceil(w/2)+k of one continuous run of groups.
struct V012Source {
  std::vector<uint8_t> bytes;
  uint32_t pitch;  // in use
  uint32_t w;

  V012Source(uint32_t w_, uint32_t h, uint32_t stride, uint32_t seed) : w(w_) {
    pitch = stride == 0 ? 0 : std::max(stride, MinPitch(w));
    const size_t groups = pitch != 0 ? size_t{h} * pitch / 16 : (size_t{h} * ((w + 1) / 2) + 2) / 3;
    bytes.resize(groups * 16);
    std::mt19937 rng(seed);
    for (size_t g = 0; g < groups; ++g) {
      std::array<uint32_t, 12> s;
      for (auto& v : s) v = rng() & 0x3FF;
      test::PutV012Group(bytes.data() + 16 * g, s);
    }
  }

  // {Cb, Y0, Cr, Y1} of pair k in row r, in 8 bits.
  std::array<uint8_t, 4> Pair(uint32_t r, size_t k) const {
    size_t group, pair;
    if (pitch != 0) {
      group = size_t{r} * pitch / 16 + k / 3;
      pair = k % 3;
    } else {
      const size_t n = size_t{r} * ((w + 1) / 2) + k;
      group = n / 3;
      pair = n % 3;
    }
    std::array<uint8_t, 4> out;
    for (size_t i = 0; i < 4; ++i) out[i] = test::TenBitToEight(test::GetV012Sample(bytes.data() + 16 * group, 4 * pair + i));
    return out;
  }
};

// What each 8-bit destination should hold, starting from `dst`.
uint32_t Expect8(Kind kind, const V012Source& s, std::vector<uint8_t>& dst, uint32_t w, uint32_t h, uint32_t ds) {
  if (!Planar(kind)) {
    const auto o = PackedOrder(kind);
    for (uint32_t r = 0; r < h; ++r) {
      uint8_t* row = dst.data() + size_t{kind == Kind::CYUV ? h - 1 - r : r} * ds;
      // Whole pairs; an odd width keeps only the first two bytes of its last group.
      for (uint32_t k = 0; k < (w + 1) / 2; ++k) {
        const auto p = s.Pair(r, k);
        const int bytes = 2 * k + 1 < w ? 4 : 2;
        for (int i = 0; i < 4; ++i) {
          if (o[i] < bytes) row[size_t{k} * 4 + o[i]] = p[i];
        }
      }
    }
    return h * ds;
  }
  const bool is422 = kind == Kind::P422;
  const size_t luma = size_t{h} * ds;
  const size_t second = luma, third = luma + (is422 ? luma / 2 : luma / 4);
  const size_t cb = kind == Kind::YV12 ? third : second, cr = kind == Kind::YV12 ? second : third;
  for (uint32_t r = 0; r < h; ++r) {
    for (uint32_t x = 0; x < w; ++x) dst[size_t{r} * ds + x] = s.Pair(r, x / 2)[1 + 2 * (x & 1)];
    // 4:2:0 keeps one line per field: chroma row k from picture row 2k (k even) or 2k+1 (k odd).
    const bool writes = is422 || ((r % 4 == 0 || r % 4 == 3) && r / 2 < h / 2);
    if (!writes) continue;
    const size_t crow = (is422 ? r : r / 2) * size_t{ds / 2};
    for (uint32_t k = 0; k < w / 2; ++k) {
      dst[cb + crow + k] = s.Pair(r, k)[0];
      dst[cr + crow + k] = s.Pair(r, k)[2];
    }
  }
  return is422 ? h * ds * 2 : h * ds * 3 / 2;
}

TEST(V012Unpack, EveryEightBitDestinationMatchesTheBitModelOnEveryPath) {
  struct Case {
    uint32_t h;
    int ssMode;  // 0: pitch 0 (continuous run), 1: below the minimum, 2: minimum, 3: padded
    uint32_t dsPad;
  };
  const Case cases[] = {{3, 0, 0}, {2, 1, 4}, {1, 2, 0}, {4, 3, 8}, {6, 0, 2}};
  std::vector<uint32_t> widths = test::InterestingWidths();
  widths.push_back(1280);
  for (const Layout8& L : kLayouts) {
    for (uint32_t w : widths) {
      for (const Case& c : cases) {
        const uint32_t ss = c.ssMode == 0 ? 0 : c.ssMode == 1 ? w / 6 * 16 : MinPitch(w) + (c.ssMode == 3 ? 48 : 0);
        const V012Source src(w, c.h, ss, w * 13 + c.h);
        const uint32_t ds = (Planar(L.kind) ? w : 2 * w) + c.dsPad;
        const size_t frame = Planar(L.kind) ? size_t{c.h} * ds * 2 : size_t{c.h} * ds;
        const std::vector<uint8_t> before = test::RandomBytes(frame, 3);
        std::vector<uint8_t> want = before;
        const uint32_t result = Expect8(L.kind, src, want, w, c.h, ds);
        for (const auto& res : test::RunEveryPath([&] {
               test::GuardedBuffer in(src.bytes.size()), out(before.size());
               std::copy(src.bytes.begin(), src.bytes.end(), in.data());
               std::copy(before.begin(), before.end(), out.data());
               EXPECT_EQ(L.from012v(out.data(), in.data(), w, c.h, ds, ss), result) << L.name;
               EXPECT_TRUE(out.GuardsIntact() && in.GuardsIntact()) << L.name << " w=" << w;
               return out.Bytes();
             })) {
          EXPECT_EQ(res.bytes, want) << L.name << " [" << res.path << "] w=" << w << " h=" << c.h << " ss=" << ss
                                     << " ds=" << ds << ": " << test::FirstDifference(res.bytes, want);
        }
      }
    }
  }
}

TEST(V012Unpack, TenToEightBitBoundaries) {
  const struct {
    uint32_t ten;
    uint8_t eight;
  } cases[] = {{0, 0}, {1, 0}, {2, 1}, {5, 1}, {6, 2}, {1017, 254}, {1018, 255}, {1020, 255}, {1021, 255},
               {1022, 255}, {1023, 255}};
  for (const auto& c : cases) {
    for (const auto& res : test::RunEveryPath([&] {
           // 48 pixels so that the 256-bit path has whole blocks to do.
           std::vector<uint8_t> src(128);
           for (size_t g = 0; g < 8; ++g) {
             std::array<uint32_t, 12> s;
             s.fill(c.ten);
             test::PutV012Group(src.data() + 16 * g, s);
           }
           std::vector<uint8_t> out(96);
           cycbcr_012v_to_uyvy(out.data(), src.data(), 48, 1, 96, 128);
           return out;
         })) {
      EXPECT_EQ(res.bytes, std::vector<uint8_t>(96, c.eight)) << c.ten << " [" << res.path << "]";
    }
  }
  // And upwards: v becomes v * 4.
  for (uint8_t v : {uint8_t{0}, uint8_t{1}, uint8_t{128}, uint8_t{255}}) {
    std::vector<uint8_t> uyvy(12, v), out(128);
    cycbcr_uyvy_to_012v(out.data(), uyvy.data(), 6, 1, 0, 12);
    for (size_t i = 0; i < 12; ++i) EXPECT_EQ(test::GetV012Sample(out.data(), i), v * 4u) << int{v};
  }
}

TEST(V012Pack, ResultIsTheMinimumPitchWhateverPitchIsWritten) {
  const struct {
    uint32_t w, pitch;
  } cases[] = {{1920, 5120}, {1280, 3456}, {720, 1920}, {1, 128}, {48, 128}, {49, 256}};
  for (const auto& c : cases) {
    const uint32_t ds = c.pitch + 256;
    std::vector<uint8_t> src(size_t{2} * c.w * 2 + 16, 0x40), dst(size_t{ds} * 2, 0xEE);
    EXPECT_EQ(cycbcr_uyvy_to_012v(dst.data(), src.data(), c.w, 2, ds, 2 * c.w), c.pitch * 2) << c.w;
    // The second row starts at the caller's larger pitch.
    EXPECT_EQ(test::GetV012Sample(dst.data() + ds, 1), 0x100u) << c.w;
  }
}

// Every 8-bit layout survives a trip through 012v and back by the dispatcher:
// 8 bits times 4 rounds back to itself, the chroma of 4:2:0 rows lands where it
// came from, and the two cyuv flips cancel.
TEST(V012Pack, DispatcherRoundTripGivesEveryLayoutBack) {
  const uint32_t v210 = FourCC('v', '2', '1', '0');
  for (const Layout8& L : kLayouts) {
    for (auto [w, h] : {std::pair{64u, 4u}, std::pair{1280u, 6u}, std::pair{18u, 8u}}) {
      const size_t frame = Planar(L.kind) ? (L.kind == Kind::P422 ? size_t{w} * h * 2 : size_t{w} * h * 3 / 2)
                                          : size_t{w} * h * 2;
      // 16 bytes more: the last group of a width that is not a multiple of 6 reads on.
      std::vector<uint8_t> src = test::RandomBytes(frame + 16, w + h);
      const uint32_t stride = Planar(L.kind) ? w : 2 * w;
      std::vector<uint8_t> mid(size_t{MinPitch(w)} * h), back(frame, 0);
      // Writers raise a pitch of 0 to the minimum while readers walk it as one run,
      // so the 012v side names its pitch.
      const uint32_t pitch = MinPitch(w);
      EXPECT_EQ(cycbcr_transcode(mid.data(), src.data(), w, h, pitch, stride, 0u, 0u, v210, L.code), pitch * h)
          << L.name;
      EXPECT_NE(cycbcr_transcode(back.data(), mid.data(), w, h, stride, pitch, 0u, 0u, L.code, v210), 0u) << L.name;
      src.resize(frame);
      EXPECT_EQ(back, src) << L.name << " w=" << w << ": " << test::FirstDifference(back, src);
    }
  }
}

}  // namespace
}  // namespace zelt

namespace zelt {
namespace {

// The separate-plane readers: the 16-bit form holds each 10-bit sample as it is,
// the 8-bit form its rounding, laid out as the P422 route lays out its planes.
TEST(V012Unpack, SeparatePlanesHoldTheSamplesAndAgreeWithTheP422Route) {
  for (uint32_t w : {1u, 6u, 13u, 64u, 1280u}) {
    for (uint32_t ss : {0u, MinPitch(w)}) {
      const uint32_t h = 5, ds = (w + 3) / 2 * 2;  // even, so 16-bit chroma rows stay aligned
      const V012Source src(w, h, ss, w);
      std::vector<uint16_t> y16(size_t{h} * ds), c16(size_t{h} * ds);
      uint16_t* cb16 = c16.data();
      uint16_t* cr16 = c16.data() + c16.size() / 2;
      EXPECT_EQ(cycbcr_012v_to_planar422_16(y16.data(), cb16, cr16, src.bytes.data(), w, h, ds * 2, ss), h * ds * 4);
      std::vector<uint8_t> p422(size_t{h} * ds * 2, 0), planes(p422.size(), 0);
      cycbcr_012v_to_p422(p422.data(), src.bytes.data(), w, h, ds, ss);
      cycbcr_012v_to_planar422(planes.data(), planes.data() + size_t{h} * ds, planes.data() + size_t{h} * ds * 3 / 2,
                               src.bytes.data(), w, h, ds, ss);
      EXPECT_EQ(planes, p422) << "w=" << w << " ss=" << ss << ": " << test::FirstDifference(planes, p422);
      // Reconstruct the 10-bit samples from the bit model and compare.
      for (uint32_t r = 0; r < h; ++r) {
        for (uint32_t x = 0; x < w; ++x) {
          ASSERT_EQ(test::TenBitToEight(y16[size_t{r} * ds + x]), src.Pair(r, x / 2)[1 + 2 * (x & 1)])
              << "w=" << w << " r=" << r << " x=" << x;
          ASSERT_LT(y16[size_t{r} * ds + x], 1024) << "w=" << w;
        }
        for (uint32_t k = 0; k < w / 2; ++k) {
          ASSERT_EQ(test::TenBitToEight(cb16[size_t{r} * (ds / 2) + k]), src.Pair(r, k)[0]);
          ASSERT_EQ(test::TenBitToEight(cr16[size_t{r} * (ds / 2) + k]), src.Pair(r, k)[2]);
        }
      }
    }
  }
}

}  // namespace
}  // namespace zelt
