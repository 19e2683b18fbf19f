// Many threads converting at once must produce exactly the bytes one thread does.
#include <gtest/gtest.h>

#include <algorithm>
#include <latch>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "stress/jobs.h"
#include "support/paths.h"
#include "core/simd_level.h"
#include "core/testing.h"

namespace zelt {
namespace {

constexpr uint32_t kSeeds = 2;

std::vector<std::vector<std::vector<uint8_t>>> References(const std::vector<stress::Job>& jobs) {
  std::vector<std::vector<std::vector<uint8_t>>> refs(jobs.size());
  for (size_t j = 0; j < jobs.size(); ++j) {
    for (uint32_t s = 0; s < kSeeds; ++s) refs[j].push_back(jobs[j].run(s));
  }
  return refs;
}

// Each thread walks the whole job list from its own starting point, so at any
// moment different converters (and the same converter on different frames) run
// side by side.
void Hammer(int threads, int rounds, bool resetLevelFirst) {
  const std::vector<stress::Job> jobs = stress::AllJobs();
  ASSERT_FALSE(jobs.empty());
  const auto refs = References(jobs);
  if (resetLevelFirst) zelt::testing::ResetSimdLevel();

  std::mutex mu;
  std::vector<std::string> mismatches;
  std::latch start(threads);
  std::vector<std::thread> pool;
  for (int t = 0; t < threads; ++t) {
    pool.emplace_back([&, t] {
      start.arrive_and_wait();
      for (int r = 0; r < rounds; ++r) {
        for (size_t k = 0; k < jobs.size(); ++k) {
          const size_t j = (k + static_cast<size_t>(t) * 7) % jobs.size();
          const uint32_t seed = static_cast<uint32_t>(r + t) % kSeeds;
          if (jobs[j].run(seed) != refs[j][seed]) {
            std::lock_guard<std::mutex> lock(mu);
            mismatches.push_back(jobs[j].name + " seed " + std::to_string(seed));
          }
        }
      }
    });
  }
  for (auto& th : pool) th.join();
  EXPECT_TRUE(mismatches.empty()) << mismatches.size() << " mismatches, first: " << mismatches.front();
  EXPECT_NE(CurrentSimdLevel(), -2);
}

TEST(Concurrency, ThreadsRacingThroughTheLevelGuardMatchOneThread) {
  Hammer(/*threads=*/8, /*rounds=*/4, /*resetLevelFirst=*/true);
}

TEST(Concurrency, SustainedMixedLoadMatchesOneThread) {
  const int threads = static_cast<int>(std::clamp(std::thread::hardware_concurrency() * 2, 4u, 16u));
  Hammer(threads, /*rounds=*/20, /*resetLevelFirst=*/false);
}

TEST(Concurrency, BaselineLevelWithThreadedConvertersMatchesOneThread) {
  // Below level 5 the wide high-bit-depth converters split frames over worker
  // threads of their own, so here every thread's call starts workers too.
  test::ScopedFeatures baseline(test::kMaskSse41);
  Hammer(/*threads=*/6, /*rounds=*/4, /*resetLevelFirst=*/false);
}

}  // namespace
}  // namespace zelt
