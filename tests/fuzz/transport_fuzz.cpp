// fuzz-requires: zlt_4175_to_v210 zlt_YCbCr10Packed_to_v210
//
// Fuzz target: the readers of the packed 10-bit transport that take lengths.
//   mode 0: zlt_4175_to_v210 with payloads of any length (shorter than announced,
//           empty, negative), any pgroups count and the three start phases. The
//           payload buffer holds exactly srcLength bytes: the reader promises never
//           to touch src + srcLength or beyond.
//   mode 1: zlt_YCbCr10Packed_to_v210, packed lines of width * 20 / 8 bytes back
//           to back, into a v210 frame of exactly height lines.
//   mode 2: zlt_YCbCr10Packetized_to_v210, packets 1220 bytes apart; the source ends
//           with the last byte the packet walk reads (widths from 480 up, so a line
//           has at least one packet).
// Destinations are exact too. With AVX2 on the host, both paths must agree.
//
// Input bytes: 0 mode, 1 phase, 2-3 pgroups or width, 4-5 srcLength or height,
// 6 fields, the rest is the payload.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/platform.h"
#include "core/testing.h"
#include "zelt/rfc4175.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kBaseline = 1u << 5 | 1u << 7 | 1u << 13 | 1u << 14;
constexpr uint32_t kAvx2 = kBaseline | 1u << 23;

// v210 line of a width laid out by the transport functions: 48-pixel blocks of 128 bytes.
size_t V210Line(uint32_t width) { return size_t{(width + 47) / 48} * 128; }

template <class F>
Bytes OnEveryPath(F run) {
  zelt::testing::ForceFeatureMask(kBaseline);
  zelt::testing::ResetSimdLevel();
  Bytes base = run();
  static const bool hostAvx2 = [] {
    zelt::testing::ClearFeatureMask();
    return (zelt::CPUFeatureFlags() & zelt::kFeatAvx2) != 0;
  }();
  if (hostAvx2) {
    zelt::testing::ForceFeatureMask(kAvx2);
    zelt::testing::ResetSimdLevel();
    if (run() != base) {
      std::fprintf(stderr, "the AVX2 path gives other bytes than the baseline\n");
      std::abort();
    }
  }
  zelt::testing::ClearFeatureMask();
  return base;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 7) return 0;
  const uint8_t mode = data[0] % 3;
  const uint32_t phase = (data[1] % 3) * 2;
  const uint16_t a = static_cast<uint16_t>(data[2] | data[3] << 8);
  const uint16_t b = static_cast<uint16_t>(data[4] | data[5] << 8);
  const uint8_t fields = data[6] & 1;
  const Bytes payload(data + 7, data + size);

  if (mode == 0) {
    const int32_t pgroups = static_cast<int32_t>(a % 1024) - 8;
    const int32_t phasePairs = phase == 0 ? 0 : (6 - static_cast<int32_t>(phase)) / 2;
    const int32_t need = (std::max(pgroups, 0) + phasePairs) * 5;
    // Lengths around what the pairs need, and sometimes anything at all.
    const int32_t srcLength = (b & 0x8000) ? static_cast<int32_t>(b & 0x7FFF) - 16 : need - static_cast<int32_t>(b % 24);
    const size_t groups = (phase != 0) + static_cast<size_t>((std::max(pgroups, 0) + 2) / 3);
    OnEveryPath([&] {
      Bytes src(static_cast<size_t>(std::max(srcLength, 0)));
      for (size_t i = 0; i < src.size(); ++i) src[i] = payload.empty() ? uint8_t(i) : payload[i % payload.size()];
      std::vector<uint32_t> dst(groups * 4, 0xC00FF3FFu);
      zlt_4175_to_v210(dst.data(), src.data(), srcLength, pgroups, phase);
      const auto* p = reinterpret_cast<const uint8_t*>(dst.data());
      return Bytes(p, p + dst.size() * 4);
    });
    return 0;
  }

  if (mode == 2) {
    const uint32_t width = 480 + a % 3600, height = 1 + b % 6;
    // The reader's packet walk: perLine packets a line, a new packet every
    // pixelsPerPacket pixels, four samples (five bytes) a pixel pair.
    const uint32_t perLine = (width * height * 20 / 9600) / height;
    const uint32_t pixelsPerPacket = width / perLine;
    size_t extent = 0;
    for (uint32_t n = 0; n < height; ++n) {
      size_t packet = 0, s = 0;
      for (uint32_t x = 0; x < width; x += 2) {
        if (x % pixelsPerPacket == 0) {
          packet = size_t{perLine * n + x / pixelsPerPacket} * 1220;
          s = 0;
        }
        extent = std::max(extent, packet + (s / 4 + 1) * 5);
        s += 4;
      }
    }
    OnEveryPath([&] {
      Bytes src(extent);
      for (size_t i = 0; i < src.size(); ++i) src[i] = payload.empty() ? uint8_t(i * 5) : payload[i % payload.size()];
      Bytes dst(V210Line(width) * height, 0xA5);
      zlt_YCbCr10Packetized_to_v210(dst.data(), src.data(), width, height, fields);
      return dst;
    });
    return 0;
  }

  const uint32_t width = a % 2000, height = b % 12;
  const size_t lineBytes = size_t{width} * 20 / 8;
  OnEveryPath([&] {
    Bytes src(lineBytes * height);
    for (size_t i = 0; i < src.size(); ++i) src[i] = payload.empty() ? uint8_t(i * 7) : payload[i % payload.size()];
    Bytes dst(V210Line(width) * height, 0x5A);
    zlt_YCbCr10Packed_to_v210(dst.data(), src.data(), width, height, fields);
    return dst;
  });
  return 0;
}
