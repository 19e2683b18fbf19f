// Demo steps of the transcoder: v210 -> UYVY -> I420 -> RGB, packed reorders,
// and RGB -> YCbCr -> RGB round trips for several matrices.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "cli.h"
#include "demo_steps.h"
#include "layouts.h"
#include "pattern.h"

namespace zelt::tool {

std::vector<std::pair<int, DemoSteps_t>>& DemoSteps() {
  static std::vector<std::pair<int, DemoSteps_t>> steps;
  return steps;
}

namespace {

int MaxDiff(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b, size_t stride, size_t rowBytes, bool skipAlpha) {
  int worst = 0;
  for (size_t i = 0; i < a.size() && i < b.size(); ++i) {
    const size_t col = i % stride;
    if (col >= rowBytes || (skipAlpha && col % 4 == 3)) continue;
    worst = std::max(worst, std::abs(int(a[i]) - int(b[i])));
  }
  return worst;
}

void Steps(DemoContext& c) {
  const uint32_t w = c.w, h = c.h;
  const Picture444 pattern = MakePattern(w, h);
  const uint32_t v210Pitch = NaturalStride(Kind::V210, w);
  std::vector<uint8_t> v210 = PackV210(pattern, v210Pitch);
  const std::vector<uint8_t> uyvyRef = PackUyvy(pattern);
  c.Picture("pattern.png", PreviewUyvy(uyvyRef.data(), w, h, w * 2));

  std::vector<uint8_t> uyvy(size_t{w} * 2 * h + 4096), yuy2(uyvy.size()), back(uyvy.size());
  c.Step("v210 -> UYVY (cycbcr_transcode)", [&] { c.Transcode(uyvy.data(), v210.data(), "UYVY", "v210"); }, [&] {
    const bool same = std::equal(uyvyRef.begin(), uyvyRef.end(), uyvy.begin());
    return std::string(same ? "matches the pattern rounded to 8 bits" : "DIFFERS from the pattern rounded to 8 bits");
  });
  if (c.rows.back().ms >= 0) c.Picture("uyvy-from-v210.png", PreviewUyvy(uyvy.data(), w, h, w * 2));
  else std::copy(uyvyRef.begin(), uyvyRef.end(), uyvy.begin());

  c.Step("UYVY -> YUY2 -> UYVY", [&] {
    c.Transcode(yuy2.data(), uyvy.data(), "YUY2", "UYVY");
    c.Transcode(back.data(), yuy2.data(), "UYVY", "YUY2");
  }, [&] {
    return std::string(std::equal(uyvyRef.begin(), uyvyRef.end(), back.begin()) ? "round trip exact" : "round trip DIFFERS");
  });

  std::vector<uint8_t> i420(size_t{w} * h * 2 + 4096);
  uint32_t i420Bytes = 0;
  c.Step("UYVY -> I420", [&] { i420Bytes = c.Transcode(i420.data(), uyvy.data(), "I420", "UYVY"); },
         [&] { return std::to_string(i420Bytes) + " bytes"; });

  std::vector<uint8_t> rgb(size_t{w} * 4 * h + 4096);
  bool haveRgb = false;
  c.Step("I420 -> RGB32, BT.709 (matrix 2)", [&] {
    c.Transcode(rgb.data(), i420.data(), "RGB32", "I420", 2, 0);
    haveRgb = true;
  }, [] { return std::string("B,G,R,A pixels"); });
  if (haveRgb) c.Picture("rgb-from-i420.png", PreviewBgra(rgb.data(), w, h, w * 4));

  if (haveRgb) {
    for (uint32_t m : {0u, 2u, 6u}) {
      const char* names[] = {"BT.601", "", "BT.709", "", "", "", "BT.2020"};
      std::vector<uint8_t> enc(size_t{w} * 2 * h + 4096), dec(rgb.size());
      std::vector<uint8_t> src = rgb;  // the encoder may reorder an R,G,B,A source in place
      c.Step(std::string("RGB32 -> UYVY -> RGB32, ") + names[m] + " (matrix " + std::to_string(m) + ")", [&] {
        c.Transcode(enc.data(), src.data(), "UYVY", "RGB32", m, 0);
        c.Transcode(dec.data(), enc.data(), "RGB32", "UYVY", m, 0);
      }, [&] {
        return "largest channel difference " + std::to_string(MaxDiff(rgb, dec, size_t{w} * 4, size_t{w} * 4, true));
      });
      if (c.rows.back().ms >= 0 && m == 2) c.Picture("rgb-roundtrip-bt709.png", PreviewBgra(dec.data(), w, h, w * 4));
    }
  }
}

const DemoRegistration kRegistration(10, Steps);

}  // namespace

}  // namespace zelt::tool
