#ifndef TESTS_GOLDEN_H_
#define TESTS_GOLDEN_H_

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Compares with a file that KRAID_UPDATE_GOLDEN in the environment writes anew.
inline void CompareGolden(const char* name, const std::string& text) {
  const std::filesystem::path golden =
      std::filesystem::path(KRAID_SOURCE_DIR "/tests/golden") / name;
  if (std::getenv("KRAID_UPDATE_GOLDEN") != nullptr)
    std::ofstream(golden, std::ios::binary) << text;
  EXPECT_EQ(text, ReadFile(golden));
}

#endif  // TESTS_GOLDEN_H_
