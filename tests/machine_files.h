#ifndef TESTS_MACHINE_FILES_H_
#define TESTS_MACHINE_FILES_H_

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

// A machine is a folder: kraid/TOOL.d/CONTROLLER/COMMAND-OPTION.txt holds what a run of a tool
// prints, KelvMgr/ the RAID manager's log. The sample machine is the one in demo/, all others are
// in tests/machines. What is expected of a machine is in tests/machines/NAME/expected.

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::filesystem::path MachineFolder(const std::string& name) {
  const std::filesystem::path source = KRAID_SOURCE_DIR;
  return name == "sample" ? source / "demo" : source / "tests/machines" / name;
}

/// The machine's directory of the RAID manager, as the log reader takes it.
inline std::string ManagerFolder(const std::string& name) {
  return (MachineFolder(name) / "KelvMgr/").string();
}

/// By command line, "./kraid/kelvcmd getconfig 1 al": what the machine's tools print.
inline std::map<std::string, std::string> ToolOutputs(const std::string& machine) {
  std::map<std::string, std::string> outputs;
  for (const auto& file :
       std::filesystem::recursive_directory_iterator(MachineFolder(machine) / "kraid")) {
    if (file.path().extension() != ".txt") continue;
    const std::filesystem::path number = file.path().parent_path();
    std::string command = file.path().stem().string();
    command.replace(command.find('-'), 1, " " + number.filename().string() + " ");
    outputs["./kraid/" + number.parent_path().stem().string() + " " + command] =
        ReadFile(file.path());
  }
  EXPECT_FALSE(outputs.empty()) << machine;
  return outputs;
}

/// Compares with a file of those that are expected of a machine, "sample/inventory.json", which
/// KRAID_UPDATE_EXPECTED in the environment writes anew.
inline void CompareExpected(const std::string& name, const std::string& text) {
  const auto slash = name.find('/');
  const std::filesystem::path file = std::filesystem::path(KRAID_SOURCE_DIR "/tests/machines") /
                                     name.substr(0, slash) / "expected" / name.substr(slash + 1);
  if (std::getenv("KRAID_UPDATE_EXPECTED") != nullptr) {
    std::ofstream(file, std::ios::binary) << text;
  }
  EXPECT_EQ(text, ReadFile(file));
}

#endif  // TESTS_MACHINE_FILES_H_
