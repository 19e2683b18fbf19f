// The general YCbCr to RGB converter and its format-named front ends: channel
// orders and pixel sizes, frame walking (odd widths, bottom-up, 4:2:0 rows),
// results, and the 16-bit and planar-output variants.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "support/buffers.h"
#include "support/paths.h"
#include "support/rgb_reference.h"
#include "core/matrices.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_to_rgb.h"

namespace zelt {
namespace {

using test::RefRgb;

uint32_t Even(uint32_t w) { return (w + 1) & ~1u; }

TEST(ToRgbInt, WorkedValuesThroughTheConverter) {
  // UYVY pairs: video white, video black, full-range white; id 99 acts as id 0.
  const struct {
    uint32_t matrix;
    uint8_t y;
    uint8_t expected;
  } cases[] = {{0, 235, 254}, {0, 16, 0}, {0, 255, 255}, {0, 0, 0}, {1, 255, 255}, {99, 235, 254}, {7, 200, 200}};
  for (const auto& c : cases) {
    const uint8_t src[4] = {128, c.y, 128, c.y};
    uint8_t dst[8] = {};
    EXPECT_EQ(cycbcr_ToRGBInt(dst, src + 1, src, src + 2, 2, 1, 8, 4, c.matrix, 0, 1, 0, 32, 2), 8u);
    const uint8_t e = c.expected;
    const uint8_t want[8] = {e, e, e, 255, e, e, e, 255};
    EXPECT_EQ(0, std::memcmp(dst, want, 8)) << "id " << c.matrix << " Y " << int{c.y};
  }
}

TEST(ToRgbInt, ChannelOrdersAndPixelSizes) {
  // One saturated orange pair, full range, so that every channel differs.
  const uint8_t src[4] = {60, 180, 200, 180};  // Cb Y Cr Y
  const RefRgb p = test::RefDecode8(1, 180, 60, 200);
  ASSERT_TRUE(p.r != p.g && p.g != p.b && p.r != p.b);
  const uint8_t R = static_cast<uint8_t>(p.r), G = static_cast<uint8_t>(p.g), B = static_cast<uint8_t>(p.b);
  auto w565 = [](int hi, int g, int lo) { return static_cast<uint16_t>(((hi >> 3) << 11) | ((g >> 2) << 5) | (lo >> 3)); };
  auto w555 = [](int hi, int g, int lo) { return static_cast<uint16_t>(((hi >> 3) << 10) | ((g >> 3) << 5) | (lo >> 3)); };
  auto le = [](uint16_t w) { return std::vector<uint8_t>{static_cast<uint8_t>(w), static_cast<uint8_t>(w >> 8)}; };
  const struct {
    uint32_t bpp, flags;
    std::vector<uint8_t> pixel;
  } cases[] = {
      {32, 0, {B, G, R, 255}},       {32, 1, {255, B, G, R}},        {32, 2, {R, G, B, 255}},
      {32, 3, {255, R, G, B}},       {32, 4, {R, G, B, 255}},        {32, 0x7FFF, {R, G, B, 255}},
      {24, 0, {B, G, R}},            {24, 1, {B, G, R}},             {24, 2, {R, G, B}},
      {24, 3, {R, G, B}},            {24, 9, {R, G, B}},             {16, 0, le(w565(B, G, R))},
      {16, 1, le(w565(B, G, R))},    {16, 2, le(w565(R, G, B))},     {16, 3, le(w565(R, G, B))},
      {15, 0, le(w555(B, G, R))},    {15, 3, le(w555(R, G, B))},     {15, 5, le(w555(R, G, B))},
  };
  for (const auto& c : cases) {
    const size_t n = c.pixel.size();
    std::vector<uint8_t> dst(2 * n + 4, 0xEE);
    EXPECT_EQ(cycbcr_ToRGBInt(dst.data(), src + 1, src, src + 2, 2, 1, 64, 4, 1, c.flags, 1, 0, c.bpp, 2),
              n * 2);
    std::vector<uint8_t> want = c.pixel;
    want.insert(want.end(), c.pixel.begin(), c.pixel.end());
    EXPECT_EQ(std::vector<uint8_t>(dst.begin(), dst.begin() + 2 * n), want) << c.bpp << " bits, flags " << c.flags;
    EXPECT_EQ(dst[2 * n], 0xEE);
  }
}

TEST(ToRgbInt, ResultIgnoresStrideAndUnknownPixelSizesWriteNothing) {
  std::vector<uint8_t> src(64, 128), dst(256, 0xEE);
  const struct {
    uint32_t bpp;
    uint64_t perPixel;
  } cases[] = {{15, 2}, {16, 2}, {24, 3}, {32, 4}, {8, 4}, {0, 4}, {48, 4}};
  for (const auto& c : cases) {
    for (uint32_t ds : {0u, 24u, 70u}) {
      EXPECT_EQ(cycbcr_ToRGBInt(dst.data(), src.data(), src.data(), src.data(), 5, 3, ds, 7, 0, 0, 1, 1, c.bpp, 3),
                c.perPixel * 15)
          << c.bpp;
    }
  }
  std::vector<uint8_t> untouched(256, 0xEE);
  EXPECT_EQ(cycbcr_ToRGBInt(untouched.data(), src.data(), src.data(), src.data(), 4, 2, 16, 4, 0, 0, 1, 1, 8, 2),
            32u);
  EXPECT_EQ(untouched, std::vector<uint8_t>(256, 0xEE));
  EXPECT_EQ(cycbcr_ToRGBInt(untouched.data(), src.data(), src.data(), src.data(), 4, 0, 16, 4, 0, 0, 1, 1, 32, 2),
            0u);
  EXPECT_EQ(untouched, std::vector<uint8_t>(256, 0xEE));
  // The product is formed in 64 bits.
  EXPECT_EQ(cycbcr_ToRGBInt(untouched.data(), src.data(), src.data(), src.data(), 0x10000, 0, 16, 4, 0, 0, 1, 1, 32, 2),
            0u);
}

// Source kinds the frame test drives, each with its own way into the converter.
enum class Kind { Uyvy, Yuy2, Yvyu, PackedInt, Yv12, I420Int, P422, Nv12 };

struct KindInfo {
  Kind kind;
  const char* name;
  bool planar, fullChroma, nv12;
  size_t yAt, cbAt, crAt;  // packed: offsets within a 4-byte group
};

const KindInfo kKinds[] = {
    {Kind::Uyvy, "uyvy", false, true, false, 1, 0, 2},    {Kind::Yuy2, "yuy2", false, true, false, 0, 1, 3},
    {Kind::Yvyu, "yvyu", false, true, false, 0, 3, 1},    {Kind::PackedInt, "packed", false, true, false, 1, 0, 2},
    {Kind::Yv12, "yv12", true, false, false, 0, 0, 0},    {Kind::I420Int, "i420", true, false, false, 0, 0, 0},
    {Kind::P422, "p422", true, true, false, 0, 0, 0},     {Kind::Nv12, "nv12", true, false, true, 0, 0, 0},
};

struct Frame {
  std::vector<uint8_t> bytes;
  size_t cbPlane = 0, crPlane = 0;  // planar: plane starts
};

// Source for the exports: planar kinds put the chroma planes at height * stride
// (stride = width here), as the format-named exports expect.
Frame MakeSource(const KindInfo& k, uint32_t w, uint32_t h, uint32_t seed) {
  Frame f;
  const size_t luma = size_t{h} * w;
  if (!k.planar) {
    f.bytes = test::RandomBytes(size_t{h} * 2 * Even(w) + 8, seed);
    return f;
  }
  const size_t chroma = k.fullChroma ? luma / 2 : luma / 4;
  // Odd heights have a last chroma row of their own and odd widths read on past
  // each plane: leave room behind the frame for both.
  f.bytes = test::RandomBytes(luma + 2 * chroma + 2 * Even(w) + 4 * size_t{h} + 64, seed);
  const bool crFirst = k.kind == Kind::Yv12;
  f.cbPlane = crFirst ? luma + chroma : luma;
  f.crPlane = crFirst ? luma : luma + chroma;
  if (k.nv12) {
    f.cbPlane = luma;
    f.crPlane = luma + 1;
  }
  return f;
}

// The destination as the pixel rules say it must look, pairs written in source
// order so that an overrunning pixel lands where the converter puts it.
std::vector<uint8_t> Expected(const KindInfo& k, const Frame& src, std::vector<uint8_t> dst, uint32_t w, uint32_t h,
                              uint32_t ds, uint32_t matrix, uint32_t flags, uint32_t bpp) {
  const std::string layout = test::RefLayout(bpp, flags);
  const size_t bytes = test::RefBytesPerPixel(bpp);
  const uint8_t* s = src.bytes.data();
  for (uint32_t r = 0; r < h; ++r) {
    const uint32_t dr = (flags & 0x8000) ? h - 1 - r : r;
    for (uint32_t x = 0; x < Even(w); ++x) {
      int y, cb, cr;
      if (!k.planar) {
        const size_t g = (size_t{r} * Even(w) / 2 + x / 2) * 4;
        y = s[g + k.yAt + (x & 1) * 2];
        cb = s[g + k.cbAt];
        cr = s[g + k.crAt];
      } else {
        const size_t c = k.fullChroma ? r : r / 2;
        const size_t ci = c * w / 2 + x / 2;
        y = s[size_t{r} * Even(w) + x];
        cb = s[src.cbPlane + (k.nv12 ? 2 * ci : ci)];
        cr = s[src.crPlane + (k.nv12 ? 2 * ci : ci)];
      }
      test::RefPut(dst, size_t{dr} * ds + x * bytes, bpp, layout, test::RefDecode8(matrix, y, cb, cr));
    }
  }
  return dst;
}

uint64_t Convert(const KindInfo& k, uint8_t* dst, const Frame& f, uint32_t w, uint32_t h, uint32_t ds,
                 uint32_t matrix, uint32_t flags, uint32_t bpp) {
  const uint8_t* s = f.bytes.data();
  using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t);
  auto pick = [bpp](Fn f15, Fn f16, Fn f24, Fn f32) { return bpp == 15 ? f15 : bpp == 16 ? f16 : bpp == 24 ? f24 : f32; };
  switch (k.kind) {
    case Kind::Uyvy:
      return pick(cycbcr_uyvy_to_rgb555, cycbcr_uyvy_to_rgb565, nullptr, cycbcr_uyvy_to_rgb32)(dst, s, w, h, ds, 2 * w,
                                                                                             matrix, flags);
    case Kind::Yuy2:
      return pick(cycbcr_yuy2_to_rgb555, cycbcr_yuy2_to_rgb565, cycbcr_yuy2_to_rgb24, cycbcr_yuy2_to_rgb32)(
          dst, s, w, h, ds, 2 * w, matrix, flags);
    case Kind::Yvyu:
      return pick(cycbcr_yvyu_to_rgb555, cycbcr_yvyu_to_rgb565, cycbcr_yvyu_to_rgb24, cycbcr_yvyu_to_rgb32)(
          dst, s, w, h, ds, 2 * w, matrix, flags);
    case Kind::Yv12:
      return pick(cycbcr_yv12_to_rgb555, cycbcr_yv12_to_rgb565, cycbcr_yv12_to_rgb24, cycbcr_yv12_to_rgb32)(
          dst, s, w, h, ds, w, matrix, flags);
    case Kind::P422:
      return cycbcr_p422_to_rgb32(dst, s, w, h, ds, w, matrix, flags);
    case Kind::Nv12:
      return cycbcr_nv12_to_rgb32(dst, s, w, h, ds, w, matrix, flags);
    case Kind::PackedInt:
      return cycbcr_ToRGBInt(dst, s + 1, s, s + 2, w, h, ds, 0, matrix, flags, 1, 0, bpp, 0);
    case Kind::I420Int:
      return cycbcr_ToRGBInt(dst, s, s + f.cbPlane, s + f.crPlane, w, h, ds, 0, matrix, flags, 0, 1, bpp, 0);
  }
  return 0;
}

std::vector<uint32_t> BitDepthsFor(Kind k) {
  switch (k) {
    case Kind::Uyvy: return {15, 16, 32};  // 24 bits has its own decoder
    case Kind::P422:
    case Kind::Nv12: return {32};
    default: return {15, 16, 24, 32};
  }
}

TEST(ToRgbInt, FramesMatchThePixelRules) {
  const uint32_t kFlags[] = {0x8000, 1, 2, 3, 0x8002, 6, 0x8001};
  const uint32_t kMatrices[] = {0, 2, 6, 4, 8, 0xFFFFFFFE};  // even: the UYVY export keeps to its general path
  const uint32_t kOddMatrices[] = {1, 3, 5, 7, 99};
  std::vector<uint32_t> widths = test::InterestingWidths();
  widths.erase(std::remove_if(widths.begin(), widths.end(), [](uint32_t w) { return w > 260; }), widths.end());
  uint32_t seed = 1;
  for (const KindInfo& k : kKinds) {
    for (uint32_t bpp : BitDepthsFor(k.kind)) {
      for (uint32_t w : widths) {
        for (uint32_t h : {1u, 2u, 3u, 5u}) {
          ++seed;
          const uint32_t flags = kFlags[seed % 7];
          const uint32_t matrix = (k.kind == Kind::Uyvy || seed % 2 == 0) ? kMatrices[seed % 6] : kOddMatrices[seed % 5];
          const size_t bytes = test::RefBytesPerPixel(bpp);
          // Tight rows every third case: the overrunning pixel then lands in the next row.
          const uint32_t ds = static_cast<uint32_t>(bytes * w + (seed % 3 == 0 ? 0 : bytes + 5));
          const Frame src = MakeSource(k, w, h, seed);
          const size_t size = size_t{h - 1} * ds + bytes * w;
          const size_t allowance = (w & 1) ? bytes : 0;
          SCOPED_TRACE(testing::Message() << k.name << " bpp " << bpp << " w " << w << " h " << h << " flags " << flags
                                          << " id " << matrix << " ds " << ds);
          test::GuardedBuffer init(size);
          init.FillRandom(seed);
          const std::vector<uint8_t> want = Expected(k, src, init.Bytes(), w, h, ds, matrix, flags, bpp);
          const auto paths = test::RunEveryPath([&] {
            test::GuardedBuffer dst(size);
            std::memcpy(dst.data(), init.data(), size);
            const uint64_t result = Convert(k, dst.data(), src, w, h, ds, matrix, flags, bpp);
            EXPECT_EQ(result, uint64_t{bytes == 3 ? 3u : (bytes == 2 ? 2u : 4u)} * w * h);
            EXPECT_TRUE(dst.GuardsIntact(allowance));
            return dst.Bytes();
          });
          for (const auto& p : paths) {
            ASSERT_EQ(p.bytes, want) << p.path << ": " << test::FirstDifference(p.bytes, want);
          }
        }
      }
    }
  }
}

// Every (Y, Cr) and every (Y, Cb) combination meets every matrix once on each
// path, so R and B are compared over their whole input space; the same bytes read
// as three planes give the planar kernel a large random-looking frame.
TEST(ToRgbInt, VectorDecodeCoversEveryLumaChromaCombination) {
  if (!test::HostHasAvx2()) GTEST_SKIP() << "no AVX2";
  const uint32_t w = 512, h = 256;
  std::vector<uint8_t> uyvy(size_t{w} * h * 2);
  for (uint32_t y = 0; y < h; ++y) {
    for (uint32_t j = 0; j < w / 2; ++j) {
      uint8_t* g = uyvy.data() + (size_t{y} * w / 2 + j) * 4;
      g[0] = static_cast<uint8_t>(j);                    // Cb runs through 0..255 on every row
      g[1] = static_cast<uint8_t>(y);                    // first luma: the row
      g[2] = static_cast<uint8_t>(j * 37 + y * 11);      // Cr: a permutation of 0..255 on every row
      g[3] = static_cast<uint8_t>(255 - y);
    }
  }
  for (uint32_t matrix = 0; matrix < 8; ++matrix) {
    for (uint32_t variant : {0u, 1u, 2u}) {  // packed; chroma roles swapped; planar
      const uint8_t* s = uyvy.data();
      const auto paths = test::RunEveryPath([&] {
        std::vector<uint8_t> dst(size_t{w} * h * 4);
        if (variant == 2) {
          cycbcr_ToRGBInt(dst.data(), s, s + size_t{w} * h, s + size_t{w} * h * 3 / 2, w, h, 4 * w, 0, matrix,
                          matrix % 4, 1, 1, 32, 0);
        } else {
          cycbcr_ToRGBInt(dst.data(), s + 1, variant ? s + 2 : s, variant ? s : s + 2, w, h, 4 * w, 0, matrix,
                          matrix % 4, 1, 0, 32, 0);
        }
        return dst;
      });
      ASSERT_GE(paths.size(), 2u);
      ASSERT_EQ(paths[0].bytes, paths[1].bytes) << "id " << matrix << ": "
                                                << test::FirstDifference(paths[0].bytes, paths[1].bytes);
    }
  }
}

TEST(ToRgbInt, Nv12DecodesLikeTheEquivalentThreePlanes) {
  for (uint32_t w : {1u, 6u, 7u, 33u, 64u}) {
    const uint32_t h = 6;
    const std::vector<uint8_t> luma = test::RandomBytes(size_t{h} * Even(w) + 2, w);
    const size_t chroma = size_t{h} * w / 4 + w;
    const std::vector<uint8_t> cb = test::RandomBytes(chroma, w + 100), cr = test::RandomBytes(chroma, w + 200);
    std::vector<uint8_t> nv12(size_t{h} * w + 2 * chroma + 8);
    std::copy(luma.begin(), luma.begin() + size_t{h} * w, nv12.begin());
    for (size_t i = 0; i < chroma; ++i) {
      nv12[size_t{h} * w + 2 * i] = cb[i];
      nv12[size_t{h} * w + 2 * i + 1] = cr[i];
    }
    std::vector<uint8_t> a(size_t{h} * Even(w) * 4), b(a.size());
    EXPECT_EQ(cycbcr_nv12_to_rgb32(a.data(), nv12.data(), w, h, Even(w) * 4, w, 2, 0), 4 * w * h);
    cycbcr_ToRGBInt(b.data(), nv12.data(), cb.data(), cr.data(), w, h, Even(w) * 4, w, 2, 0, 0, 1, 32, w / 2);
    EXPECT_EQ(a, b) << "width " << w;
  }
}

TEST(ToRgbInt, DispatcherRoutesEveryLayoutToRgb32WithMatrixAndFlags) {
  const uint32_t w = 20, h = 6;
  const std::vector<uint8_t> src = test::RandomBytes(size_t{w} * h * 3 + 64, 7);
  struct Case {
    uint32_t code;
    uint32_t srcStride;
    std::function<uint32_t(uint8_t*)> direct;
  };
  const uint32_t matrix = 6, flags = 0x8003;
  const uint8_t* s = src.data();
  const Case cases[] = {
      {0x59565955, 2 * w, [&](uint8_t* d) { return cycbcr_uyvy_to_rgb32(d, s, w, h, 4 * w, 2 * w, matrix, flags); }},
      {0x79757632, 2 * w, [&](uint8_t* d) { return cycbcr_uyvy_to_rgb32(d, s, w, h, 4 * w, 2 * w, matrix, flags); }},
      {0x32595559, 2 * w, [&](uint8_t* d) { return cycbcr_yuy2_to_rgb32(d, s, w, h, 4 * w, 2 * w, matrix, flags); }},
      {0x55595659, 2 * w, [&](uint8_t* d) { return cycbcr_yvyu_to_rgb32(d, s, w, h, 4 * w, 2 * w, matrix, flags); }},
      {0x76757963, 2 * w,
       [&](uint8_t* d) { return cycbcr_uyvy_to_rgb32(d, s, w, h, 4 * w, 2 * w, matrix, flags ^ 0x8000); }},
      {0x30323449, w, [&](uint8_t* d) { return cycbcr_i420_to_rgb32(d, s, w, h, 4 * w, w, matrix, flags); }},
      {0x32315659, w, [&](uint8_t* d) { return cycbcr_yv12_to_rgb32(d, s, w, h, 4 * w, w, matrix, flags); }},
      {0x32323450, w, [&](uint8_t* d) { return cycbcr_p422_to_rgb32(d, s, w, h, 4 * w, w, matrix, flags); }},
      {0x76323130, 0, [&](uint8_t* d) { return cycbcr_012v_to_rgb32(d, s, w, h, 4 * w, 0, matrix, flags); }},
  };
  for (const Case& c : cases) {
    std::vector<uint8_t> viaDispatcher(size_t{w} * h * 4 + 8, 1), direct(viaDispatcher);
    std::vector<uint8_t> srcCopy = src;
    const uint32_t r1 = cycbcr_transcode(viaDispatcher.data(), srcCopy.data(), w, h, 4 * w, c.srcStride, matrix,
                                         flags, 0u, c.code);
    const uint32_t r2 = c.direct(direct.data());
    EXPECT_EQ(r1, r2) << std::hex << c.code;
    EXPECT_EQ(viaDispatcher, direct) << std::hex << c.code;
    EXPECT_NE(r1, 0u);
  }
}

TEST(ToRgbInt16, SamplesOrdersAndBias) {
  // Full-range grey: R and B carry the +1 bias of the 16-bit rule, G does not.
  const uint8_t src[4] = {128, 128, 128, 128};
  const struct {
    uint32_t bpp, flags;
    std::vector<uint16_t> pixel;
  } cases[] = {
      {24, 0, {32818, 32817, 32818}}, {48, 2, {32818, 32817, 32818}},
      {32, 0, {32818, 32817, 32818, 65535}}, {64, 1, {65535, 32818, 32817, 32818}},
      {32, 3, {65535, 32818, 32817, 32818}}, {64, 2, {32818, 32817, 32818, 65535}},
  };
  for (const auto& c : cases) {
    const size_t n = c.pixel.size();
    std::vector<uint16_t> dst(2 * n + 2, 0x5A5A);
    EXPECT_EQ(cycbcr_ToRGBInt16(reinterpret_cast<uint8_t*>(dst.data()), src + 1, src, src + 2, 2, 1, 64, 4, 1,
                                c.flags, 1, 0, c.bpp, 2),
              2 * n * 2);
    std::vector<uint16_t> want = c.pixel;
    want.insert(want.end(), c.pixel.begin(), c.pixel.end());
    EXPECT_EQ(std::vector<uint16_t>(dst.begin(), dst.begin() + 2 * n), want) << c.bpp << " flags " << c.flags;
    EXPECT_EQ(dst[2 * n], 0x5A5A);
  }
  // Order of the three channels and ids 2 and 4 apart: saturated colour, video range.
  const uint8_t red[4] = {90, 81, 240, 81};
  std::vector<uint16_t> a(8), b(8);
  cycbcr_ToRGBInt16(reinterpret_cast<uint8_t*>(a.data()), red + 1, red, red + 2, 2, 1, 64, 4, 2, 2, 1, 0, 32, 2);
  cycbcr_ToRGBInt16(reinterpret_cast<uint8_t*>(b.data()), red + 1, red, red + 2, 2, 1, 64, 4, 4, 2, 1, 0, 32, 2);
  EXPECT_GT(a[0], 60000);  // R first in order 2
  EXPECT_NE(a, b);
  // Unknown sizes write nothing but still report 8 bytes per pixel.
  std::vector<uint8_t> none(64, 0xEE);
  EXPECT_EQ(cycbcr_ToRGBInt16(none.data(), src + 1, src, src + 2, 2, 3, 64, 4, 0, 0, 1, 0, 16, 2), 48u);
  EXPECT_EQ(none, std::vector<uint8_t>(64, 0xEE));
}

TEST(ToRgbPlanar, PlanesHoldTheInterleavedResult) {
  for (uint32_t w : {1u, 7u, 32u, 49u}) {
    for (uint32_t planar : {0u, 1u}) {
      for (uint32_t flags : {0u, 0x8000u}) {
        const uint32_t h = 4, ds = Even(w) + 3;
        const std::vector<uint8_t> src = test::RandomBytes(size_t{h} * Even(w) * 2 + 64, w + planar);
        const uint8_t* s = src.data();
        const uint8_t* y = planar ? s : s + 1;
        const uint8_t* cb = planar ? s + size_t{h} * Even(w) : s;
        const uint8_t* cr = planar ? cb + size_t{h} * w / 2 + 1 : s + 2;
        std::vector<uint8_t> rgb(size_t{h} * Even(w) * 3);
        cycbcr_ToRGBInt(rgb.data(), y, cb, cr, w, h, Even(w) * 3, 0, 1, flags | 2, 1, planar, 24, 0);
        std::vector<uint8_t> g(size_t{h} * ds, 7), r(g), b(g);
        uint8_t* const planes[3] = {g.data(), r.data(), b.data()};
        EXPECT_EQ(cycbcr_ToRGBPlanarInt(planes, y, cb, cr, w, h, ds, 0, 1, flags | 3, 1, planar, 0), 3ull * w * h);
        for (uint32_t row = 0; row < h; ++row) {
          for (uint32_t x = 0; x < Even(w); ++x) {
            const size_t at = size_t{row} * ds + x, in = (size_t{row} * Even(w) + x) * 3;
            ASSERT_EQ(r[at], rgb[in]) << w << " " << row << " " << x;
            ASSERT_EQ(g[at], rgb[in + 1]);
            ASSERT_EQ(b[at], rgb[in + 2]);
          }
        }
        // The planar front end takes its own decoder only for UYVY with ids 3 and 5.
        std::vector<uint8_t> g2(g.size(), 7), r2(g2), b2(g2);
        uint8_t* const planes2[3] = {g2.data(), r2.data(), b2.data()};
        cycbcr_ToRGBPlanar(planes2, y, cb, cr, w, h, ds, 0, 1, flags, 1, planar, 0);
        EXPECT_EQ(g2, g);
        EXPECT_EQ(r2, r);
        EXPECT_EQ(b2, b);
      }
    }
  }
}

}  // namespace
}  // namespace zelt
