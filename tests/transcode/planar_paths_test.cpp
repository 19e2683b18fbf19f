// The 256-bit planar <-> UYVY kernels against the portable path and a plain
// reference, over many widths, heights and strides, with guard zones.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "support/aligned.h"
#include "support/buffers.h"
#include "support/paths.h"
#include "zelt/ycbcr_planar.h"

namespace zelt {
namespace {

using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

struct Geometry {
  uint32_t w, h, dsPad, ssPad;
};

std::vector<Geometry> Geometries() {
  std::vector<Geometry> g;
  for (uint32_t w : test::InterestingWidths()) {
    g.push_back({w, 1, 0, 0});
    g.push_back({w, 4, 0, 0});
    g.push_back({w, 5, 6, 0});
    g.push_back({w, 7, 0, 10});  // padded source: planar sources leave the 256-bit path
    g.push_back({w, 2, 34, 18});
  }
  return g;
}

// Plain references, one sample at a time. Planar sources are placed by width,
// planar destinations by stride. Byte offsets of luma, Cb, Cr in a group:
struct Order {
  uint32_t y, cb, cr;
};
constexpr Order kUyvy{1, 0, 2}, kYuy2{0, 1, 3}, kYvyu{0, 3, 1};
enum class Kind { I420, YV12, P422 };

// UYVY: width/2 pairs, chroma pitch src_stride/2, 4:2:0 progressive. YUY2/YVYU:
// whole groups up to the width (one luma sample read past the row when odd),
// 4:2:0 field-sited at pitch src_stride/2, 4:2:2 chroma as one run.
std::vector<uint8_t> RefToPacked(Kind k, Order o, const std::vector<uint8_t>& src, std::vector<uint8_t> dst,
                                 uint32_t w, uint32_t h, uint32_t ds, uint32_t ss) {
  const bool uyvy = o.y == 1;
  const size_t luma = size_t{w} * h;
  const size_t second = luma, third = luma + (k == Kind::P422 ? luma / 2 : luma / 4);
  const size_t cb = k == Kind::YV12 ? third : second, cr = k == Kind::YV12 ? second : third;
  const uint32_t groups = uyvy ? w / 2 : (w + 1) / 2;
  for (uint32_t r = 0; r < h; ++r) {
    size_t crow;
    if (k == Kind::P422) {
      crow = uyvy ? size_t{r} * (ss / 2) : size_t{r} * groups;
    } else {
      crow = size_t{uyvy ? r / 2 : 2 * (r / 4) + r % 2} * (ss / 2);
    }
    for (uint32_t i = 0; i < groups; ++i) {
      uint8_t* g = &dst[size_t{r} * ds + 4 * i];
      g[o.cb] = src[cb + crow + i];
      g[o.y] = src[size_t{r} * ss + 2 * i];
      g[o.cr] = src[cr + crow + i];
      g[o.y + 2] = src[size_t{r} * ss + 2 * i + 1];
    }
  }
  return dst;
}

// Every order: width/2 groups; 4:2:0 chroma row k from packed row 2k (k even) or
// 2k+1 (k odd), at pitch dst_stride/2.
std::vector<uint8_t> RefFromPacked(Kind k, Order o, const std::vector<uint8_t>& src, std::vector<uint8_t> dst,
                                   uint32_t w, uint32_t h, uint32_t ds, uint32_t ss) {
  const size_t luma = size_t{h} * ds;
  const size_t second = luma, third = luma + (k == Kind::P422 ? luma / 2 : luma / 4);
  const size_t cb = k == Kind::YV12 ? third : second, cr = k == Kind::YV12 ? second : third;
  for (uint32_t r = 0; r < h; ++r) {
    const bool chroma = k == Kind::P422 || r % 4 == 0 || r % 4 == 3;
    const size_t crow = (k == Kind::P422 ? r : r / 2) * size_t{ds / 2};
    for (uint32_t i = 0; i < w / 2; ++i) {
      const uint8_t* g = &src[size_t{r} * ss + 4 * i];
      dst[size_t{r} * ds + 2 * i] = g[o.y];
      dst[size_t{r} * ds + 2 * i + 1] = g[o.y + 2];
      if (chroma) {
        dst[cb + crow + i] = g[o.cb];
        dst[cr + crow + i] = g[o.cr];
      }
    }
  }
  return dst;
}

struct Case {
  const char* name;
  Fn fn;
  Kind kind;
  Order order;
  bool toPacked;
};

const Case kCases[] = {
    {"i420_to_uyvy", cycbcr_i420_to_uyvy, Kind::I420, kUyvy, true},
    {"yv12_to_uyvy", cycbcr_yv12_to_uyvy, Kind::YV12, kUyvy, true},
    {"p422_to_uyvy", cycbcr_p422_to_uyvy, Kind::P422, kUyvy, true},
    {"i420_to_yuy2", cycbcr_i420_to_yuy2, Kind::I420, kYuy2, true},
    {"yv12_to_yvyu", cycbcr_yv12_to_yvyu, Kind::YV12, kYvyu, true},
    {"p422_to_yuy2", cycbcr_p422_to_yuy2, Kind::P422, kYuy2, true},
    {"p422_to_yvyu", cycbcr_p422_to_yvyu, Kind::P422, kYvyu, true},
    {"uyvy_to_i420", cycbcr_uyvy_to_i420, Kind::I420, kUyvy, false},
    {"uyvy_to_yv12", cycbcr_uyvy_to_yv12, Kind::YV12, kUyvy, false},
    {"uyvy_to_p422", cycbcr_uyvy_to_p422, Kind::P422, kUyvy, false},
    {"yuy2_to_i420", cycbcr_yuy2_to_i420, Kind::I420, kYuy2, false},
    {"yvyu_to_yv12", cycbcr_yvyu_to_yv12, Kind::YV12, kYvyu, false},
    {"yuy2_to_p422", cycbcr_yuy2_to_p422, Kind::P422, kYuy2, false},
    {"yvyu_to_p422", cycbcr_yvyu_to_p422, Kind::P422, kYvyu, false},
};

TEST(PlanarPaths, KernelsMatchPortablePathAndReference) {
  uint32_t seed = 1;
  for (const auto& c : kCases) {
    for (const auto& g : Geometries()) {
      SCOPED_TRACE(::testing::Message() << c.name << " w" << g.w << " h" << g.h << " pads " << g.dsPad << "/"
                                        << g.ssPad);
      const uint32_t packedStride = 2 * g.w, planarStride = g.w;
      const uint32_t ds = (c.toPacked ? packedStride : planarStride) + g.dsPad;
      const uint32_t ss = (c.toPacked ? planarStride : packedStride) + g.ssPad;
      // Planar sources are read up to the chroma planes placed by width; a padded
      // luma stride reads further. Planar destinations of an odd height write one
      // chroma row past the 4:2:0 frame; YUY2 and YVYU rows of an odd width two
      // bytes past the row.
      const size_t srcSize = size_t{g.h} * ss * 2 + 64;
      const size_t dstSize = c.toPacked ? size_t{g.h} * ds + 2 : size_t{g.h} * ds * 2 + ds;
      const std::vector<uint8_t> src = test::RandomBytes(srcSize, seed++);
      const std::vector<uint8_t> fill = test::RandomBytes(dstSize, seed++);
      const std::vector<uint8_t> expected =
          c.toPacked ? RefToPacked(c.kind, c.order, src, fill, g.w, g.h, ds, ss)
                     : RefFromPacked(c.kind, c.order, src, fill, g.w, g.h, ds, ss);
      for (const auto& r : test::RunEveryPath([&] {
             test::GuardedBuffer dst(dstSize);
             std::copy(fill.begin(), fill.end(), dst.data());
             c.fn(dst.data(), src.data(), g.w, g.h, ds, ss);
             EXPECT_TRUE(dst.GuardsIntact());
             return dst.Bytes();
           })) {
        ASSERT_EQ(r.bytes, expected) << r.path << ": " << test::FirstDifference(r.bytes, expected);
      }
    }
  }
}

// The engines called with contiguous planes and padded strides take the 256-bit
// kernels too; they must give the portable bytes.
TEST(PlanarPaths, EnginesWithPaddedContiguousPlanes) {
  uint32_t seed = 100;
  for (uint32_t w : test::InterestingWidths()) {
    for (uint32_t h : {2u, 6u}) {
      for (uint32_t mode : {0u, 1u}) {
        SCOPED_TRACE(::testing::Message() << "w" << w << " h" << h << " mode " << mode);
        const uint32_t ss = w + 40, ds = 2 * w + 24;
        const size_t luma = size_t{ss} * h;
        const size_t chroma = mode == 1 ? size_t{ss / 2} * h : luma / 4;
        const std::vector<uint8_t> planar = test::RandomBytes(luma + 2 * chroma + 64, seed++);
        const std::vector<uint8_t> packed = test::RandomBytes(size_t{h} * ds, seed++);
        const auto results = test::RunEveryPath([&] {
          std::vector<uint8_t> out(size_t{h} * ds, 0x11);
          const uint8_t* y = planar.data();
          // I420 order, then (mode 0) YV12 order.
          cycbcr_fromplanar(y, y + luma, y + luma + chroma, out.data() + 1, out.data(), out.data() + 2, w, h, ds, ss,
                            mode);
          if (mode == 0) {
            std::vector<uint8_t> yv(out.size(), 0x22);
            cycbcr_fromplanar(y, y + luma + chroma, y + luma, yv.data() + 1, yv.data(), yv.data() + 2, w, h, ds, ss, 0);
            out.insert(out.end(), yv.begin(), yv.end());
          }
          // And back: packed with stride ds into planes of stride ss.
          std::vector<uint8_t> planes(luma + 2 * chroma + ss, 0x33);
          uint8_t* py = planes.data();
          cycbcr_toplanar(packed.data() + 1, packed.data(), packed.data() + 2, py, py + luma, py + luma + chroma, w, h,
                          ss, ds, mode);
          out.insert(out.end(), planes.begin(), planes.end());
          return out;
        });
        for (const auto& r : results) {
          EXPECT_EQ(r.bytes, results.front().bytes) << r.path << ": " << test::FirstDifference(r.bytes, results.front().bytes);
        }
      }
    }
  }
}

// The cyuv wrappers go through the same kernels, then flip.
TEST(PlanarPaths, CyuvWrappersAgreeOnEveryPath) {
  const Fn fns[] = {cycbcr_i420_to_cyuv, cycbcr_p422_to_cyuv, cycbcr_cyuv_to_i420, cycbcr_cyuv_to_yv12,
                    cycbcr_cyuv_to_p422};
  uint32_t seed = 500;
  for (Fn fn : fns) {
    for (uint32_t w : {33u, 64u, 130u, 719u}) {
      const uint32_t h = 6, stride = 2 * w;
      const std::vector<uint8_t> src = test::RandomBytes(size_t{h} * stride * 2, seed++);
      const auto results = test::RunEveryPath([&] {
        std::vector<uint8_t> dst(size_t{h} * stride * 2, 0x5A);
        const bool toPacked = fn == cycbcr_i420_to_cyuv || fn == cycbcr_p422_to_cyuv;
        fn(dst.data(), src.data(), w, h, toPacked ? stride : w, toPacked ? w : stride);
        return dst;
      });
      for (const auto& r : results) EXPECT_EQ(r.bytes, results.front().bytes) << r.path << " w" << w;
    }
  }
}

// Frames of several megabytes are written with streaming stores where the rows are
// aligned for them; a width that is not a multiple of 32 mixes aligned and
// unaligned rows. The bytes must not change.
TEST(PlanarPaths, LargeFramesGiveTheSameBytes) {
  constexpr uint32_t w = 3838, h = 1472;
  const size_t size = size_t{w} * h * 2;
  test::AlignedBytes srcBuf(size), dstBuf(size);
  uint8_t* const srcp = srcBuf.data();
  uint8_t* const dstp = dstBuf.data();
  const std::vector<uint8_t> random = test::RandomBytes(size, 1234);
  std::copy(random.begin(), random.end(), srcp);
  const struct {
    Fn fn;
    bool toPacked;
  } cases[] = {{cycbcr_i420_to_uyvy, true},  {cycbcr_p422_to_uyvy, true},  {cycbcr_i420_to_yuy2, true},
               {cycbcr_uyvy_to_i420, false}, {cycbcr_uyvy_to_p422, false}, {cycbcr_yvyu_to_i420, false}};
  for (const auto& c : cases) {
    const auto results = test::RunEveryPath([&] {
      std::fill_n(dstp, size, 0x77);
      c.fn(dstp, srcp, w, h, c.toPacked ? 2 * w : w, c.toPacked ? w : 2 * w);
      return std::vector<uint8_t>(dstp, dstp + size);
    });
    for (const auto& r : results) EXPECT_TRUE(r.bytes == results.front().bytes) << r.path;
  }
}

}  // namespace
}  // namespace zelt
