#ifndef TESTS_MACHINE_FILES_H_
#define TESTS_MACHINE_FILES_H_

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

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

/// "%0A" in a text stands for that byte.
inline std::string Decoded(std::string text) {
  for (std::size_t at = 0; (at = text.find('%', at)) != std::string::npos; ++at) {
    text.replace(at, 3, 1, static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16)));
  }
  return text;
}

/// The decoded parts of a row.
inline std::vector<std::string> CellsOf(const std::string& row, const std::string& separator) {
  std::vector<std::string> cells;
  for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + separator.size()) {
    end = row.find(separator, begin);
    cells.push_back(Decoded(row.substr(begin, end == std::string::npos ? end : end - begin)));
  }
  return cells;
}

/// The rows of a table in tests/, but for empty ones and comments.
inline std::vector<std::vector<std::string>> Rows(const std::string& name,
                                                  const std::string& separator = "|") {
  std::vector<std::vector<std::string>> rows;
  std::ifstream file(KRAID_SOURCE_DIR "/tests/" + name);
  for (std::string row; std::getline(file, row);) {
    if (!row.empty() && row[0] != '#') rows.push_back(CellsOf(row, separator));
  }
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

/// A file of those that are expected of a machine, "sample/inventory.json".
inline std::filesystem::path ExpectedFile(const std::string& name) {
  const auto slash = name.find('/');
  return std::filesystem::path(KRAID_SOURCE_DIR "/tests/machines") / name.substr(0, slash) /
         "expected" / name.substr(slash + 1);
}

/// Compares with such a file, which KRAID_UPDATE_EXPECTED in the environment writes anew.
inline void CompareExpected(const std::string& name, const std::string& text) {
  const std::filesystem::path file = ExpectedFile(name);
  if (std::getenv("KRAID_UPDATE_EXPECTED") != nullptr) {
    std::ofstream(file, std::ios::binary) << text;
  }
  EXPECT_EQ(text, ReadFile(file));
}

/// Compares with such a file of cases, with a blank line between them: behind the lines of each
/// stands, indented, what `answer` says of them, but for comments.
inline void CompareCases(
    const std::string& name,
    const std::function<std::string(const std::vector<std::string>& lines)>& answer) {
  std::istringstream file(ReadFile(ExpectedFile(name)));
  std::string text;
  for (std::string line; file;) {
    std::vector<std::string> lines;
    while (std::getline(file, line) && !line.empty()) {
      if (line.starts_with("  ")) continue;
      text += line + "\n";
      if (line[0] != '#') lines.push_back(line);
    }
    if (!lines.empty()) text += answer(lines);
    if (file) text += "\n";
  }
  EXPECT_FALSE(text.empty()) << name;
  CompareExpected(name, text);
}

#endif  // TESTS_MACHINE_FILES_H_
