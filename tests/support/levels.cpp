#include "support/levels.h"

#include "zelt/zelt_api.h"

namespace zelt::test {

std::vector<PathResult> RunEveryLevel(const std::function<std::vector<uint8_t>()>& convert) {
  std::vector<PathResult> out;
  {
    ScopedFeatures f(kMaskSse2);
    out.push_back({"sse2", convert()});
  }
  for (PathResult& r : RunEveryPath(convert)) out.push_back(std::move(r));
  return out;
}

ErrorLogCapture::ErrorLogCapture() {
  zeltSetErrorLog(
      [](void* user, uint32_t f, const char* m) {
        auto* self = static_cast<ErrorLogCapture*>(user);
        self->messages.emplace_back(m);
        self->flags.push_back(f);
      },
      this);
}

ErrorLogCapture::~ErrorLogCapture() { zeltSetErrorLog(nullptr, nullptr); }

}  // namespace zelt::test
