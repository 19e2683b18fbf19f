// Packed 4:2:2 routes at HD and UHD, each next to memcpy of the same bytes
// (BM_memcpy in memcpy_bench.cpp with the frame size as argument).
#include "bench_util.h"
#include "support/paths.h"
#include "core/testing.h"
#include "zelt/ycbcr.h"

#if ZELT_HAVE_LIBYUV
#include <libyuv.h>
#endif

namespace zelt::bench {
namespace {

using PackedFn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

// Forces the level: state.range(2) == 1 runs the baseline paths on an AVX2 host.
struct Level {
  explicit Level(bool baseline) {
    if (baseline) zelt::testing::ForceFeatureMask(zelt::test::kMaskSse41);
    zelt::testing::ResetSimdLevel();
  }
  ~Level() {
    zelt::testing::ClearFeatureMask();
    zelt::testing::ResetSimdLevel();
  }
};

template <PackedFn F>
void BM_Packed(benchmark::State& state) {
  const uint32_t w = static_cast<uint32_t>(state.range(0)), h = static_cast<uint32_t>(state.range(1));
  Level level(state.range(2) == 1);
  const size_t n = size_t{w} * 2 * h;
  Buffer src(n), dst(n);
  for (auto _ : state) {
    F(dst.data(), src.data(), w, h, w * 2, w * 2);
    benchmark::ClobberMemory();
  }
  SetBytes(state, n, n);
}

void BM_Invert(benchmark::State& state) {
  const uint32_t w = static_cast<uint32_t>(state.range(0)), h = static_cast<uint32_t>(state.range(1));
  const size_t n = size_t{w} * 2 * h;
  Buffer buf(n);
  for (auto _ : state) {
    cycbcr_invert(buf.data(), w * 2, h);
    benchmark::ClobberMemory();
  }
  SetBytes(state, n, n);
}

#define ZELT_SIZES(b) \
  b->Args({1920, 1080, 0})->Args({3840, 2160, 0})->Args({1920, 1080, 1})->Args({3840, 2160, 1})
#define ZELT_PACKED(fn) ZELT_SIZES(BENCHMARK_TEMPLATE(BM_Packed, fn)->Name("BM_" #fn))

ZELT_PACKED(cycbcr_uyvy_to_yuy2);
ZELT_PACKED(cycbcr_yvyu_to_uyvy);
ZELT_PACKED(cycbcr_yuy2_to_yvyu);
ZELT_PACKED(cycbcr_uyvy_to_cyuv);
ZELT_PACKED(cycbcr_yuy2_to_cyuv);
ZELT_PACKED(cycbcr_uyvy_to_uyvy);
BENCHMARK(BM_Invert)->Args({1920, 1080})->Args({3840, 2160});

#if ZELT_HAVE_LIBYUV
// Nearest libyuv jobs: a 16-bit byte swap of a packed row is what YUY2<->UYVY
// needs; libyuv does it through its ARGB shuffle and its plain copy.
void BM_libyuv_ARGBShuffle_swap16(benchmark::State& state) {
  const uint32_t w = static_cast<uint32_t>(state.range(0)), h = static_cast<uint32_t>(state.range(1));
  const size_t n = size_t{w} * 2 * h;
  Buffer src(n), dst(n);
  static const uint8_t kSwap[16] = {1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14};
  for (auto _ : state) {
    libyuv::ARGBShuffle(src.data(), static_cast<int>(w * 2), dst.data(), static_cast<int>(w * 2), kSwap,
                        static_cast<int>(w / 2), static_cast<int>(h));
    benchmark::ClobberMemory();
  }
  SetBytes(state, n, n);
}
void BM_libyuv_CopyPlane(benchmark::State& state) {
  const uint32_t w = static_cast<uint32_t>(state.range(0)), h = static_cast<uint32_t>(state.range(1));
  const size_t n = size_t{w} * 2 * h;
  Buffer src(n), dst(n);
  for (auto _ : state) {
    libyuv::CopyPlane(src.data(), static_cast<int>(w * 2), dst.data(), static_cast<int>(w * 2),
                      static_cast<int>(w * 2), static_cast<int>(h));
    benchmark::ClobberMemory();
  }
  SetBytes(state, n, n);
}
BENCHMARK(BM_libyuv_ARGBShuffle_swap16)->Args({1920, 1080})->Args({3840, 2160});
BENCHMARK(BM_libyuv_CopyPlane)->Args({1920, 1080})->Args({3840, 2160});
#endif

}  // namespace
}  // namespace zelt::bench
