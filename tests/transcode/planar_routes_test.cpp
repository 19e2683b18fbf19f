// The dispatcher's planar routes: every pair of I420, YV12, P422 with the packed
// 4:2:2 layouts and with each other reaches the right converter.
#include <gtest/gtest.h>

#include <vector>

#include "support/buffers.h"
#include "core/formats.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_planar.h"

namespace zelt {
namespace {

using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

uint32_t Transcode(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss,
                   uint32_t dstCode, uint32_t srcCode) {
  return cycbcr_transcode(dst, const_cast<uint8_t*>(src), w, h, ds, ss, 0u, 0u, dstCode, srcCode);
}

struct Pair {
  uint32_t srcCode, dstCode;
  Fn fn;
};

const Pair kPairs[] = {
    {kCodeI420, kCodeUYVY, cycbcr_i420_to_uyvy}, {kCodeI420, kCodeYUY2, cycbcr_i420_to_yuy2},
    {kCodeI420, kCodeYVYU, cycbcr_i420_to_yvyu}, {kCodeI420, kCodeCYUV, cycbcr_i420_to_cyuv},
    {kCodeYV12, kCodeUYVY, cycbcr_yv12_to_uyvy}, {kCodeYV12, kCodeYUY2, cycbcr_yv12_to_yuy2},
    {kCodeYV12, kCodeYVYU, cycbcr_yv12_to_yvyu}, {kCodeYV12, kCodeCYUV, cycbcr_yv12_to_cyuv},
    {kCodeP422, kCodeUYVY, cycbcr_p422_to_uyvy}, {kCodeP422, kCodeYUY2, cycbcr_p422_to_yuy2},
    {kCodeP422, kCodeYVYU, cycbcr_p422_to_yvyu}, {kCodeP422, kCodeCYUV, cycbcr_p422_to_cyuv},
    {kCodeUYVY, kCodeI420, cycbcr_uyvy_to_i420}, {kCodeUYVY, kCodeYV12, cycbcr_uyvy_to_yv12},
    {kCodeUYVY, kCodeP422, cycbcr_uyvy_to_p422}, {kCodeYUY2, kCodeI420, cycbcr_yuy2_to_i420},
    {kCodeYUY2, kCodeYV12, cycbcr_yuy2_to_yv12}, {kCodeYUY2, kCodeP422, cycbcr_yuy2_to_p422},
    {kCodeYVYU, kCodeI420, cycbcr_yvyu_to_i420}, {kCodeYVYU, kCodeYV12, cycbcr_yvyu_to_yv12},
    {kCodeYVYU, kCodeP422, cycbcr_yvyu_to_p422}, {kCodeCYUV, kCodeI420, cycbcr_cyuv_to_i420},
    {kCodeCYUV, kCodeYV12, cycbcr_cyuv_to_yv12}, {kCodeCYUV, kCodeP422, cycbcr_cyuv_to_p422},
    {kCodeI420, kCodeI420, cycbcr_i420_to_i420}, {kCodeI420, kCodeYV12, cycbcr_i420_to_yv12},
    {kCodeI420, kCodeP422, cycbcr_i420_to_p422}, {kCodeYV12, kCodeI420, cycbcr_yv12_to_i420},
    {kCodeYV12, kCodeYV12, cycbcr_yv12_to_yv12}, {kCodeP422, kCodeI420, cycbcr_p422_to_i420},
    {kCodeP422, kCodeYV12, cycbcr_p422_to_yv12}, {kCodeP422, kCodeP422, cycbcr_p422_to_p422},
    // Aliases: IYUV is I420, 2vuy and YUNV name UYVY and YUY2, 422P is a source name of P422.
    {FourCC('I', 'Y', 'U', 'V'), FourCC('2', 'v', 'u', 'y'), cycbcr_i420_to_uyvy},
    {FourCC('Y', 'U', 'N', 'V'), FourCC('I', 'Y', 'U', 'V'), cycbcr_yuy2_to_i420},
    {kCode422P, kCodeUYVY, cycbcr_p422_to_uyvy},
};

bool IsPlanar(uint32_t code) {
  const uint8_t l = code == kCode422P ? static_cast<uint8_t>(Layout::P422) : LayoutOfCode(code);
  return l == static_cast<uint8_t>(Layout::I420) || l == static_cast<uint8_t>(Layout::YV12) ||
         l == static_cast<uint8_t>(Layout::P422);
}

TEST(PlanarRoutes, DispatcherCallsTheConverterOfEachPair) {
  constexpr uint32_t w = 38, h = 6;
  uint32_t seed = 3;
  for (const auto& p : kPairs) {
    SCOPED_TRACE(::testing::Message() << std::hex << p.srcCode << " -> " << p.dstCode);
    const uint32_t ss = IsPlanar(p.srcCode) ? w : 2 * w;
    const uint32_t ds = IsPlanar(p.dstCode) ? w : 2 * w;
    const std::vector<uint8_t> src = test::RandomBytes(size_t{h} * ss * 2, seed++);
    std::vector<uint8_t> viaDispatcher(size_t{h} * ds * 2 + 16, 0xAB), direct(viaDispatcher);
    const uint32_t a = Transcode(viaDispatcher.data(), src.data(), w, h, ds, ss, p.dstCode, p.srcCode);
    const uint32_t b = p.fn(direct.data(), src.data(), w, h, ds, ss);
    EXPECT_EQ(a, b);
    EXPECT_NE(a, 0u);
    EXPECT_EQ(viaDispatcher, direct) << test::FirstDifference(viaDispatcher, direct);
  }
}

// YV12 to P422 has no export: it gives the P422 bytes of I420 to P422 of the same picture.
TEST(PlanarRoutes, Yv12ToP422MatchesI420ToP422OfTheSamePicture) {
  constexpr uint32_t w = 20, h = 8;
  const std::vector<uint8_t> i420 = test::RandomBytes(w * h * 3 / 2, 42);
  std::vector<uint8_t> yv12(i420.begin(), i420.begin() + w * h);
  yv12.insert(yv12.end(), i420.begin() + w * h * 5 / 4, i420.end());
  yv12.insert(yv12.end(), i420.begin() + w * h, i420.begin() + w * h * 5 / 4);
  test::GuardedBuffer fromYv12(w * h * 2);
  std::vector<uint8_t> fromI420(w * h * 2);
  EXPECT_EQ(Transcode(fromYv12.data(), yv12.data(), w, h, w, w, kCodeP422, kCodeYV12), w * h * 2);
  EXPECT_TRUE(fromYv12.GuardsIntact());
  cycbcr_i420_to_p422(fromI420.data(), i420.data(), w, h, w, w);
  EXPECT_EQ(fromYv12.Bytes(), fromI420);
}

TEST(PlanarRoutes, PlanarStridesAreNormalisedFirst) {
  // Width 100: a stride above 128 becomes the width, one below it stays.
  constexpr uint32_t w = 100, h = 4;
  const std::vector<uint8_t> src = test::RandomBytes(300 * h * 2, 8);
  std::vector<uint8_t> dst(300 * h * 2);
  EXPECT_EQ(Transcode(dst.data(), src.data(), w, h, 300, 300, kCodeI420, kCodeI420), h * w * 3 / 2);
  EXPECT_EQ(Transcode(dst.data(), src.data(), w, h, 120, 120, kCodeI420, kCodeI420), h * 120u * 3 / 2);
  // A packed destination stride below 2 * width is raised.
  EXPECT_EQ(Transcode(dst.data(), src.data(), w, h, 10, w, kCodeUYVY, kCodeP422), h * 2 * w);
  // 422P is not a destination name.
  EXPECT_EQ(Transcode(dst.data(), src.data(), w, h, w, 2 * w, kCode422P, kCodeUYVY), 0u);
}

}  // namespace
}  // namespace zelt
