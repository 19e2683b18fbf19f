// Conversions the concurrency tests run from many threads at once. Each job is
// deterministic: the same seed gives the same output bytes, whichever thread runs
// it and whatever else runs beside it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zelt::stress {

struct Job {
  std::string name;
  std::function<std::vector<uint8_t>(uint32_t seed)> run;
};

// Every dispatcher route (sized by test::FrameBytes) and every direct export
// listed in jobs.cpp.
std::vector<Job> AllJobs();

}  // namespace zelt::stress
