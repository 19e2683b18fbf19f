// zelt: command-line front end of the library.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "zelt/zelt.h"

namespace {

constexpr uint32_t Code(const char (&s)[5]) {
  return uint32_t(uint8_t(s[0])) | uint32_t(uint8_t(s[1])) << 8 | uint32_t(uint8_t(s[2])) << 16 |
         uint32_t(uint8_t(s[3])) << 24;
}

int Demo() {
  const uint32_t w = 1920, h = 1080, stride = w * 2;
  std::vector<uint8_t> uyvy(size_t{stride} * h), a(uyvy.size()), b(uyvy.size());
  for (uint32_t y = 0; y < h; ++y) {
    for (uint32_t x = 0; x < w; x += 2) {
      uint8_t* p = &uyvy[size_t{y} * stride + x * 2];
      p[0] = uint8_t(x * 255 / w);
      p[1] = uint8_t(16 + (x * 219) / w);
      p[2] = uint8_t(y * 255 / h);
      p[3] = uint8_t(16 + ((x + 1) * 219) / w);
    }
  }
  struct Step {
    const char* name;
    uint8_t* dst;
    uint8_t* src;
    uint32_t dstCode, srcCode;
  } steps[] = {
      {"UYVY -> YUY2", a.data(), uyvy.data(), Code("YUY2"), Code("UYVY")},
      {"YUY2 -> YVYU", b.data(), a.data(), Code("YVYU"), Code("YUY2")},
      {"YVYU -> cyuv", a.data(), b.data(), Code("cyuv"), Code("YVYU")},
      {"cyuv -> UYVY", b.data(), a.data(), Code("UYVY"), Code("cyuv")},
  };
  std::printf("%-16s %12s %10s\n", "step", "bytes", "ms");
  for (const Step& s : steps) {
    const auto t0 = std::chrono::steady_clock::now();
    const uint32_t n = cycbcr_transcode(s.dst, s.src, w, h, stride, stride, 0u, 0u, s.dstCode, s.srcCode);
    const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
    std::printf("%-16s %12u %10.3f\n", s.name, n, ms);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string cmd = argc > 1 ? argv[1] : "demo";
  if (cmd == "demo") return Demo();
  std::fprintf(stderr, "usage: zelt demo\n");
  return 2;
}
