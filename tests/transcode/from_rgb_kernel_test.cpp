// RGB to YCbCr converters against a reference written from the layout and rounding
// rules, for every export, channel order, pixel size and row order, on every path.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/buffers.h"
#include "support/paths.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_from_rgb.h"

namespace zelt {
namespace {

struct Set {
  int64_t off, yR, yG, yB, cbR, cbG, cbB, crR, crG, crB;
};
// Ids 0, 4 and 8 of the encode table, enough to tell the converters' plumbing
// apart; the table itself is checked against the standards elsewhere.
const Set kSets[] = {
    {16, 257000, 504000, 98000, -148000, -291000, 439000, 439000, -368000, -71000},
    {16, 182068, 612427, 61829, -100342, -337585, 437927, 437927, -397766, -40161},
    {16, 222000, 631000, 496000, -270000, -768000, 1030000, 469000, -436000, -34000},
};
const uint32_t kSetIds[] = {0, 4, 8};

int64_t FloorDiv(int64_t a, int64_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }
int Clamp8(int64_t v) { return static_cast<int>(v < 0 ? 0 : (v > 255 ? 255 : v)); }

// The rounding rules, phrased as biased floor divisions.
int LumaRef(const Set& m, int r, int g, int b, bool truncate) {
  const int64_t s = m.yR * r + m.yG * g + m.yB * b;
  return Clamp8(FloorDiv(s + (truncate ? 0 : 499999), 1000000) + m.off);
}
int ChromaRef(int64_t s, int64_t upBias, int64_t downBias) {
  const int64_t q = s >= 0 ? FloorDiv(s + upBias, 1000000) : -FloorDiv(-s + downBias, 1000000);
  return Clamp8(q + 128);
}
int CbRef(const Set& m, int r, int g, int b) { return ChromaRef(m.cbR * r + m.cbG * g + m.cbB * b, 549999, 749999); }
int CrRef(const Set& m, int r, int g, int b) { return ChromaRef(m.crR * r + m.crG * g + m.crB * b, 499999, 499999); }

// Channel letters per order, one character per byte (24/32 bits) or sample (48/64).
const char* OrderLayout(uint32_t order, uint32_t bits) {
  static const char* k24[] = {"BGR", "BGR", "RGB", "RGB"};
  static const char* k32[] = {"BGRA", "ABGR", "RGBA", "ARGB"};
  if (order > 3) order = 0;
  return bits == 24 ? k24[order] : k32[order];
}

struct Rgb {
  int r, g, b;
};
Rgb ReadPixel(const uint8_t* row, uint32_t x, uint32_t bits, uint32_t order) {
  const char* l = OrderLayout(order, bits);
  const uint32_t bytes = bits / 8, sample = bits > 32 ? 2 : 1;
  auto at = [&](char c) {
    const size_t i = std::strchr(l, c) - l;
    return row[size_t{x} * bytes + i * sample + (sample - 1)];  // high byte of 16-bit samples
  };
  return {at('R'), at('G'), at('B')};
}

enum class Out { Uyvy, Yuy2, Yvyu, Cyuv, I420, Yv12, P422 };

// Expected destination, starting from its previous contents.
std::vector<uint8_t> Reference(Out out, const std::vector<uint8_t>& src, std::vector<uint8_t> dst, uint32_t w,
                               uint32_t h, uint32_t ds, uint32_t ss, const Set& m, uint32_t flags, uint32_t bits) {
  const uint32_t order = flags & 0x7FFF;
  const bool up = (flags & 0x8000) != 0;
  const size_t plane = size_t{h} * ds, cs = ds / 2;
  for (uint32_t r = 0; r < h; ++r) {
    const uint8_t* row = src.data() + size_t{up ? h - 1 - r : r} * ss;
    for (uint32_t x = 0; x + 1 < w; x += 2) {
      const Rgb a = ReadPixel(row, x, bits, order), b = ReadPixel(row, x + 1, bits, order);
      const int y0 = LumaRef(m, a.r, a.g, a.b, false), cb = CbRef(m, a.r, a.g, a.b), cr = CrRef(m, a.r, a.g, a.b);
      const bool planar = out == Out::I420 || out == Out::Yv12 || out == Out::P422;
      const int y1 = LumaRef(m, b.r, b.g, b.b, planar);
      if (!planar) {
        uint8_t* g = dst.data() + size_t{r} * ds + size_t{x} * 2;
        const uint8_t uyvy[4] = {uint8_t(cb), uint8_t(y0), uint8_t(cr), uint8_t(y1)};
        const uint8_t yuy2[4] = {uint8_t(y0), uint8_t(cb), uint8_t(y1), uint8_t(cr)};
        const uint8_t yvyu[4] = {uint8_t(y0), uint8_t(cr), uint8_t(y1), uint8_t(cb)};
        std::memcpy(g, out == Out::Yuy2 ? yuy2 : out == Out::Yvyu ? yvyu : uyvy, 4);
        continue;
      }
      dst[size_t{r} * ds + x] = uint8_t(y0);
      dst[size_t{r} * ds + x + 1] = uint8_t(y1);
      size_t crow;
      if (out == Out::P422) {
        crow = r;
      } else if (r % 4 == 0 || r % 4 == 3) {
        crow = r / 2;
      } else {
        continue;
      }
      const size_t cbPlane = out == Out::Yv12 ? plane + plane / 4 : plane;
      const size_t crPlane = out == Out::P422 ? plane + plane / 2 : out == Out::Yv12 ? plane : plane + plane / 4;
      dst[cbPlane + crow * cs + x / 2] = uint8_t(cb);
      dst[crPlane + crow * cs + x / 2] = uint8_t(cr);
    }
  }
  if (out == Out::Cyuv) {  // UYVY, then the whole frame turned upside down
    std::vector<uint8_t> flipped = dst;
    for (uint32_t r = 0; r < h; ++r)
      std::memcpy(flipped.data() + size_t{r} * ds, dst.data() + size_t{h - 1 - r} * ds, ds);
    dst = flipped;
  }
  return dst;
}

using Fn = uint32_t (*)(uint8_t*, uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t);
template <auto F>
uint32_t Call(uint8_t* d, uint8_t* s, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t m, uint32_t f) {
  return F(d, s, w, h, ds, ss, m, f);
}
template <uint32_t kBits>
uint32_t Call64(uint8_t* d, uint8_t* s, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t m, uint32_t f) {
  return cycbcr_RGB64_to_uyvy(d, s, w, h, ds, ss, m, f, kBits);
}

struct Export {
  const char* name;
  Fn fn;
  Out out;
  uint32_t bits;
  bool wide;  // has the 14-bit 256-bit variant
};
const Export kExports[] = {
    {"RGB24_to_uyvy", Call<cycbcr_RGB24_to_uyvy>, Out::Uyvy, 24, false},
    {"RGB32_to_uyvy", Call<cycbcr_RGB32_to_uyvy>, Out::Uyvy, 32, true},
    {"RGB64_to_uyvy/48", Call64<48>, Out::Uyvy, 48, false},
    {"RGB64_to_uyvy/64", Call64<64>, Out::Uyvy, 64, false},
    {"RGB24_to_cyuv", Call<cycbcr_RGB24_to_cyuv>, Out::Cyuv, 24, false},
    {"RGB32_to_cyuv", Call<cycbcr_RGB32_to_cyuv>, Out::Cyuv, 32, true},
    {"RGB24_to_yuy2", Call<cycbcr_RGB24_to_yuy2>, Out::Yuy2, 24, false},
    {"RGB32_to_yuy2", Call<cycbcr_RGB32_to_yuy2>, Out::Yuy2, 32, true},
    {"RGB24_to_yvyu", Call<cycbcr_RGB24_to_yvyu>, Out::Yvyu, 24, false},
    {"RGB32_to_yvyu", Call<cycbcr_RGB32_to_yvyu>, Out::Yvyu, 32, true},
    {"RGB24_to_i420", Call<cycbcr_RGB24_to_i420>, Out::I420, 24, false},
    {"RGB32_to_i420", Call<cycbcr_RGB32_to_i420>, Out::I420, 32, false},
    {"RGB24_to_yv12", Call<cycbcr_RGB24_to_yv12>, Out::Yv12, 24, false},
    {"RGB32_to_yv12", Call<cycbcr_RGB32_to_yv12>, Out::Yv12, 32, false},
    {"RGB24_to_p422", Call<cycbcr_RGB24_to_p422>, Out::P422, 24, false},
    {"RGB32_to_p422", Call<cycbcr_RGB32_to_p422>, Out::P422, 32, true},
};

size_t DstSize(Out out, uint32_t h, uint32_t ds) {
  const size_t plane = size_t{h} * ds;
  switch (out) {
    case Out::I420:
    case Out::Yv12:
      return plane + 2 * (plane / 4);
    case Out::P422:
      return 2 * plane;
    default:
      return plane;
  }
}

// Every export, every order (4 and 7 read as 0) and both row orders; matrices that
// stay off the BGR fast path of RGB32 to UYVY, which has its own tests. At the
// 256-bit level the 4:2:2-from-32-bit exports may differ by one code value.
TEST(RgbToYcbcr, EveryExportMatchesTheReferenceOnEveryPath) {
  const uint32_t widths[] = {1, 2, 3, 15, 16, 17, 31, 33, 47, 49, 97};
  const uint32_t flagsList[] = {0, 1, 2, 3, 4, 7, 0x8000, 0x8001, 0x8002, 0x8003};
  for (const Export& e : kExports) {
    for (uint32_t w : widths) {
      for (size_t mi = 1; mi < std::size(kSets); ++mi) {
        for (uint32_t flags : flagsList) {
          const uint32_t h = 6 + w % 3;  // 4k+1 rows of 4:2:0 write past the planes, tested apart
          const uint32_t ds = (e.out == Out::I420 || e.out == Out::Yv12 || e.out == Out::P422) ? w + (w & 1) + 2
                                                                                               : 2 * w + 6;
          // 48-bit orders 1 and 3 read a sample past the pixel: leave room.
          const uint32_t ss = w * (e.bits / 8) + 8;
          const std::vector<uint8_t> src = test::RandomBytes(size_t{ss} * h, w * 131 + flags);
          const std::vector<uint8_t> before = test::RandomBytes(DstSize(e.out, h, ds), 7);
          const auto expected = Reference(e.out, src, before, w, h, ds, ss, kSets[mi], flags, e.bits);
          // Bytes the reference writes, told apart from the ones it leaves alone.
          const size_t n = before.size();
          const auto lo = Reference(e.out, src, std::vector<uint8_t>(n, 0), w, h, ds, ss, kSets[mi], flags, e.bits);
          const auto hi = Reference(e.out, src, std::vector<uint8_t>(n, 255), w, h, ds, ss, kSets[mi], flags, e.bits);
          for (const auto& run : test::RunEveryPath([&] {
                 test::GuardedBuffer dst(before.size());
                 std::memcpy(dst.data(), before.data(), before.size());
                 std::vector<uint8_t> s = src;
                 e.fn(dst.data(), s.data(), w, h, ds, ss, kSetIds[mi], flags);
                 EXPECT_TRUE(dst.GuardsIntact()) << e.name;
                 EXPECT_EQ(s, src) << e.name << ": source changed";
                 return dst.Bytes();
               })) {
            const int tolerance = (e.wide && run.path != "baseline") ? 1 : 0;
            for (size_t i = 0; i < expected.size(); ++i) {
              const bool written = lo[i] != 0 || hi[i] != 255;
              if (std::abs(int(run.bytes[i]) - int(expected[i])) > (written ? tolerance : 0)) {
                ADD_FAILURE() << e.name << " " << run.path << " w " << w << " matrix " << kSetIds[mi] << " flags "
                              << flags << " byte " << i << ": " << int(run.bytes[i]) << " want " << int(expected[i]);
                break;
              }
            }
          }
        }
      }
    }
  }
}

TEST(RgbToYcbcr, ResultsCountPixelsNotStrides) {
  std::vector<uint8_t> src(64 * 4 * 8), dst(64 * 8 * 4);
  struct Case {
    const char* name;
    Fn fn;
    uint32_t w, h, expected;
  };
  const Case cases[] = {
      {"yuy2", Call<cycbcr_RGB32_to_yuy2>, 10, 6, 120}, {"yuy2 odd", Call<cycbcr_RGB24_to_yuy2>, 9, 3, 54},
      {"p422", Call<cycbcr_RGB32_to_p422>, 10, 6, 120}, {"i420", Call<cycbcr_RGB32_to_i420>, 10, 6, 60 + 2 * 15},
      {"yv12 odd", Call<cycbcr_RGB24_to_yv12>, 7, 3, 21 + 2 * 5},
      {"uyvy kernel", Call<cycbcr_RGB32_to_uyvy>, 10, 6, 120},  // matrix 2: not the BGR fast path
  };
  for (const Case& c : cases) EXPECT_EQ(c.fn(dst.data(), src.data(), c.w, c.h, 64, 64 * 4, 2, 0), c.expected) << c.name;
}

TEST(RgbToYcbcr, UnknownMatrixIdsEncodeAsIdZero) {
  const uint32_t w = 34, h = 6;
  std::vector<uint8_t> src = test::RandomBytes(w * 4 * h, 3), a(w * h * 2), b(w * h * 2);
  for (uint32_t id : {11u, 99u, 0x80000000u}) {
    cycbcr_RGB32_to_p422(a.data(), src.data(), w, h, w, w * 4, 0, 0);
    cycbcr_RGB32_to_p422(b.data(), src.data(), w, h, w, w * 4, id, 0);
    EXPECT_EQ(a, b) << id;
  }
}

// A 4-row 4:2:0 frame takes chroma from rows 0 and 3 only; an 8-row frame from
// rows 0, 3, 4 and 7.
TEST(RgbToYcbcr, FourTwoZeroChromaComesFromTheFirstAndLastRowOfEachFour) {
  const uint32_t w = 2, h = 8;
  std::vector<uint8_t> src(w * 4 * h);
  const uint8_t blues[h] = {255, 10, 20, 200, 40, 50, 60, 0};
  for (uint32_t r = 0; r < h; ++r) src[r * w * 4] = blues[r];  // B of the first pixel, order 0
  std::vector<uint8_t> dst(w * h + 2 * (w * h / 4), 0xEE);
  cycbcr_RGB32_to_i420(dst.data(), src.data(), w, h, w, w * 4, 1, 0);
  const uint8_t* cb = dst.data() + w * h;
  const Set full601{0, 299011, 587006, 113983, -172577, -338837, 511414, 511414, -428253, -83160};
  const uint32_t fromRows[] = {0, 3, 4, 7};
  for (uint32_t k = 0; k < 4; ++k)
    EXPECT_EQ(cb[k], CbRef(full601, 0, 0, blues[fromRows[k]])) << "chroma row " << k;
}

// With 4k+1 rows the last luma row still writes a chroma row (row 4k gives chroma
// row 2k), half a chroma row past the quarter plane: w/4 bytes past the frame.
TEST(RgbToYcbcr, FourTwoZeroWithFourKPlusOneRowsWritesAQuarterRowPastTheFrame) {
  for (uint32_t w : {8u, 16u, 40u}) {
    const uint32_t h = 5;
    const std::vector<uint8_t> src = test::RandomBytes(w * 4 * h, w);
    for (const auto& run : test::RunEveryPath([&] {
           test::GuardedBuffer dst(w * h + 2 * (w * h / 4));
           EXPECT_EQ(cycbcr_RGB32_to_i420(dst.data(), src.data(), w, h, w, w * 4, 0, 0), dst.size());
           EXPECT_FALSE(dst.GuardsIntact(w / 4 - 1)) << w;
           EXPECT_TRUE(dst.GuardsIntact(w / 4)) << w;
           return dst.Bytes();
         })) {
      (void)run;
    }
  }
}

// The three-plane entry writes what P422 and I420 write, at the chroma pitch it is
// given, and leaves the bytes between chroma rows alone.
TEST(RgbToYcbcr, PlanarEntryHonoursItsChromaPitch) {
  const uint32_t w = 37, h = 8, ds = 40;
  const std::vector<uint8_t> src = test::RandomBytes(w * 4 * h, 12);
  for (uint32_t full : {0u, 1u}) {
    for (uint32_t cs : {ds / 2, 29u}) {
      std::vector<uint8_t> packed(2 * ds * h, 0);
      if (full != 0) {
        cycbcr_RGB32_to_p422(packed.data(), src.data(), w, h, ds, w * 4, 6, 0x8001);
      } else {
        cycbcr_RGB32_to_i420(packed.data(), src.data(), w, h, ds, w * 4, 6, 0x8001);
      }
      const size_t chromaRows = full != 0 ? h : h / 2;
      const uint8_t* cbRef = packed.data() + ds * h;
      const uint8_t* crRef = cbRef + (full != 0 ? ds * h / 2 : ds * h / 4);
      std::vector<uint8_t> y(ds * h, 0), cb(cs * chromaRows, 0xEE), cr(cs * chromaRows, 0xEE);
      EXPECT_EQ(cycbcr_RGB32_to_planar(y.data(), cb.data(), cr.data(), src.data(), w, h, ds, cs, full, w * 4, 6, 0x8001),
                full != 0 ? 2 * w * h : w * h + 2 * (w * h / 4));
      EXPECT_TRUE(std::equal(y.begin(), y.end(), packed.begin())) << full << "/" << cs;
      for (size_t r = 0; r < chromaRows; ++r) {
        for (uint32_t x = 0; x < cs; ++x) {
          const uint8_t wantCb = x < w / 2 ? cbRef[r * (ds / 2) + x] : 0xEE;
          const uint8_t wantCr = x < w / 2 ? crRef[r * (ds / 2) + x] : 0xEE;
          ASSERT_EQ(cb[r * cs + x], wantCb) << full << "/" << cs << " row " << r << " x " << x;
          ASSERT_EQ(cr[r * cs + x], wantCr) << full << "/" << cs << " row " << r << " x " << x;
        }
      }
    }
  }
}

// The pixel size of cycbcr_RGB64_to_p422 follows the source stride.
TEST(RgbToYcbcr, SixtyFourToP422ReadsThePixelSizeFromTheStride) {
  const uint32_t w = 6, h = 2, ds = 6;
  struct Case {
    uint32_t ss, bits;
  };
  for (const Case c : {Case{48, 64}, Case{36, 48}, Case{40, 48}, Case{30, 24}}) {
    const std::vector<uint8_t> src = test::RandomBytes(c.ss * h + 16, c.ss);
    const std::vector<uint8_t> before(2 * h * ds, 0);
    const auto want = Reference(Out::P422, src, before, w, h, ds, c.ss, kSets[0], 0, c.bits);
    std::vector<uint8_t> dst = before;
    EXPECT_EQ(cycbcr_RGB64_to_p422(dst.data(), src.data(), w, h, ds, c.ss, 0, 0), 2 * w * h);
    EXPECT_EQ(dst, want) << "stride " << c.ss;
  }
}

TEST(RgbToYcbcr, DispatcherRoutesRgb32ToEveryEightBitLayout) {
  const uint32_t w = 20, h = 4;
  std::vector<uint8_t> src = test::RandomBytes(w * 4 * h, 9);
  struct Case {
    const char* code;
    Fn fn;
    uint32_t ds;
  };
  const Case cases[] = {{"UYVY", Call<cycbcr_RGB32_to_uyvy>, 2 * w}, {"YUY2", Call<cycbcr_RGB32_to_yuy2>, 2 * w},
                        {"YVYU", Call<cycbcr_RGB32_to_yvyu>, 2 * w}, {"cyuv", Call<cycbcr_RGB32_to_cyuv>, 2 * w},
                        {"I420", Call<cycbcr_RGB32_to_i420>, w},     {"YV12", Call<cycbcr_RGB32_to_yv12>, w},
                        {"P422", Call<cycbcr_RGB32_to_p422>, w}};
  for (const Case& c : cases) {
    const uint32_t code = uint32_t(c.code[0]) | uint32_t(c.code[1]) << 8 | uint32_t(c.code[2]) << 16 |
                          uint32_t(c.code[3]) << 24;
    std::vector<uint8_t> a(w * h * 2, 1), b(w * h * 2, 1);
    const uint32_t ra = cycbcr_transcode(a.data(), src.data(), w, h, c.ds, w * 4, 6u, 0x8003u, code, 0u);
    const uint32_t rb = c.fn(b.data(), src.data(), w, h, c.ds, w * 4, 6, 0x8003);
    EXPECT_EQ(ra, rb) << c.code;
    EXPECT_EQ(a, b) << c.code;
  }
  // 012v goes to its own converter.
  std::vector<uint8_t> d(128 * h + 64, 1), e(128 * h + 64, 1);
  EXPECT_EQ(cycbcr_transcode(d.data(), src.data(), w, h, 0u, w * 4, 6u, 0x8003u, 0x76323130u, 0u),
            cycbcr_RGB32_to_012v(e.data(), src.data(), w, h, 0u, w * 4, 6u, 0x8003u));
  EXPECT_EQ(d, e);
}

}  // namespace
}  // namespace zelt
