// zelt demo: a generated test pattern through the library's main routes, with
// pictures to look at and a table of what each step did and how long it took.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "commands.h"
#include "demo_steps.h"
#include "jobs.h"
#include "layouts.h"
#include "pattern.h"
#include "png.h"
#include "zelt/zelt.h"

namespace zelt::tool {

namespace {

const char* kHelp = R"(usage: zelt demo [--size WxH] [DIR]

Generates a test pattern (colour bars, ramps, a zone plate) in v210 and 8-bit
layouts, runs it through the main routes of the library and writes PNG pictures of
the results to DIR (default: ./zelt-demo). Prints a table of the steps with the
time each took (best of three runs) and what it checked.
)";

}  // namespace

DemoContext::DemoContext(uint32_t w_, uint32_t h_, std::string dir_) : w(w_), h(h_), dir(std::move(dir_)) {}

void DemoContext::Step(const std::string& name, const std::function<void()>& run,
                       const std::function<std::string()>& describe) {
  std::string note;
  double best = 1e30;
  try {
    for (int i = 0; i < 3; ++i) {
      const auto t0 = std::chrono::steady_clock::now();
      run();
      best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count());
    }
    note = describe();
  } catch (const Failure& f) {
    rows.push_back({name, -1, std::string("skipped: ") + f.what()});
    return;
  }
  rows.push_back({name, best, note});
}

void DemoContext::Picture(const std::string& file, const std::vector<uint8_t>& rgb) {
  const std::string path = (std::filesystem::path(dir) / file).string();
  const std::string err = WritePng(path, w, h, rgb);
  if (!err.empty()) Fail(err);
  pictures.push_back(path);
}

uint32_t DemoContext::Transcode(uint8_t* dst, uint8_t* src, const char* dstCode, const char* srcCode, uint32_t matrix,
                                uint32_t flags) {
  const auto d = ParseFormat(dstCode), s = ParseFormat(srcCode);
  FindJob(srcCode, dstCode);  // fails with a clear message when there is no route
  return cycbcr_transcode(dst, src, w, h, NaturalStride(d->layout->kind, w), NaturalStride(s->layout->kind, w), matrix,
                          flags, d->code, s->code);
}

int CmdDemo(int argc, char** argv) {
  const Args a = Args::Parse(argc, argv, 2, {"size"});
  if (a.help) {
    std::fputs(kHelp, stdout);
    return kExitOk;
  }
  if (a.positional.size() > 1) Usage("demo takes at most one directory");
  const Size size = a.Has("size") ? ParseSize(a.Get("size")) : Size{1920, 1080};
  const std::string dir = a.positional.empty() ? "zelt-demo" : a.positional[0];
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  if (ec) Fail("cannot create " + dir + ": " + ec.message());

  DemoContext ctx(size.w, size.h, dir);
  auto steps = DemoSteps();
  std::stable_sort(steps.begin(), steps.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const auto& s : steps) s.second(ctx);

  std::printf("%-44s %10s  %s\n", "step", "ms", "result");
  for (const auto& r : ctx.rows) {
    if (r.ms < 0) {
      std::printf("%-44s %10s  %s\n", r.name.c_str(), "-", r.note.c_str());
    } else {
      std::printf("%-44s %10.3f  %s\n", r.name.c_str(), r.ms, r.note.c_str());
    }
  }
  std::printf("\n%zu pictures written to %s:\n", ctx.pictures.size(), std::filesystem::absolute(dir).string().c_str());
  for (const auto& p : ctx.pictures) std::printf("  %s\n", std::filesystem::path(p).filename().string().c_str());
  return kExitOk;
}

}  // namespace zelt::tool
