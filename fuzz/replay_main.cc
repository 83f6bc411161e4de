// Runs a target over files, where no fuzzer is linked: each argument is a file or a folder of such.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/sections.h"

namespace {

namespace fs = std::filesystem;

void Replay(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  // As an array of its own, so that a sanitizer sees each byte that is read behind it.
  const std::vector<char> input(std::istreambuf_iterator<char>(stream), {});
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<fs::path> files;
  for (const fs::path& path : std::vector<fs::path>(argv + 1, argv + argc)) {
    if (fs::is_regular_file(path)) files.push_back(path);
    if (!fs::is_directory(path)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
  }
  for (const fs::path& file : files) {
    std::cerr << file.string() << std::endl;  // the last one named is the one that failed
    Replay(file);
  }
  return files.empty() ? 1 : 0;
}
