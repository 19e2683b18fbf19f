// zelt: command-line front end of the library.
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "cli.h"
#include "commands.h"

namespace {

const char* kUsage = R"(usage: zelt COMMAND [options]

commands:
  formats   list the format codes, their layouts and the conversion routes
  convert   convert raw frame files from one layout to another
  demo      generate a test pattern, run it through the main routes, write pictures
  bench     measure each route's throughput on this machine against memcpy

'zelt COMMAND --help' describes a command.
exit codes: 0 success, 1 refused or failed, 2 bad command line
)";

}  // namespace

int main(int argc, char** argv) {
  using namespace zelt::tool;
  if (argc < 2 || !std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h") || !std::strcmp(argv[1], "help")) {
    std::fputs(kUsage, argc < 2 ? stderr : stdout);
    return argc < 2 ? kExitUsage : kExitOk;
  }
  const std::string cmd = argv[1];
  try {
    if (cmd == "formats") return CmdFormats(argc, argv);
    if (cmd == "convert") return CmdConvert(argc, argv);
    if (cmd == "demo") return CmdDemo(argc, argv);
    if (cmd == "bench") return CmdBench(argc, argv);
    std::fprintf(stderr, "zelt: unknown command '%s'\n\n%s", cmd.c_str(), kUsage);
    return kExitUsage;
  } catch (const Failure& f) {
    std::fprintf(stderr, "zelt %s: %s\n", cmd.c_str(), f.what());
    if (f.exitCode == kExitUsage) std::fprintf(stderr, "(try 'zelt %s --help')\n", cmd.c_str());
    return f.exitCode;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "zelt %s: %s\n", cmd.c_str(), e.what());
    return kExitFailed;
  }
}
