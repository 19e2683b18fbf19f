#pragma once

namespace zelt::tool {
int CmdFormats(int argc, char** argv);
int CmdConvert(int argc, char** argv);
int CmdDemo(int argc, char** argv);
int CmdBench(int argc, char** argv);
}  // namespace zelt::tool
