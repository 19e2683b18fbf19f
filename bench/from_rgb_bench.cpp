// RGB32 to 8-bit YCbCr at 1920x1080, per code path, with libyuv's ARGBToUYVY and
// ARGBToI420 side by side when installed. Compare bytes/s with BM_memcpy of the
// same frame bytes.
#include <cstring>

#include "bench_util.h"
#include "core/testing.h"
#include "zelt/ycbcr_from_rgb.h"

#if ZELT_HAVE_LIBYUV
#include <libyuv.h>
#endif

namespace zelt::bench {
namespace {

// Level forced for the run: 0 the baseline (SSE4.1 mask, level 4), 1 level 5.
struct Level {
  explicit Level(int64_t wide) {
    zelt::testing::ForceFeatureMask(wide != 0 ? 0x008060A0u : 0x000060A0u);
    zelt::testing::ResetSimdLevel();
  }
  ~Level() {
    zelt::testing::ClearFeatureMask();
    zelt::testing::ResetSimdLevel();
  }
};

using Fn = uint32_t (*)(uint8_t*, uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t);

template <auto F>
uint32_t Call(uint8_t* d, uint8_t* s, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t m, uint32_t f) {
  return F(d, s, w, h, ds, ss, m, f);
}

// state.range(0): level (0 baseline, 1 256-bit); range(1): matrix id.
enum Dst { kPacked, kI420, kP422 };

template <Fn F, Dst kDst>
void BM_FromRgb32(benchmark::State& state) {
  const uint32_t w = kHd.w, h = kHd.h;
  const size_t srcBytes = size_t{w} * h * 4;
  const uint32_t ds = kDst == kPacked ? 2 * w : w;
  const size_t dstBytes = kDst == kI420 ? size_t{w} * h * 3 / 2 : size_t{w} * h * 2;
  Buffer src(srcBytes), dst(size_t{w} * h * 2);
  Level level(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(F(dst.data(), src.data(), w, h, ds, w * 4, static_cast<uint32_t>(state.range(1)), 0));
    benchmark::ClobberMemory();
  }
  SetBytes(state, srcBytes, dstBytes);
}

// RGB32 to UYVY: matrix 0 is the BGR fast path at the baseline, matrix 2 the kernel.
BENCHMARK(BM_FromRgb32<Call<cycbcr_RGB32_to_uyvy>, kPacked>)->ArgsProduct({{0, 1}, {0, 2}})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FromRgb32<Call<cycbcr_RGB32_to_yuy2>, kPacked>)->ArgsProduct({{0, 1}, {0}})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FromRgb32<Call<cycbcr_RGB32_to_p422>, kP422>)->ArgsProduct({{0, 1}, {0}})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FromRgb32<Call<cycbcr_RGB32_to_i420>, kI420>)->ArgsProduct({{0, 1}, {0}})->Unit(benchmark::kMillisecond);

void BM_memcpy_rgb32_to_uyvy_bytes(benchmark::State& state) {
  const size_t n = size_t{kHd.w} * kHd.h * 3;  // 4 bytes read + 2 written per pixel, halved
  RunMemcpy(state, n);
}
BENCHMARK(BM_memcpy_rgb32_to_uyvy_bytes)->Unit(benchmark::kMillisecond);

#if ZELT_HAVE_LIBYUV
void BM_libyuv_ARGBToUYVY(benchmark::State& state) {
  const int w = kHd.w, h = kHd.h;
  Buffer src(size_t{w} * h * 4), dst(size_t{w} * h * 2);
  for (auto _ : state) {
    libyuv::ARGBToUYVY(src.data(), w * 4, dst.data(), w * 2, w, h);
    benchmark::ClobberMemory();
  }
  SetBytes(state, size_t{w} * h * 4, size_t{w} * h * 2);
}
BENCHMARK(BM_libyuv_ARGBToUYVY)->Unit(benchmark::kMillisecond);

void BM_libyuv_ARGBToI420(benchmark::State& state) {
  const int w = kHd.w, h = kHd.h;
  Buffer src(size_t{w} * h * 4), dst(size_t{w} * h * 3 / 2);
  uint8_t* y = dst.data();
  uint8_t* u = y + size_t{w} * h;
  uint8_t* v = u + size_t{w} * h / 4;
  for (auto _ : state) {
    libyuv::ARGBToI420(src.data(), w * 4, y, w, u, w / 2, v, w / 2, w, h);
    benchmark::ClobberMemory();
  }
  SetBytes(state, size_t{w} * h * 4, size_t{w} * h * 3 / 2);
}
BENCHMARK(BM_libyuv_ARGBToI420)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace zelt::bench
