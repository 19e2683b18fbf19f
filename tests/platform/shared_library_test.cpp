// The shared library as an application meets it: loaded at run time by path,
// every public name resolved, and a conversion through a resolved pointer giving
// the bytes the static twin gives. On Windows the DLL's export table is read
// from the loaded image and must hold exactly the public names.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "support/buffers.h"
#include "zelt/ycbcr.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

std::set<std::string> DeclaredNames() {
  std::set<std::string> names;
  const std::regex decl(R"(^ZELT_API\s+[^(]*?\b([A-Za-z_][A-Za-z0-9_]*)\s*\()");
  for (const auto& entry : std::filesystem::directory_iterator(std::string(ZELT_SOURCE_DIR) + "/include/zelt")) {
    std::ifstream in(entry.path());
    std::string line;
    while (std::getline(in, line)) {
      std::smatch m;
      if (std::regex_search(line, m, decl)) names.insert(m[1]);
    }
  }
  return names;
}

class Library {
 public:
  Library() {
#if defined(_WIN32)
    handle_ = LoadLibraryA(ZELT_SHARED_LIBRARY);
    if (handle_ == nullptr) handle_ = LoadLibraryA("zelt.dll");
#else
    handle_ = dlopen(ZELT_SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
#endif
  }
  ~Library() {
    if (handle_ == nullptr) return;
#if defined(_WIN32)
    FreeLibrary(handle_);
#else
    dlclose(handle_);
#endif
  }
  bool loaded() const { return handle_ != nullptr; }
  void* Find(const std::string& name) const {
#if defined(_WIN32)
    return reinterpret_cast<void*>(GetProcAddress(handle_, name.c_str()));
#else
    return dlsym(handle_, name.c_str());
#endif
  }
#if defined(_WIN32)
  // Names in the export directory of the mapped image.
  std::set<std::string> ExportTable() const {
    std::set<std::string> names;
    const auto* base = reinterpret_cast<const uint8_t*>(handle_);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    if (dir.Size == 0) return names;
    const auto* exp = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + dir.VirtualAddress);
    const auto* rvas = reinterpret_cast<const DWORD*>(base + exp->AddressOfNames);
    for (DWORD i = 0; i < exp->NumberOfNames; ++i) names.insert(reinterpret_cast<const char*>(base + rvas[i]));
    return names;
  }
#endif

 private:
#if defined(_WIN32)
  HMODULE handle_ = nullptr;
#else
  void* handle_ = nullptr;
#endif
};

TEST(SharedLibrary, LoadsAndResolvesEveryPublicName) {
  Library lib;
  ASSERT_TRUE(lib.loaded()) << ZELT_SHARED_LIBRARY;
  const std::set<std::string> declared = DeclaredNames();
  ASSERT_FALSE(declared.empty());
  for (const std::string& name : declared) EXPECT_NE(lib.Find(name), nullptr) << name;
  // Internal names stay inside.
  for (const char* hidden : {"DllMain", "SelectSimdLevel", "_ZN4zelt15SelectSimdLevelEj", "CPUFeatureFlags"}) {
    EXPECT_EQ(lib.Find(hidden), nullptr) << hidden;
  }
#if defined(_WIN32)
  EXPECT_EQ(lib.ExportTable(), declared);
#endif
}

TEST(SharedLibrary, ConvertsLikeTheStaticBuild) {
  Library lib;
  ASSERT_TRUE(lib.loaded()) << ZELT_SHARED_LIBRARY;
  using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);
  struct Case {
    const char* name;
    Fn local;
  } cases[] = {{"cycbcr_uyvy_to_yuy2", cycbcr_uyvy_to_yuy2},
               {"cycbcr_yuy2_to_yvyu", cycbcr_yuy2_to_yvyu},
               {"cycbcr_uyvy_to_cyuv", cycbcr_uyvy_to_cyuv}};
  const uint32_t w = 725, h = 9, ss = 2 * w + 6, ds = 2 * w + 2;
  const std::vector<uint8_t> src = zelt::test::RandomBytes(size_t{ss} * h, 17);
  for (const Case& c : cases) {
    const auto remote = reinterpret_cast<Fn>(lib.Find(c.name));
    ASSERT_NE(remote, nullptr) << c.name;
    std::vector<uint8_t> a(size_t{ds} * h, 0x5A), b(size_t{ds} * h, 0x5A);
    EXPECT_EQ(remote(a.data(), src.data(), w, h, ds, ss), c.local(b.data(), src.data(), w, h, ds, ss)) << c.name;
    EXPECT_EQ(a, b) << c.name;
  }
}

}  // namespace
