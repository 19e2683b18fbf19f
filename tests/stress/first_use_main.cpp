// The first conversion of a process chooses the processor level. This program
// starts its threads before anything has converted (SimdLevel is still -2), lets
// them all convert at the same instant, and checks that every output equals the
// single-threaded result and that the level settled on the one SimdGuard chooses.
//
// It also prints the level, which the emulator run checks: under a processor model
// without AVX2 the level must be below 5.
//
//   zelt_first_use                run the check, print "level N"
//   zelt_first_use --force-avx2   pretend the processor has AVX2 and convert: on a
//                                 processor without it this must die of SIGILL
//                                 (proves an emulator would catch a stray AVX2 path)
#include <cstdio>
#include <cstring>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "stress/jobs.h"
#include "core/simd_level.h"
#include "core/testing.h"
#include "zelt/ycbcr.h"

int main(int argc, char** argv) {
  using namespace zelt;
  if (argc > 1 && std::strcmp(argv[1], "--force-avx2") == 0) {
    testing::ForceFeatureMask((1u << 5) | (1u << 7) | (1u << 13) | (1u << 14) | (1u << 23));
    std::vector<uint8_t> src(4096, 0x11), dst(4096);
    cycbcr_uyvy_to_yuy2(dst.data(), src.data(), 1024, 2, 2048, 2048);
    std::printf("level %d: the AVX2 path ran\n", CurrentSimdLevel());
    return 0;
  }

  const int32_t before = CurrentSimdLevel();
  if (before != -2) {
    std::fprintf(stderr, "level already %d before the first conversion\n", before);
    return 1;
  }

  const std::vector<stress::Job> jobs = stress::AllJobs();
  const int threads = 16;
  std::vector<std::vector<std::vector<uint8_t>>> outputs(threads);
  {
    std::latch start(threads);
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t) {
      pool.emplace_back([&, t] {
        start.arrive_and_wait();
        for (size_t k = 0; k < jobs.size(); ++k) outputs[t].push_back(jobs[(k + t) % jobs.size()].run(1));
      });
    }
    for (auto& th : pool) th.join();
  }

  const int32_t chosen = CurrentSimdLevel();
  int failures = 0;
  for (int t = 0; t < threads; ++t) {
    for (size_t k = 0; k < jobs.size(); ++k) {
      const stress::Job& job = jobs[(k + t) % jobs.size()];
      if (outputs[t][k] != job.run(1)) {
        std::fprintf(stderr, "thread %d: %s differs from the single-threaded result\n", t, job.name.c_str());
        ++failures;
      }
    }
  }
  const int32_t expected = SelectSimdLevel(5);
  if (chosen != expected) {
    std::fprintf(stderr, "threads settled on level %d, the guard chooses %d\n", chosen, expected);
    ++failures;
  }
  std::printf("level %d after %d threads x %zu conversions, %d failures\n", chosen, threads, jobs.size(), failures);
  return failures == 0 ? 0 : 1;
}
