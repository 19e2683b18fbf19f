// 012v jobs: UYVY to 012v, 012v to UYVY, 10-bit 4:2:2 planar to 012v, at HD and
// UHD. Each runs at the processor's own level and forced to the baseline (arg 1);
// the planar job also times its single-threaded kernels so the threaded split's
// speed-up can be read off one run. Compare bytes/s with BM_memcpy of the same
// sizes (memcpy_bench.cpp).
#include <cstdint>

#include "bench_util.h"
#include "transcode/v210_kernels.h"
#include "core/formats.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "core/testing.h"
#include "zelt/ycbcr_v210.h"

namespace zelt::bench {
namespace {

// Forces the baseline level for the life of a job when asked to.
struct Level {
  explicit Level(bool baseline) : forced(baseline) {
    if (forced) zelt::testing::ForceFeatureMask(kFeatSse2 | kFeatSse3 | kFeatSsse3 | kFeatSse41);
    zelt::testing::ResetSimdLevel();
    SimdGuard();
  }
  ~Level() {
    zelt::testing::ClearFeatureMask();
    zelt::testing::ResetSimdLevel();
  }
  bool forced;
};

Size SizeOf(const benchmark::State& state) { return state.range(0) == 0 ? kHd : kUhd; }

void BM_uyvy_to_012v(benchmark::State& state) {
  const Size s = SizeOf(state);
  Level level(state.range(1) != 0);
  const uint32_t pitch = V012MinPitch(s.w);
  Buffer src(size_t{s.w} * 2 * s.h + 64), dst(size_t{pitch} * s.h);
  for (auto _ : state) {
    cycbcr_uyvy_to_012v(dst.data(), src.data(), s.w, s.h, pitch, s.w * 2);
    benchmark::ClobberMemory();
  }
  SetBytes(state, size_t{s.w} * 2 * s.h, size_t{pitch} * s.h);
}

void BM_012v_to_uyvy(benchmark::State& state) {
  const Size s = SizeOf(state);
  Level level(state.range(1) != 0);
  const uint32_t pitch = V012MinPitch(s.w);
  Buffer src(size_t{pitch} * s.h), dst(size_t{s.w} * 2 * s.h);
  for (auto _ : state) {
    cycbcr_012v_to_uyvy(dst.data(), src.data(), s.w, s.h, s.w * 2, pitch);
    benchmark::ClobberMemory();
  }
  SetBytes(state, size_t{pitch} * s.h, size_t{s.w} * 2 * s.h);
}

// range(1): 0 the export at the processor's level (one 256-bit pass on AVX2
// hosts), 1 the export at the baseline (eight threads above 2048 pixels), 2 the
// portable single-threaded kernel, 3 the 256-bit kernel.
void BM_yuv422p10_to_012v(benchmark::State& state) {
  const Size s = SizeOf(state);
  const int64_t mode = state.range(1);
  if (mode == 3 && (CPUFeatureFlags() & kFeatAvx2) == 0) {
    state.SkipWithError("no AVX2");
    return;
  }
  Level level(mode == 1);
  const uint32_t pitch = V012MinPitch(s.w), ss = s.w * 2;
  Buffer y(size_t{ss} * s.h + 64), cb(size_t{ss} / 2 * s.h + 64), cr(size_t{ss} / 2 * s.h + 64),
      dst(size_t{pitch} * s.h);
  const auto* py = reinterpret_cast<const uint16_t*>(y.data());
  const auto* pcb = reinterpret_cast<const uint16_t*>(cb.data());
  const auto* pcr = reinterpret_cast<const uint16_t*>(cr.data());
  const transcode::HbdFrame frame{dst.data(), py, pcb, pcr, s.w, s.h, pitch, ss};
  for (auto _ : state) {
    switch (mode) {
      case 2: transcode::HbdTo012vFrame(transcode::HbdSource::k422p10, frame); break;
#if defined(__x86_64__) || defined(_M_X64)
      case 3: transcode::HbdTo012vFrameAvx2(transcode::HbdSource::k422p10, frame); break;
#endif
      default: cycbcr_yuv422p10_to_012v(dst.data(), py, pcb, pcr, s.w, s.h, pitch, ss); break;
    }
    benchmark::ClobberMemory();
  }
  SetBytes(state, size_t{ss} * 2 * s.h, size_t{pitch} * s.h);
}

BENCHMARK(BM_uyvy_to_012v)->ArgsProduct({{0, 1}, {0, 1}})->ArgNames({"uhd", "baseline"});
BENCHMARK(BM_012v_to_uyvy)->ArgsProduct({{0, 1}, {0, 1}})->ArgNames({"uhd", "baseline"});
BENCHMARK(BM_yuv422p10_to_012v)->ArgsProduct({{0, 1}, {0, 1, 2, 3}})->ArgNames({"uhd", "mode"})->UseRealTime();

}  // namespace
}  // namespace zelt::bench
