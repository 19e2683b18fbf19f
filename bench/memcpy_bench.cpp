// The yardstick: memcpy of a frame of each size used by the other jobs.
#include <cstring>

#include "bench_util.h"
#include "core/platform.h"

namespace zelt::bench {
namespace {

void BM_memcpy(benchmark::State& state) {
  const size_t n = static_cast<size_t>(state.range(0));
  RunMemcpy(state, n);
}

void BM_CopyMemoryFast(benchmark::State& state) {
  const size_t n = static_cast<size_t>(state.range(0));
  Buffer src(n), dst(n);
  for (auto _ : state) {
    zelt::CopyMemoryFast(dst.data(), src.data(), n);
    benchmark::ClobberMemory();
  }
  SetBytes(state, n, n);
}

// Byte sizes of the frames the jobs move: 8-bit 4:2:2 and RGB32 at HD and UHD,
// v210 at HD and UHD, I420 at UHD.
#define ZELT_FRAME_SIZES                                                                     \
  Arg(1920 * 1080 * 2)->Arg(3840 * 2160 * 2)->Arg(1920 * 1080 * 4)->Arg(3840 * 2160 * 4) \
      ->Arg(5120 * 1080)->Arg(10240 * 2160)->Arg(3840 * 2160 * 3 / 2)->Arg(64 * 1024)
BENCHMARK(BM_memcpy)->ZELT_FRAME_SIZES;
BENCHMARK(BM_CopyMemoryFast)->ZELT_FRAME_SIZES;

}  // namespace
}  // namespace zelt::bench
