// cycbcr_transcode: normalise the strides, map both codes to layouts, call the route.
#include <array>
#include <cstdarg>

#include "transcode/routes.h"
#include "core/fault.h"
#include "core/simd_level.h"
#include "zelt/ycbcr.h"

namespace zelt::transcode {

namespace {

using Table = std::array<std::array<RouteFn, kLayoutCount>, kLayoutCount>;

Table BuildTable() {
  Table t{};
  for (const auto* list : {&kPackedRoutes, &kPlanarRoutes, &kV210Routes, &kToRgbRoutes, &kFromRgbRoutes}) {
    for (const Route& r : *list) t[static_cast<int>(r.src)][static_cast<int>(r.dst)] = r.fn;
  }
  return t;
}

}  // namespace

RouteFn FindRoute(Layout src, Layout dst) {
  static const Table table = BuildTable();
  return table[static_cast<int>(src)][static_cast<int>(dst)];
}

}  // namespace zelt::transcode

using namespace zelt;

extern "C" ZELT_API uint32_t cycbcr_transcode(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height, ...) {
  SimdGuard();
  va_list ap;
  va_start(ap, height);
  uint32_t dstStride = va_arg(ap, uint32_t);
  uint32_t srcStride = va_arg(ap, uint32_t);
  const uint32_t matrix = va_arg(ap, uint32_t);
  const uint32_t flags = va_arg(ap, uint32_t);
  const uint32_t dstCode = va_arg(ap, uint32_t);
  const uint32_t srcCode = va_arg(ap, uint32_t);
  va_end(ap);

  NormalizeStride(srcCode, width, &srcStride);
  NormalizeStride(dstCode, width, &dstStride);

  // 422P is accepted as a source name of P422, never as a destination.
  const uint8_t srcLayout = srcCode == kCode422P ? static_cast<uint8_t>(Layout::P422) : LayoutOfCode(srcCode);
  const uint8_t dstLayout = LayoutOfCode(dstCode);
  if (srcLayout == kNoLayout || dstLayout == kNoLayout) return 0;

  const Layout s = static_cast<Layout>(srcLayout);
  const Layout d = static_cast<Layout>(dstLayout);
  const transcode::RouteFn fn = transcode::FindRoute(s, d);
  if (fn == nullptr) return 0;

  if (s == Layout::UYVY && d == Layout::YUY2) {
    // The one guarded route: any fault gives 0xFFFFFFFF and no message.
    try {
      FaultPoint("cycbcr_transcode");
      return fn(dst, src, width, height, dstStride, srcStride, matrix, flags);
    } catch (...) {
      return 0xFFFFFFFFu;
    }
  }
  return fn(dst, src, width, height, dstStride, srcStride, matrix, flags);
}

extern "C" ZELT_API uint32_t cycbcr_can_transcode(uint32_t code_a, uint32_t code_b) {
  return (LayoutOfCode(code_a) != kNoLayout && LayoutOfCode(code_b) != kNoLayout) ? 1u : 0u;
}
