// PQ tables against the ST 2084 curve computed here, the listed checkpoints, and
// the converters' byte, 2vuy and v210 behaviour (offsets, overruns, index spill).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <vector>

#include "support/buffers.h"
#include "zelt/pq.h"

namespace zelt {
namespace {

using test::GuardedBuffer;
using test::RandomBytes;
using Bytes = std::vector<uint8_t>;

// SMPTE ST 2084 constants, from their defining fractions.
const double m1 = 2610.0 / 16384.0, m2 = 2523.0 / 4096.0 * 128.0, c1 = 3424.0 / 4096.0, c2 = 2413.0 / 4096.0 * 32.0,
             c3 = 2392.0 / 4096.0 * 32.0;
double LinearToPq(double l) {
  const double lm = std::pow(l, m1);
  return std::pow((c1 + c2 * lm) / (1.0 + c3 * lm), m2);
}
double PqToLinear(double n) {
  const double p = std::pow(n, 1.0 / m2);
  return std::pow(std::max(p - c1, 0.0) / (c2 - c3 * p), 1.0 / m1);
}

struct Table {
  const char* name;
  const uint32_t* (*get)();
  uint32_t size;
};
const Table kTables[] = {
    {"RGB_to_SMPTE2048_12Bit", get_ardwRGB_to_SMPTE2048_12Bit, 4096},
    {"RGB_to_SMPTE2048_10Bit", get_ardwRGB_to_SMPTE2048_10Bit, 1024},
    {"RGB_to_SMPTE2048_8Bit", get_ardwRGB_to_SMPTE2048_8Bit, 256},
    {"SMPTE2048_to_RGB_12Bit", get_ardwSMPTE2048_to_RGB_12Bit, 4096},
    {"SMPTE2048_to_RGB_10Bit", get_ardwSMPTE2048_to_RGB_10Bit, 1024},
    {"SMPTE2048_to_RGB_8Bit", get_ardwSMPTE2048_to_RGB_8Bit, 256},
};

// Regenerates each table the way scripts/pqgen.py builds it.
std::vector<uint32_t> Regenerate(int t) {
  auto curve = [](int bits, double (*f)(double)) {
    const uint32_t n = 1u << bits;
    std::vector<uint32_t> out(n);
    for (uint32_t i = 0; i < n; ++i) out[i] = std::min<uint32_t>(static_cast<uint32_t>(std::floor(n * f(double(i) / n))), n - 1);
    return out;
  };
  auto roundDiv = [](uint32_t num, uint32_t den) { return (2 * num + den) / (2 * den); };
  switch (t) {
    case 0: return curve(12, LinearToPq);
    case 1: return curve(10, LinearToPq);
    case 2: return curve(8, LinearToPq);
    case 3: return curve(12, PqToLinear);
    case 4: {
      std::vector<uint32_t> out(1024);
      for (uint32_t i = 0; i < 1024; ++i) out[i] = i < 64 ? i : i < 512 ? 64 + roundDiv((i - 64) * 876, 448) : 940;
      return out;
    }
    default: {
      const uint32_t kx[] = {16, 32, 64, 96, 112, 120, 124, 128, 136}, ky[] = {16, 21, 59, 130, 177, 203, 217, 231, 235};
      std::vector<uint32_t> out(256);
      for (uint32_t i = 0; i < 256; ++i) {
        if (i <= 16) {
          out[i] = i;
        } else if (i >= 136) {
          out[i] = 235;
        } else {
          int k = 0;
          while (kx[k + 1] < i) ++k;
          out[i] = ky[k] + roundDiv((i - kx[k]) * (ky[k + 1] - ky[k]), kx[k + 1] - kx[k]);
        }
      }
      return out;
    }
  }
}

TEST(PqTables, RegeneratedEntryForEntry) {
  for (int t = 0; t < 6; ++t) {
    const std::vector<uint32_t> want = Regenerate(t);
    const uint32_t* got = kTables[t].get();
    for (uint32_t i = 0; i < kTables[t].size; ++i) ASSERT_EQ(got[i], want[i]) << kTables[t].name << " entry " << i;
  }
}

TEST(PqTables, Checkpoints) {
  struct Row {
    int table;
    uint32_t index, value;
  };
  const Row rows[] = {
      {0, 0, 0}, {0, 1, 820}, {0, 2, 1008}, {0, 3, 1129}, {0, 1024, 3488}, {0, 2048, 3795}, {0, 3072, 3971}, {0, 4095, 4095},
      {1, 0, 0}, {1, 1, 304}, {1, 2, 363}, {1, 3, 400}, {1, 256, 872}, {1, 512, 948}, {1, 768, 992}, {1, 1023, 1023},
      {2, 0, 0}, {2, 1, 106}, {2, 2, 123}, {2, 4, 141}, {2, 8, 160}, {2, 16, 179}, {2, 32, 198}, {2, 64, 218},
      {2, 128, 237}, {2, 192, 248}, {2, 235, 253}, {2, 255, 255},
      {3, 0, 0}, {3, 512, 0}, {3, 1024, 2}, {3, 2048, 37}, {3, 2560, 126}, {3, 3072, 402}, {3, 3584, 1269},
      {3, 3760, 1890}, {3, 4000, 3277}, {3, 4095, 4086},
      {4, 100, 134}, {4, 200, 330}, {4, 300, 525}, {4, 400, 721}, {4, 450, 819}, {4, 480, 877}, {4, 500, 917},
      {5, 32, 21}, {5, 64, 59}, {5, 96, 130}, {5, 112, 177}, {5, 120, 203}, {5, 124, 217}, {5, 128, 231},
  };
  for (const Row& r : rows) EXPECT_EQ(kTables[r.table].get()[r.index], r.value) << kTables[r.table].name << "[" << r.index << "]";
  // Below video black unchanged, from video white's code on clipped.
  for (uint32_t i = 0; i <= 64; ++i) EXPECT_EQ(get_ardwSMPTE2048_to_RGB_10Bit()[i], i);
  for (uint32_t i = 512; i < 1024; ++i) EXPECT_EQ(get_ardwSMPTE2048_to_RGB_10Bit()[i], 940u);
  for (uint32_t i = 0; i <= 16; ++i) EXPECT_EQ(get_ardwSMPTE2048_to_RGB_8Bit()[i], i);
  for (uint32_t i = 136; i < 256; ++i) EXPECT_EQ(get_ardwSMPTE2048_to_RGB_8Bit()[i], 235u);
}

TEST(PqTables, MonotonicSaturatingAndStoredBackToBack) {
  const uint32_t last[] = {4095, 1023, 255, 4086, 940, 235};
  for (int t = 0; t < 6; ++t) {
    const uint32_t* p = kTables[t].get();
    EXPECT_TRUE(std::is_sorted(p, p + kTables[t].size)) << kTables[t].name;
    EXPECT_EQ(p[kTables[t].size - 1], last[t]) << kTables[t].name;
    if (t < 5) {
      EXPECT_EQ(p + kTables[t].size, kTables[t + 1].get()) << "storage order after " << kTables[t].name;
    }
  }
}

// ---- converters ----------------------------------------------------------

using Conv = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t);

TEST(PqBytes, EveryByteOverTheShorterStride) {
  struct Row {
    Conv fn;
    const uint32_t* table;
    uint8_t in, out;
  };
  const Row rows[] = {{zlt_rgb_to_st2084, get_ardwRGB_to_SMPTE2048_8Bit(), 1, 106},
                      {zlt_rgb_to_st2084, get_ardwRGB_to_SMPTE2048_8Bit(), 255, 255},
                      {zlt_st2084_to_rgb, get_ardwSMPTE2048_to_RGB_8Bit(), 200, 235},
                      {zlt_st2084_to_rgb, get_ardwSMPTE2048_to_RGB_8Bit(), 10, 10}};
  for (const Row& r : rows) {
    uint8_t d = 0;
    r.fn(&d, &r.in, 1, 1, 1);
    EXPECT_EQ(d, r.out);
    for (auto [ds, ss] : {std::pair{16u, 16u}, std::pair{12u, 20u}, std::pair{21u, 7u}}) {
      const uint32_t h = 3;
      const Bytes src = RandomBytes(size_t{ss} * h, ds + ss);
      GuardedBuffer dst(size_t{ds} * h, 64, 0x77);
      EXPECT_EQ(r.fn(dst.data(), src.data(), ds, ss, h), 0u);
      EXPECT_TRUE(dst.GuardsIntact());
      for (uint32_t y = 0; y < h; ++y)
        for (uint32_t i = 0; i < ds; ++i)
          ASSERT_EQ(dst.data()[y * ds + i], i < std::min(ds, ss) ? r.table[src[y * ss + i]] : 0x77) << y << " " << i;
    }
  }
}

TEST(Pq2vuy, LumaOnlyAndTheOneByteShift) {
  const uint32_t* lin2pq = get_ardwRGB_to_SMPTE2048_8Bit();
  const uint32_t* pq2lin = get_ardwSMPTE2048_to_RGB_8Bit();
  for (auto [ds, ss] : {std::pair{16u, 16u}, std::pair{10u, 24u}, std::pair{3u, 3u}, std::pair{19u, 13u}}) {
    const uint32_t h = 2, groups = std::min(ds, ss) / 4;
    const Bytes src = RandomBytes(size_t{ss} * h + 1, ds);
    // To PQ: luma bytes of whole groups replaced, every other byte untouched.
    {
      GuardedBuffer dst(size_t{ds} * h, 64, 0x33);
      zlt_yuv2_to_st2084(dst.data(), src.data(), ds, ss, h);
      EXPECT_TRUE(dst.GuardsIntact());
      Bytes want(size_t{ds} * h, 0x33);
      for (uint32_t y = 0; y < h; ++y)
        for (uint32_t k = 0; k < groups; ++k)
          for (uint32_t b : {1u, 3u}) want[y * ds + 4 * k + b] = static_cast<uint8_t>(lin2pq[src[y * ss + 4 * k + b]]);
      EXPECT_EQ(dst.Bytes(), want) << ds << "/" << ss;
    }
    // From PQ: bytes 1..4 of each group copied first, so byte 0 of a line stays
    // and the last group's copy lands one byte past it.
    {
      GuardedBuffer dst(size_t{ds} * h, 64, 0x33);
      zlt_st2084_to_yuv2(dst.data(), src.data(), ds, ss, h);
      EXPECT_TRUE(dst.GuardsIntact(groups != 0 ? 1 : 0));
      Bytes want(size_t{ds} * h + 1, 0x33);
      for (uint32_t y = 0; y < h; ++y)
        for (uint32_t k = 0; k < groups; ++k) {
          for (uint32_t b = 1; b <= 4; ++b) want[y * ds + 4 * k + b] = src[y * ss + 4 * k + b];
          for (uint32_t b : {1u, 3u}) want[y * ds + 4 * k + b] = static_cast<uint8_t>(pq2lin[src[y * ss + 4 * k + b]]);
        }
      want.resize(size_t{ds} * h);
      EXPECT_EQ(dst.Bytes(), want) << ds << "/" << ss;
      if (groups != 0) {
        EXPECT_EQ(dst.data()[0], 0x33);
      }
    }
  }
}

// A v210 step seen at byte offset 1: word w0 carries a table index in bits
// 12-21, w1 in bits 2-11 and 22-31; the other bits pass through.
uint32_t Word(const uint8_t* p) {
  uint32_t w;
  std::memcpy(&w, p, 4);
  return w;
}
void PutWord(uint8_t* p, uint32_t w) { std::memcpy(p, &w, 4); }

TEST(PqV210, WordsAtByteOffsetOneAndTheIndexSpill) {
  struct Row {
    Conv fn;
    const uint32_t* table;  // the 8-bit table of the direction
    const uint32_t* next;   // what index 256 reads
  };
  const uint32_t* tail = get_ardwSMPTE2048_to_RGB_8Bit() + 256;
  const Row rows[] = {{zlt_v210_to_st2084, get_ardwRGB_to_SMPTE2048_8Bit(), get_ardwSMPTE2048_to_RGB_12Bit()},
                      {zlt_st2084_to_v210, get_ardwSMPTE2048_to_RGB_8Bit(), tail}};
  for (const Row& r : rows) {
    EXPECT_EQ(r.table + 256, r.next);
    // Indices below 256, at 256 and far into the following storage.
    const uint32_t idx[] = {1, 255, 256, 900, 1023, 17};
    Bytes src(33, 0);
    src[0] = 0x5A;
    // The index of an even word (bits 12-21) overlaps the kept bits 20-29; the
    // odd words' indices (bits 2-11, 22-31) overlap their kept bits 10-19.
    const uint32_t w[4] = {idx[0] << 12 | 0x2A800155u, idx[1] << 22 | idx[2] << 2 | 0x000A5000u, idx[3] << 12,
                           idx[4] << 22 | idx[5] << 2 | 3u};
    for (int i = 0; i < 4; ++i) PutWord(&src[1 + 4 * i], w[i]);
    GuardedBuffer dst(16, 64, 0xC3);
    r.fn(dst.data(), src.data(), 16, 16, 1);
    // One step of 16 bytes from byte 1: the step's last byte lies one past the line.
    EXPECT_TRUE(dst.GuardsIntact(1));
    EXPECT_EQ(dst.data()[0], 0xC3) << "byte 0 of the line is not written";
    auto T = [&](uint32_t i) { return r.table[i]; };
    EXPECT_EQ(Word(dst.data() + 1), T(idx[0]) << 12 | 0x2A800155u);
    EXPECT_EQ(Word(dst.data() + 5), (((T(idx[1]) << 20) | T(idx[2])) * 4u) | (w[1] & 0x000FFC00u));
    EXPECT_EQ(Word(dst.data() + 9), T(idx[3]) << 12 | (w[2] & 0x3FF00000u));
    EXPECT_EQ(Word(dst.data() + 13), (((T(idx[4]) << 20) | T(idx[5])) * 4u) | (w[3] & 0x000FFC00u));
  }
}

TEST(PqV210, StepsCoverTheShorterStrideRoundedUp) {
  // ((min - 1) >> 4) + 1 steps of 16 bytes from byte 1 on: allowance past each line.
  for (auto [ds, ss] : {std::pair{32u, 32u}, std::pair{40u, 64u}, std::pair{64u, 33u}, std::pair{5120u, 5120u}}) {
    const uint32_t m = std::min(ds, ss), steps = ((m - 1) >> 4) + 1, h = 3;
    const Bytes src = RandomBytes(size_t{ss} * h + 32, m);
    const uint32_t reach = 16 * steps + 1;  // bytes [1, reach) of each line are written
    GuardedBuffer dst(size_t{ds} * h, 64, 0x99);
    zlt_v210_to_st2084(dst.data(), src.data(), ds, ss, h);
    EXPECT_TRUE(dst.GuardsIntact(reach > ds ? reach - ds : 0)) << ds << "/" << ss;
    // The last line's bytes up to the reach are written, the rest of its stride not.
    const uint8_t* last = dst.data() + size_t{ds} * (h - 1);
    if (reach < ds) {
      EXPECT_EQ(last[reach], 0x99);
    }
    uint8_t empty = 0x44;
    EXPECT_EQ(zlt_st2084_to_v210(&empty, src.data(), ds, ss, 0), 0u);
    EXPECT_EQ(empty, 0x44);
  }
}

}  // namespace
}  // namespace zelt
