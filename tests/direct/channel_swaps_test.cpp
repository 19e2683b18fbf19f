// Channel-order exports: each one's byte permutation, on every path, in place,
// overlapping, and across the block/scalar boundaries.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "support/aligned.h"
#include "support/buffers.h"
#include "support/levels.h"
#include "zelt/direct.h"

namespace zelt {
namespace {

using SwapFn = uint32_t (*)(uint32_t*, const uint32_t*, uint64_t);

// out byte i = in byte from[i], bytes numbered in memory order (byte 0 = bits 0-7).
struct SwapCase {
  const char* name;
  SwapFn fn;
  std::array<int, 4> from;
  uint32_t of11223344;  // the result for the word 0x11223344
};

const SwapCase kSwaps[] = {
    {"abgr2argb", abgr2argb, {2, 1, 0, 3}, 0x11443322u},
    {"argb2abgr", argb2abgr, {2, 1, 0, 3}, 0x11443322u},
    {"bgra2rgba", bgra2rgba, {2, 1, 0, 3}, 0x11443322u},
    {"argb2rgba", argb2rgba, {3, 1, 2, 0}, 0x44223311u},
    {"argb2bgra", argb2bgra, {3, 2, 1, 0}, 0x44332211u},
    {"bgra2argb", bgra2argb, {3, 2, 1, 0}, 0x44332211u},
    {"abgr2bgra", abgr2bgra, {3, 0, 1, 2}, 0x22334411u},
    {"bgra2abgr", bgra2abgr, {1, 2, 3, 0}, 0x44112233u},
    {"rgba2argb", rgba2argb, {1, 2, 3, 0}, 0x44112233u},
    {"bgra2abgrMMX", bgra2abgrMMX, {1, 2, 3, 0}, 0x44112233u},
    {"abgr2bgraMMX", abgr2bgraMMX, {1, 2, 3, 0}, 0x44112233u},  // a right rotation, unlike abgr2bgra
};

uint32_t Permute(const SwapCase& c, uint32_t x) {
  uint8_t in[4], out[4];
  std::memcpy(in, &x, 4);
  for (int i = 0; i < 4; ++i) out[i] = in[c.from[i]];
  std::memcpy(&x, out, 4);
  return x;
}

std::vector<uint32_t> Words(size_t n, uint32_t seed) {
  const std::vector<uint8_t> b = test::RandomBytes(4 * n, seed);
  std::vector<uint32_t> w(n);
  if (n != 0) std::memcpy(w.data(), b.data(), 4 * n);
  return w;
}

std::vector<uint8_t> AsBytes(const uint32_t* p, size_t n) {
  const auto* b = reinterpret_cast<const uint8_t*>(p);
  return {b, b + 4 * n};
}

// Pixel counts around every block size of the three paths (8, 16, 32 and the
// 32-pixel minimum of the 128-bit path) and the widths of real pictures.
std::vector<size_t> Counts() {
  std::vector<size_t> c = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 32, 33, 39, 47, 48, 63, 64, 65, 95, 96, 97, 1283, 1920};
  for (uint32_t w : test::InterestingWidths()) c.push_back(w);
  return c;
}

TEST(ChannelSwaps, WordWithFourDifferentBytes) {
  for (const SwapCase& c : kSwaps) {
    for (const test::PathResult& r : test::RunEveryLevel([&] {
           // 40 copies: long enough for the block paths, with scalar leftovers.
           std::vector<uint32_t> src(40, 0x11223344u), dst(40, 0);
           c.fn(dst.data(), src.data(), src.size());
           return AsBytes(dst.data(), dst.size());
         })) {
      uint32_t first, last;
      std::memcpy(&first, r.bytes.data(), 4);
      std::memcpy(&last, r.bytes.data() + r.bytes.size() - 4, 4);
      EXPECT_EQ(first, c.of11223344) << c.name << " [" << r.path << "]";
      EXPECT_EQ(last, c.of11223344) << c.name << " [" << r.path << "]";
    }
  }
}

TEST(ChannelSwaps, DistinctBuffersOnEveryPathWithoutStrayWrites) {
  for (const SwapCase& c : kSwaps) {
    for (size_t n : Counts()) {
      const std::vector<uint32_t> src = Words(n, static_cast<uint32_t>(n) + 5);
      std::vector<uint32_t> want(n);
      for (size_t i = 0; i < n; ++i) want[i] = Permute(c, src[i]);
      for (const test::PathResult& r : test::RunEveryLevel([&] {
             test::GuardedBuffer s(4 * n), d(4 * n, 64, 0xA5);
             if (n != 0) std::memcpy(s.data(), src.data(), 4 * n);
             c.fn(reinterpret_cast<uint32_t*>(d.data()), reinterpret_cast<const uint32_t*>(s.data()), n);
             EXPECT_TRUE(d.GuardsIntact() && s.GuardsIntact()) << c.name << " n=" << n;
             return d.Bytes();
           })) {
        EXPECT_EQ(r.bytes, AsBytes(want.data(), n))
            << c.name << " n=" << n << " [" << r.path << "]: " << test::FirstDifference(r.bytes, AsBytes(want.data(), n));
      }
    }
  }
}

// In place, one pixel behind (dst = src - 1) and one pixel ahead (dst = src + 1).
// Ahead, every path gives the pixel-by-pixel result from the start of the run:
// each pixel is read after its predecessor's result landed on it.
TEST(ChannelSwaps, InPlaceAndOverlappingRuns) {
  for (const SwapCase& c : kSwaps) {
    for (size_t n : {5ul, 31ul, 32ul, 33ul, 64ul, 100ul, 257ul}) {
      for (int shift : {0, -1, 1}) {
        const std::vector<uint32_t> orig = Words(n + 1, static_cast<uint32_t>(n * 3 + shift + 7));
        // Source run at word 1 of the buffer when the destination is one behind,
        // at word 0 otherwise.
        const size_t srcAt = shift < 0 ? 1 : 0, dstAt = srcAt + shift;
        std::vector<uint32_t> want = orig;
        for (size_t i = 0; i < n; ++i) want[dstAt + i] = Permute(c, want[srcAt + i]);
        for (const test::PathResult& r : test::RunEveryLevel([&] {
               std::vector<uint32_t> buf = orig;
               c.fn(buf.data() + dstAt, buf.data() + srcAt, n);
               return AsBytes(buf.data(), buf.size());
             })) {
          EXPECT_EQ(r.bytes, AsBytes(want.data(), want.size()))
              << c.name << " n=" << n << " shift=" << shift << " [" << r.path
              << "]: " << test::FirstDifference(r.bytes, AsBytes(want.data(), want.size()));
        }
      }
    }
  }
}

TEST(ChannelSwaps, OnlyTheLow32BitsOfTheCountAreUsed) {
  for (const SwapCase& c : kSwaps) {
    for (const test::PathResult& r : test::RunEveryLevel([&] {
           std::vector<uint32_t> src(48, 0x11223344u), dst(48, 0xDEADBEEFu);
           c.fn(dst.data(), src.data(), (uint64_t{1} << 32) + 40);
           c.fn(dst.data() + 44, src.data(), uint64_t{1} << 32);  // a count of 0
           return AsBytes(dst.data(), dst.size());
         })) {
      for (size_t i = 0; i < 48; ++i) {
        uint32_t w;
        std::memcpy(&w, r.bytes.data() + 4 * i, 4);
        EXPECT_EQ(w, i < 40 ? c.of11223344 : 0xDEADBEEFu) << c.name << " pixel " << i << " [" << r.path << "]";
      }
    }
  }
}

// Runs far larger than the cache, with an aligned destination, take streaming
// stores on the 256-bit path; the bytes stay those of every other path.
TEST(ChannelSwaps, LargeAlignedRuns) {
  const size_t n = 2200000 + 5;
  const std::vector<uint32_t> src = Words(n, 77);
  for (const SwapCase& c : {kSwaps[0], kSwaps[6]}) {
    std::vector<uint32_t> want(n);
    for (size_t i = 0; i < n; ++i) want[i] = Permute(c, src[i]);
    for (const test::PathResult& r : test::RunEveryPath([&] {
           test::AlignedBytes s(4 * n), d(4 * n);
           std::memcpy(s.data(), src.data(), 4 * n);
           c.fn(reinterpret_cast<uint32_t*>(d.data()), reinterpret_cast<const uint32_t*>(s.data()), n);
           return d.Bytes();
         })) {
      EXPECT_TRUE(r.bytes == AsBytes(want.data(), n)) << c.name << " [" << r.path << "]";
    }
  }
}

}  // namespace
}  // namespace zelt
