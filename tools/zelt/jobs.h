// File jobs of `zelt convert`: the transcoder's routes between format codes, and
// named jobs of the other families registered by jobs_*.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "cli.h"

namespace zelt::tool {

struct Geometry {
  uint32_t w = 0, h = 0;
  uint32_t srcStride = 0, dstStride = 0;  // 0 until chosen: the natural stride
  uint32_t matrix = 0, flags = 0;
};

struct Job {
  std::string from, to;      // names as typed on the command line
  std::string description;
  // Fills in default strides and refuses ones the conversion cannot use (Fail()).
  std::function<void(Geometry&)> prepare;
  std::function<uint64_t(const Geometry&)> inBytes;   // one input frame
  std::function<uint64_t(const Geometry&)> outBytes;  // one output frame
  // Converts one frame. `in` and `out` have at least 4096 bytes of slack past the
  // frame for the documented over-reads and over-writes.
  std::function<void(const Geometry&, uint8_t* in, uint8_t* out)> run;
};

// Named jobs beyond the transcoder; jobs_*.cpp add theirs with a JobRegistration.
std::vector<Job>& ExtraJobs();
struct JobRegistration {
  explicit JobRegistration(Job job) { ExtraJobs().push_back(std::move(job)); }
};

// The job for a pair of names: a transcoder route, or a registered job.
// Fails with a message naming the problem (unknown name, no route).
Job FindJob(const std::string& from, const std::string& to);

// Every transcoder pair that has a route, as (source name, destination name).
std::vector<std::pair<std::string, std::string>> TranscoderRoutes();

}  // namespace zelt::tool
