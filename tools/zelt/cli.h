// Small pieces shared by the tool's commands: option parsing, errors, files.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zelt::tool {

// Exit codes of every command.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;  // the input or the job was refused, or I/O failed
inline constexpr int kExitUsage = 2;   // the command line itself is wrong

// A refusal: what went wrong, and the exit code to end with.
struct Failure : std::runtime_error {
  Failure(int code, const std::string& what) : std::runtime_error(what), exitCode(code) {}
  int exitCode;
};

[[noreturn]] inline void Usage(const std::string& what) { throw Failure(kExitUsage, what); }
[[noreturn]] inline void Fail(const std::string& what) { throw Failure(kExitFailed, what); }

// "--name value" options and positional arguments. Flags named in `switches` take
// no value.
struct Args {
  std::map<std::string, std::string> options;
  std::vector<std::string> positional;
  bool help = false;

  static Args Parse(int argc, char** argv, int first, const std::vector<std::string>& known,
                    const std::vector<std::string>& switches = {});
  bool Has(const std::string& name) const { return options.count(name) != 0; }
  std::string Get(const std::string& name, const std::string& fallback = {}) const;
  uint32_t GetU32(const std::string& name, uint32_t fallback) const;
};

struct Size {
  uint32_t w = 0, h = 0;
};
Size ParseSize(const std::string& text);  // "1920x1080"
uint32_t ParseU32(const std::string& name, const std::string& text);

std::vector<uint8_t> ReadFile(const std::string& path);

// Writes the output next to its final name and renames it into place only when the
// whole content is there; on failure nothing is left behind.
void WriteFileAtomically(const std::string& path, const std::vector<uint8_t>& bytes);

}  // namespace zelt::tool
