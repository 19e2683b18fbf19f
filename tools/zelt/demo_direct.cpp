// Demo steps of the direct converters: v210 through RFC 4175 pgroups and back, and
// RGB through the ST 2084 (PQ) curve and back.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "cli.h"
#include "demo_steps.h"
#include "layouts.h"
#include "pattern.h"
#include "zelt/pq.h"
#include "zelt/rfc4175.h"

namespace zelt::tool {

namespace {

void Steps(DemoContext& c) {
  const uint32_t w = c.w, h = c.h;
  const Picture444 pattern = MakePattern(w, h);

  if (w % 2 == 0) {
    const uint32_t pitch = NaturalStride(Kind::V210, w);
    const std::vector<uint8_t> v210 = PackV210(pattern, pitch);
    std::vector<uint8_t> lines(size_t{w} * 20 / 8 * h + 4096), back(v210.size() + 4096);
    c.Step("v210 -> RFC 4175 pgroups -> v210", [&] {
      zlt_v210_to_YCbCr10Packed(lines.data(), v210.data(), w, pitch, h, 0);
      zlt_YCbCr10Packed_to_v210(back.data(), lines.data(), w, h, 0);
    }, [&] {
      // Whole groups carry only samples of the picture; compare those.
      bool same = true;
      for (uint32_t y = 0; y < h; ++y) {
        const size_t row = size_t{y} * pitch;
        same = same && std::equal(v210.begin() + row, v210.begin() + row + (w / 6) * 16, back.begin() + row);
      }
      return std::string(same ? "round trip exact, " : "round trip DIFFERS, ") +
             std::to_string(size_t{w} * 20 / 8 * h) + " payload bytes";
    });
  }

  // The pattern as 8-bit RGB (B, G, R, A), through the PQ curve and back.
  const std::vector<uint8_t> rgb = PreviewUyvy(PackUyvy(pattern).data(), w, h, w * 2);
  std::vector<uint8_t> bgra(size_t{w} * 4 * h), pq(bgra.size()), lin(bgra.size());
  for (size_t i = 0; i < size_t{w} * h; ++i) {
    bgra[i * 4] = rgb[i * 3 + 2];
    bgra[i * 4 + 1] = rgb[i * 3 + 1];
    bgra[i * 4 + 2] = rgb[i * 3];
    bgra[i * 4 + 3] = 255;
  }
  c.Step("RGB32 -> ST 2084 (PQ) -> RGB32", [&] {
    zlt_rgb_to_st2084(pq.data(), bgra.data(), w * 4, w * 4, h);
    zlt_st2084_to_rgb(lin.data(), pq.data(), w * 4, w * 4, h);
  }, [&] {
    int worst = 0;
    for (size_t i = 0; i < bgra.size(); ++i) {
      if (i % 4 != 3) worst = std::max(worst, std::abs(int(bgra[i]) - int(lin[i])));
    }
    return "largest difference " + std::to_string(worst) +
           " (the 8-bit PQ-to-linear table sends codes from 136 up to 235)";
  });
  if (c.rows.back().ms >= 0) {
    c.Picture("pq-coded.png", PreviewBgra(pq.data(), w, h, w * 4));
    c.Picture("pq-round-trip.png", PreviewBgra(lin.data(), w, h, w * 4));
  }
}

const DemoRegistration kRegistration(20, Steps);

}  // namespace

}  // namespace zelt::tool
