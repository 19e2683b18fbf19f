#include "support/levels.h"

#include "core/platform.h"
#include "zelt/zelt_api.h"

namespace zelt::test {

std::vector<Level> HostLevels() {
  std::vector<Level> out = {{"portable", kMaskSse2}};
  const uint32_t real = RealFeatureMask();
  if (real & zelt::kFeatSse41) out.push_back({"sse41", kMaskSse41});
  if (real & zelt::kFeatAvx2) out.push_back({"avx2", kMaskAvx2});
  if (HostHasAvx512()) out.push_back({"avx512", kMaskAvx2, zelt::kExtAvx512});
  return out;
}

std::vector<PathResult> RunEveryLevel(const std::function<std::vector<uint8_t>()>& convert) {
  std::vector<PathResult> out;
  for (const Level& l : HostLevels()) {
    ScopedFeatures f(l.mask, l.extended);
    out.push_back({l.name, convert()});
  }
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
