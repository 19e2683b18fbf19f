#include "jobs.h"

#include <algorithm>
#include <cctype>

#include "layouts.h"
#include "zelt/ycbcr.h"

namespace zelt::tool {

std::vector<Job>& ExtraJobs() {
  static std::vector<Job> jobs;
  return jobs;
}

namespace {

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return s;
}

// True when the transcoder has a route between the two codes (a trial conversion
// of a small frame into scratch memory).
bool HasRoute(const Layout& dl, uint32_t dstCode, const Layout& sl, uint32_t srcCode) {
  constexpr uint32_t w = 48, h = 2;
  std::vector<uint8_t> src(1 << 16, 0x80), dst(1 << 16);
  return cycbcr_transcode(dst.data(), src.data(), w, h, NaturalStride(dl.kind, w), NaturalStride(sl.kind, w), 0u, 0u,
                          dstCode, srcCode) != 0;
}

// Refuses strides the library would change, so that the file is read exactly as
// the tool describes it.
void CheckStride(const char* which, const Layout& l, uint32_t w, uint32_t stride) {
  const std::string opt = std::string("--") + which + "-stride " + std::to_string(stride);
  switch (l.kind) {
    case Kind::Rgb32:
      if (stride < 4 * w) Fail(opt + " is below the RGB32 row of " + std::to_string(4 * w) + " bytes");
      break;
    case Kind::Packed422:
      if (stride < 2 * w) Fail(opt + " is below the " + l.name + " row of " + std::to_string(2 * w) + " bytes");
      break;
    case Kind::Planar420:
    case Kind::Planar422:
      if (stride != w) Fail(opt + ": planar " + std::string(l.name) + " frames are read with the stride equal to the width (" + std::to_string(w) + ")");
      break;
    case Kind::V210: {
      const uint32_t min = NaturalStride(Kind::V210, w);
      if (stride % 16 != 0 || stride < min)
        Fail(opt + ": a 012v row needs a multiple of 16 bytes of at least " + std::to_string(min));
      break;
    }
  }
}

Job TranscodeJob(const Format& from, const Format& to) {
  Job j;
  j.from = from.spelled;
  j.to = to.spelled;
  j.description = std::string("cycbcr_transcode ") + from.layout->name + " -> " + to.layout->name;
  const Layout* sl = from.layout;
  const Layout* dl = to.layout;
  j.prepare = [sl, dl](Geometry& g) {
    if (g.srcStride == 0) g.srcStride = NaturalStride(sl->kind, g.w);
    if (g.dstStride == 0) g.dstStride = NaturalStride(dl->kind, g.w);
    CheckStride("src", *sl, g.w, g.srcStride);
    CheckStride("dst", *dl, g.w, g.dstStride);
  };
  j.inBytes = [sl](const Geometry& g) { return FrameBytes(sl->kind, g.h, g.srcStride); };
  j.outBytes = [dl](const Geometry& g) { return FrameBytes(dl->kind, g.h, g.dstStride); };
  const uint32_t dstCode = to.code, srcCode = from.code;
  j.run = [dstCode, srcCode](const Geometry& g, uint8_t* in, uint8_t* out) {
    const uint32_t n = cycbcr_transcode(out, in, g.w, g.h, g.dstStride, g.srcStride, g.matrix, g.flags, dstCode, srcCode);
    if (n == 0xFFFFFFFFu) Fail("the conversion reported a fault");
  };
  return j;
}

}  // namespace

Job FindJob(const std::string& from, const std::string& to) {
  for (const Job& j : ExtraJobs()) {
    if (Lower(j.from) == Lower(from) && Lower(j.to) == Lower(to)) return j;
  }
  const auto sf = ParseFormat(from), df = ParseFormat(to);
  auto knownAsExtra = [](const std::string& name, bool source) {
    return std::any_of(ExtraJobs().begin(), ExtraJobs().end(),
                       [&](const Job& j) { return Lower(source ? j.from : j.to) == Lower(name); });
  };
  if (!sf && !knownAsExtra(from, true)) Fail("unknown source format '" + from + "' (see 'zelt formats')");
  if (!df && !knownAsExtra(to, false)) Fail("unknown destination format '" + to + "' (see 'zelt formats')");
  if (sf && df) {
    if (df->code == FourCC("422P")) Fail("422P is accepted as a source only; write P422 for the destination");
    if (HasRoute(*df->layout, df->code, *sf->layout, sf->code)) return TranscodeJob(*sf, *df);
  }
  Fail("there is no conversion from " + from + " to " + to + " (see 'zelt formats')");
}

std::vector<std::pair<std::string, std::string>> TranscoderRoutes() {
  std::vector<std::pair<std::string, std::string>> routes;
  for (const Layout& s : Layouts()) {
    for (const Layout& d : Layouts()) {
      const uint32_t sc = s.aliases.empty() ? 0 : FourCC(s.aliases[0]);
      const uint32_t dc = d.aliases.empty() ? 0 : FourCC(d.aliases[0]);
      if (HasRoute(d, dc, s, sc)) routes.emplace_back(s.name, d.name);
    }
  }
  return routes;
}

}  // namespace zelt::tool
