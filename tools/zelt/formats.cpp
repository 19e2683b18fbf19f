// zelt formats: codes, aliases, layouts, bytes per row, and the route matrix.
#include <cstdio>
#include <set>

#include "commands.h"
#include "jobs.h"
#include "layouts.h"

namespace zelt::tool {

int CmdFormats(int argc, char** argv) {
  const Args a = Args::Parse(argc, argv, 2, {"width"});
  if (a.help) {
    std::puts("usage: zelt formats [--width N]\n\nLists the transcoder's formats with their codes and bytes per row at width N\n"
              "(default 1920), which pairs convert, and the other jobs of 'zelt convert'.");
    return kExitOk;
  }
  const uint32_t w = a.GetU32("width", 1920);
  std::printf("Transcoder layouts (bytes per row at width %u):\n\n", w);
  std::printf("  %-6s %-10s  %s\n", "layout", "row bytes", "codes / memory layout");
  for (const Layout& l : Layouts()) {
    std::string codes = l.aliases.empty() ? "0 (RGB32)" : "";
    for (const char* c : l.aliases) codes += (codes.empty() ? "" : " ") + std::string(c);
    if (std::string(l.name) == "UYVY") codes += " 0x8800001E 0x8810001E";
    std::printf("  %-6s %-10u  %s\n  %-6s %-10s  %s\n", l.name, NaturalStride(l.kind, w), codes.c_str(), "", "",
                l.description);
  }
  const auto routes = TranscoderRoutes();
  std::set<std::pair<std::string, std::string>> have(routes.begin(), routes.end());
  std::printf("\nRoutes of cycbcr_transcode (row: source, column: destination):\n\n  %-6s", "");
  for (const Layout& d : Layouts()) std::printf(" %-5s", d.name);
  std::printf("\n");
  for (const Layout& s : Layouts()) {
    std::printf("  %-6s", s.name);
    for (const Layout& d : Layouts()) std::printf(" %-5s", have.count({s.name, d.name}) ? "yes" : ".");
    std::printf("\n");
  }
  if (!ExtraJobs().empty()) {
    std::printf("\nOther jobs of 'zelt convert --from A --to B':\n\n");
    for (const Job& j : ExtraJobs()) std::printf("  %-14s -> %-14s %s\n", j.from.c_str(), j.to.c_str(), j.description.c_str());
  }
  return kExitOk;
}

}  // namespace zelt::tool
