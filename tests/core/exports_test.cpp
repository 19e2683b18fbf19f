// The shared library must export exactly the names its public headers declare.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <cctype>
#include <set>
#include <sstream>
#include <string>

namespace {

[[maybe_unused]] std::set<std::string> DeclaredNames() {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(ZELT_SOURCE_DIR) + "/include/zelt")) {
    std::ifstream in(entry.path());
    std::string line;
    while (std::getline(in, line)) {
      // One declaration per line: "ZELT_API <type> <name>(...);"
      if (line.rfind("ZELT_API ", 0) != 0) continue;
      size_t end = line.find('(');
      if (end == std::string::npos) continue;
      while (end > 0 && line[end - 1] == ' ') --end;
      size_t begin = end;
      while (begin > 0 && (std::isalnum(static_cast<unsigned char>(line[begin - 1])) || line[begin - 1] == '_')) --begin;
      names.insert(line.substr(begin, end - begin));
    }
  }
  return names;
}

#if defined(__linux__)
std::set<std::string> ExportedNames() {
  std::set<std::string> names;
  const std::string cmd = std::string("nm -D --defined-only '") + ZELT_SHARED_LIBRARY + "'";
  FILE* p = popen(cmd.c_str(), "r");
  if (p == nullptr) return names;
  char line[1024];
  while (std::fgets(line, sizeof line, p)) {
    std::istringstream in(line);
    std::string addr, type, name;
    if (!(in >> addr >> type >> name)) continue;
    if (type == "A") continue;  // version nodes
    names.insert(name.substr(0, name.find('@')));
  }
  pclose(p);
  return names;
}

TEST(Exports, SharedLibraryExportsExactlyThePublicNames) {
  const std::set<std::string> declared = DeclaredNames();
  const std::set<std::string> exported = ExportedNames();
  ASSERT_FALSE(declared.empty());
  ASSERT_FALSE(exported.empty()) << "could not read the symbols of " << ZELT_SHARED_LIBRARY;
  for (const std::string& n : declared) EXPECT_TRUE(exported.count(n)) << "declared but not exported: " << n;
  for (const std::string& n : exported) EXPECT_TRUE(declared.count(n)) << "exported but not declared: " << n;
}
#endif

}  // namespace
