// The demo's steps. Each family of the library adds its steps in a demo_*.cpp file.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zelt::tool {

struct DemoContext {
  DemoContext(uint32_t w, uint32_t h, std::string dir);
  uint32_t w, h;
  std::string dir;
  struct Row {
    std::string name;
    double ms;  // best of three; negative when skipped
    std::string note;
  };
  std::vector<Row> rows;
  std::vector<std::string> pictures;

  // Runs `run` three times, timing each; then `describe` once (untimed) for the
  // table's note. A Failure thrown by either marks the step skipped with its message.
  void Step(const std::string& name, const std::function<void()>& run, const std::function<std::string()>& describe);
  // Writes an 8-bit R G B picture of w x h to DIR/file.
  void Picture(const std::string& file, const std::vector<uint8_t>& rgb);
  // cycbcr_transcode with natural strides; fails when the pair has no route.
  uint32_t Transcode(uint8_t* dst, uint8_t* src, const char* dstCode, const char* srcCode, uint32_t matrix = 0,
                     uint32_t flags = 0);
};

using DemoSteps_t = std::function<void(DemoContext&)>;
// Registered steps with their place in the demo (lower runs first).
std::vector<std::pair<int, DemoSteps_t>>& DemoSteps();
struct DemoRegistration {
  DemoRegistration(int order, DemoSteps_t s) { DemoSteps().emplace_back(order, std::move(s)); }
};

}  // namespace zelt::tool
