// Runs a fuzz target over files and directories of inputs, for builds without
// libFuzzer: the committed corpus then replays in every ordinary test run.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
  size_t runs = 0;
  for (int i = 1; i < argc; ++i) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(argv[i])) {
      for (const auto& e : std::filesystem::recursive_directory_iterator(argv[i])) {
        if (e.is_regular_file()) files.push_back(e.path());
      }
    } else {
      files.emplace_back(argv[i]);
    }
    for (const auto& f : files) {
      std::ifstream in(f, std::ios::binary);
      std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++runs;
    }
  }
  std::printf("%zu inputs replayed\n", runs);
  return runs == 0 ? 1 : 0;
}
