#ifndef TESTS_PRINT_TO_H_
#define TESTS_PRINT_TO_H_

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "inventory/output_file.h"
#include "standin/repository.h"
#include "tests/golden.h"

/// What `print` writes to the OutputFile that it is given.
template <class Print>
std::string Printed(const Print& print) {
  std::string pattern = testing::TempDir() + "kraid-XXXXXX";
  const std::filesystem::path folder = mkdtemp(pattern.data());
  OutputFile output(folder / "printed");
  print(output);
  output.Finish();
  EXPECT_EQ(output.GetError(), "");
  std::string text = ReadFile(folder / "printed");
  std::filesystem::remove_all(folder);
  return text;
}

using Properties = std::vector<std::pair<std::string, NKVXHMZ20::TCIMValue>>;

inline NKVXHMZ20::TCIMReference Commit(standin::Repository& repository, const char* class_name,
                                       const Properties& properties) {
  const auto instance = repository.GetOrDeclareClass(class_name)->CreateInstance({});
  for (const auto& [name, value] : properties) instance->SetPropertyValue(name, value, {});
  instance->Commit({});
  try {
    return instance->GetReference();
  } catch (const std::exception&) {
    return {nullptr, {}};  // without its keys it has none
  }
}

#endif  // TESTS_PRINT_TO_H_
