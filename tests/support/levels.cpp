#include "support/levels.h"

#include "support/paths.h"
#include "zelt/frame/qrutil.h"

namespace zelt::test {

std::vector<Level> HostLevels() {
  std::vector<Level> out = {{"portable", kMaskSse2}};
  const uint32_t real = RealFeatureMask();
  if (real & zelt::kFeatSse41) out.push_back({"sse41", kMaskSse41});
  if (real & zelt::kFeatAvx2) out.push_back({"avx2", kMaskAvx2});
  return out;
}

}  // namespace zelt::test
