// zelt convert: raw frame files from one layout to another.
#include <cstdio>
#include <cstring>

#include "commands.h"
#include "jobs.h"

namespace zelt::tool {

namespace {

constexpr size_t kSlack = 4096;

const char* kHelp = R"(usage: zelt convert --from FORMAT --to FORMAT --size WxH [options] IN OUT

Converts every frame of the raw file IN and writes the result to OUT. IN must hold
a whole number of frames of the source layout; OUT is written only when every frame
converted (through a temporary file renamed into place).

FORMAT is a transcoder code (UYVY, 2vuy, YUY2, YVYU, cyuv, I420, YV12, P422, 422P,
v210, 012v, RGB32, ...) or the name of a job of another family; 'zelt formats'
lists them all and which pairs convert.

options:
  --size WxH          frame size in pixels (required)
  --src-stride N      bytes from one source row to the next (default: the natural row)
  --dst-stride N      bytes from one destination row to the next (default: the natural row)
  --matrix ID         colour matrix id for RGB conversions, 0 to 10 (default 0)
  --flags N           RGB channel order (low bits) and 0x8000 for bottom-up rows (default 0)
  --quiet             print nothing on success

exit codes: 0 converted, 1 refused or failed (nothing written), 2 bad command line
)";

}  // namespace

int CmdConvert(int argc, char** argv) {
  const Args a = Args::Parse(argc, argv, 2, {"from", "to", "size", "src-stride", "dst-stride", "matrix", "flags"},
                             {"quiet"});
  if (a.help) {
    std::fputs(kHelp, stdout);
    return kExitOk;
  }
  if (!a.Has("from") || !a.Has("to")) Usage("convert needs --from and --to");
  if (!a.Has("size")) Usage("convert needs --size WxH");
  if (a.positional.size() != 2) Usage("convert needs an input file and an output file");
  const Size size = ParseSize(a.Get("size"));
  Geometry g;
  g.w = size.w;
  g.h = size.h;
  g.srcStride = a.GetU32("src-stride", 0);
  g.dstStride = a.GetU32("dst-stride", 0);
  g.matrix = a.GetU32("matrix", 0);
  g.flags = a.GetU32("flags", 0);
  if (g.matrix > 10) Usage("--matrix takes an id from 0 to 10");

  const Job job = FindJob(a.Get("from"), a.Get("to"));
  job.prepare(g);
  const uint64_t inBytes = job.inBytes(g), outBytes = job.outBytes(g);
  if (inBytes == 0 || outBytes == 0) Fail("a " + std::to_string(g.w) + "x" + std::to_string(g.h) + " frame is empty for this conversion");
  if (inBytes > (uint64_t{1} << 31) || outBytes > (uint64_t{1} << 31)) Fail("frames above 2 GiB are not supported");

  const std::vector<uint8_t> input = ReadFile(a.positional[0]);
  if (input.empty() || input.size() % inBytes != 0) {
    Fail(a.positional[0] + " holds " + std::to_string(input.size()) + " bytes, but one " + std::to_string(g.w) + "x" +
         std::to_string(g.h) + " " + job.from + " frame (stride " + std::to_string(g.srcStride) + ") is " +
         std::to_string(inBytes) + " bytes: the file must hold a whole number of frames");
  }
  const size_t frames = input.size() / inBytes;
  std::vector<uint8_t> output(frames * outBytes);
  std::vector<uint8_t> in(inBytes + kSlack), out(outBytes + kSlack);
  for (size_t f = 0; f < frames; ++f) {
    std::memcpy(in.data(), input.data() + f * inBytes, inBytes);
    std::memset(out.data(), 0, out.size());
    job.run(g, in.data(), out.data());
    std::memcpy(output.data() + f * outBytes, out.data(), outBytes);
  }
  WriteFileAtomically(a.positional[1], output);
  if (!a.Has("quiet")) {
    std::printf("%s -> %s: %zu frame%s of %ux%u, %zu bytes written to %s\n", job.from.c_str(), job.to.c_str(), frames,
                frames == 1 ? "" : "s", g.w, g.h, output.size(), a.positional[1].c_str());
  }
  return kExitOk;
}

}  // namespace zelt::tool
