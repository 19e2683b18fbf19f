// zelt bench: throughput of every transcoder route on this machine, as GB/s and as
// a fraction of memcpy moving the same bytes.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "commands.h"
#include "jobs.h"
#include "layouts.h"

namespace zelt::tool {

namespace {

const char* kHelp = R"(usage: zelt bench [--size WxH] [--filter TEXT] [--seconds S]

Times every route of 'zelt convert' that transcodes between layouts (and every
other job) on frames of WxH (default 1920x1080), single-threaded. For each, prints
the bytes read and written per second and that figure as a fraction of memcpy
moving the same bytes (memcpy of half of them, read once and written once), so
1.00 means "as fast as copying". --filter keeps the routes whose name contains
TEXT (for example --filter UYVY); --seconds is the time spent on each (default 0.3).
)";

// Runs fn repeatedly for about `seconds` and returns the best time of one run.
template <typename F>
double BestSeconds(F&& fn, double seconds) {
  using clock = std::chrono::steady_clock;
  fn();  // warm up: page faults, processor level
  double best = 1e30, total = 0;
  int runs = 0;
  while (total < seconds || runs < 3) {
    const auto t0 = clock::now();
    fn();
    const double t = std::chrono::duration<double>(clock::now() - t0).count();
    best = std::min(best, t);
    total += t;
    ++runs;
  }
  return best;
}

}  // namespace

int CmdBench(int argc, char** argv) {
  const Args a = Args::Parse(argc, argv, 2, {"size", "filter", "seconds"});
  if (a.help) {
    std::fputs(kHelp, stdout);
    return kExitOk;
  }
  if (!a.positional.empty()) Usage("bench takes no file arguments");
  const Size size = a.Has("size") ? ParseSize(a.Get("size")) : Size{1920, 1080};
  const std::string filter = a.Get("filter");
  const double seconds = a.Has("seconds") ? std::atof(a.Get("seconds").c_str()) : 0.3;
  if (!(seconds > 0 && seconds <= 60)) Usage("--seconds takes a time above 0 and at most 60");

  std::vector<Job> jobs;
  for (const auto& [s, d] : TranscoderRoutes()) {
    const std::string name = s + " -> " + d;
    if (filter.empty() || name.find(filter) != std::string::npos) jobs.push_back(FindJob(s, d));
  }
  for (const Job& j : ExtraJobs()) {
    const std::string name = j.from + " -> " + j.to;
    if (filter.empty() || name.find(filter) != std::string::npos) jobs.push_back(j);
  }
  if (jobs.empty()) Fail("no route matches --filter '" + filter + "'");

  std::printf("%ux%u, %zu routes, best of repeated runs (%.1f s each)\n\n", size.w, size.h, jobs.size(), seconds);
  std::printf("%-30s %12s %10s %10s\n", "route", "bytes/frame", "GB/s", "x memcpy");
  for (size_t i = 0; i < jobs.size(); ++i) {
    const Job& j = jobs[i];
    const std::string name = j.from + " -> " + j.to;
    std::fprintf(stderr, "\r[%zu/%zu] %-40s", i + 1, jobs.size(), name.c_str());
    std::fflush(stderr);
    Geometry g;
    g.w = size.w;
    g.h = size.h;
    try {
      j.prepare(g);
    } catch (const Failure& f) {
      std::printf("%-30s skipped: %s\n", name.c_str(), f.what());
      continue;
    }
    const uint64_t in = j.inBytes(g), out = j.outBytes(g);
    std::vector<uint8_t> src(in + 4096), dst(out + 4096);
    for (size_t k = 0; k < src.size(); ++k) src[k] = static_cast<uint8_t>(k * 131 + 7);
    std::fill(dst.begin(), dst.end(), 0);
    const double t = BestSeconds([&] { j.run(g, src.data(), dst.data()); }, seconds);
    const size_t half = static_cast<size_t>((in + out) / 2);
    std::vector<uint8_t> ca(half), cb(half, 1);
    const double tc = BestSeconds([&] { std::memcpy(cb.data(), ca.data(), half); }, seconds / 3);
    const double gbs = double(in + out) / t / 1e9;
    std::fprintf(stderr, "\r%-50s\r", "");
    std::printf("%-30s %12llu %10.2f %10.2f\n", name.c_str(), static_cast<unsigned long long>(out), gbs, tc / t);
    std::fflush(stdout);
  }
  std::fprintf(stderr, "\r%-50s\r", "");
  return kExitOk;
}

}  // namespace zelt::tool
