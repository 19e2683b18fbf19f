#include "cli.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#if defined(_WIN32)
#include <io.h>
#include <process.h>
#define ZELT_GETPID _getpid
#else
#include <unistd.h>
#define ZELT_GETPID getpid
#endif

namespace zelt::tool {

Args Args::Parse(int argc, char** argv, int first, const std::vector<std::string>& known,
                 const std::vector<std::string>& switches) {
  Args a;
  for (int i = first; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      a.help = true;
    } else if (arg.rfind("--", 0) == 0 && arg.size() > 2) {
      std::string name = arg.substr(2), value;
      const size_t eq = name.find('=');
      if (eq != std::string::npos) {
        value = name.substr(eq + 1);
        name = name.substr(0, eq);
      }
      const bool isSwitch = std::find(switches.begin(), switches.end(), name) != switches.end();
      if (!isSwitch && std::find(known.begin(), known.end(), name) == known.end()) Usage("unknown option --" + name);
      if (isSwitch) {
        a.options[name] = "1";
        continue;
      }
      if (eq == std::string::npos) {
        if (i + 1 >= argc) Usage("option --" + name + " needs a value");
        value = argv[++i];
      }
      a.options[name] = value;
    } else {
      a.positional.push_back(arg);
    }
  }
  return a;
}

std::string Args::Get(const std::string& name, const std::string& fallback) const {
  auto it = options.find(name);
  return it == options.end() ? fallback : it->second;
}

uint32_t Args::GetU32(const std::string& name, uint32_t fallback) const {
  auto it = options.find(name);
  return it == options.end() ? fallback : ParseU32("--" + name, it->second);
}

uint32_t ParseU32(const std::string& name, const std::string& text) {
  errno = 0;
  char* end = nullptr;
  const unsigned long long v = std::strtoull(text.c_str(), &end, 0);
  if (text.empty() || *end != '\0' || errno != 0 || v > 0xFFFFFFFFull || text[0] == '-')
    Usage(name + " takes a whole number from 0 to 4294967295, not '" + text + "'");
  return static_cast<uint32_t>(v);
}

Size ParseSize(const std::string& text) {
  const size_t x = text.find_first_of("xX");
  if (x == std::string::npos) Usage("--size takes WIDTHxHEIGHT, for example 1920x1080, not '" + text + "'");
  Size s{ParseU32("--size width", text.substr(0, x)), ParseU32("--size height", text.substr(x + 1))};
  if (s.w == 0 || s.h == 0) Usage("--size needs a width and a height above 0");
  if (s.w > 65536 || s.h > 65536) Usage("--size is limited to 65536x65536");
  return s;
}

std::vector<uint8_t> ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) Fail("cannot open input file " + path);
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) Fail("cannot read input file " + path);
  return bytes;
}

void WriteFileAtomically(const std::string& path, const std::vector<uint8_t>& bytes) {
  const std::string tmp = path + ".zelt-tmp-" + std::to_string(ZELT_GETPID());
  FILE* f = std::fopen(tmp.c_str(), "wb");
  if (!f) Fail("cannot write output file " + path + ": " + std::strerror(errno));
  const bool wrote = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
  const bool closed = std::fclose(f) == 0;
  if (!wrote || !closed) {
    std::remove(tmp.c_str());
    Fail("cannot write output file " + path);
  }
#if defined(_WIN32)
  std::remove(path.c_str());
#endif
  if (std::rename(tmp.c_str(), path.c_str()) != 0) {
    std::remove(tmp.c_str());
    Fail("cannot move the output into place at " + path + ": " + std::strerror(errno));
  }
}

}  // namespace zelt::tool
