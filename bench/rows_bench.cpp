// Row pipeline over HD frames, row by row as a caller drives it: v210 unpacking to
// 16-bit planes, the 10-bit matrix packer to RGB32, and the in-place range mapping.
// Each job has a memcpy twin moving the same number of bytes (read + written), so the
// figures compare in one run.
#include <cstring>

#include "bench_util.h"
#include "zelt/rows.h"

namespace zelt::bench {
namespace {

constexpr uint32_t kW = kHd.w, kH = kHd.h;
constexpr size_t kV210Pitch = 5120;                   // 1920 pixels, 128 bytes per 48
constexpr size_t kV210Bytes = kV210Pitch * kH;
constexpr size_t kPlanes16Bytes = size_t{kW} * kH * 4;  // Y + Cb + Cr, 16 bits each (4:2:2)

void BM_V210RowToYUV16(benchmark::State& state) {
  Buffer src(kV210Bytes), planes(kPlanes16Bytes);
  uint16_t* y = reinterpret_cast<uint16_t*>(planes.data());
  uint16_t* cb = y + size_t{kW} * kH;
  uint16_t* cr = cb + size_t{kW / 2} * kH;
  for (auto _ : state) {
    for (uint32_t r = 0; r < kH; ++r)
      zeltV210RowToYUV16(src.data() + r * kV210Pitch, y + size_t{r} * kW, cb + size_t{r} * kW / 2,
                         cr + size_t{r} * kW / 2, kW);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kV210Bytes, kPlanes16Bytes);
}

void BM_V210RowToPlanar16s(benchmark::State& state) {
  Buffer src(kV210Bytes), planes(kPlanes16Bytes);
  int16_t* y = reinterpret_cast<int16_t*>(planes.data());
  int16_t* cr = y + size_t{kW} * kH;
  int16_t* cb = cr + size_t{kW / 2} * kH;
  for (auto _ : state) {
    for (uint32_t r = 0; r < kH; ++r)
      zeltV210RowToPlanar16s(src.data() + r * kV210Pitch, kW, y + size_t{r} * kW, cr + size_t{r} * kW / 2,
                             cb + size_t{r} * kW / 2);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kV210Bytes, kPlanes16Bytes);
}

void BM_Unpacked16sRowToRGB32(benchmark::State& state) {
  Buffer planes(kPlanes16Bytes), dst(size_t{kW} * kH * 4);
  uint16_t* y = reinterpret_cast<uint16_t*>(planes.data());
  for (size_t i = 0; i < kPlanes16Bytes / 2; ++i) y[i] &= 0x3FF;  // 10-bit rows
  uint16_t* cr = y + size_t{kW} * kH;
  uint16_t* cb = cr + size_t{kW / 2} * kH;
  for (auto _ : state) {
    for (uint32_t r = 0; r < kH; ++r) {
      ZeltPlanes p = {{y + size_t{r} * kW, cr + size_t{r} * kW / 2, cb + size_t{r} * kW / 2}};
      zeltUnpacked16sRowToRGB32(&p, nullptr, dst.data() + size_t{r} * kW * 4, kW, 2, 8, 2, 255);
    }
    benchmark::ClobberMemory();
  }
  SetBytes(state, kPlanes16Bytes, size_t{kW} * kH * 4);
}

void BM_CGRGBtoVSRGB(benchmark::State& state) {
  const int bits = static_cast<int>(state.range(0));
  Buffer frame(size_t{kW} * kH * 6);
  for (auto _ : state) {
    zeltCGRGBtoVSRGB(reinterpret_cast<uint16_t*>(frame.data()), kW * kH, bits);
    benchmark::ClobberMemory();
  }
  SetBytes(state, frame.size, frame.size);
}

// memcpy of `n` bytes read and `n` written; the args match the jobs above:
// v210 unpack (5.53 MB in + 8.29 MB out), RGB32 pack (8.29 + 8.29), range (12.44 + 12.44).
void BM_memcpy_rows(benchmark::State& state) {
  const size_t n = static_cast<size_t>(state.range(0));
  RunMemcpy(state, n);
}

BENCHMARK(BM_V210RowToYUV16)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_V210RowToPlanar16s)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Unpacked16sRowToRGB32)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CGRGBtoVSRGB)->Arg(16)->Arg(10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_memcpy_rows)
    ->Arg((kV210Bytes + kPlanes16Bytes) / 2)
    ->Arg(size_t{kW} * kH * 4)
    ->Arg(size_t{kW} * kH * 6)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zelt::bench
