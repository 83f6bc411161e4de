#ifndef TESTS_INSTANCE_LINES_H_
#define TESTS_INSTANCE_LINES_H_

#include <fstream>
#include <sstream>
#include <string>

#include "tests/machine_files.h"
#include "tests/print_to.h"

// Instances as lines of a file; "%0A" stands for that byte.

/// A time in its form, or of seven numbers that need not be possible: year, ..., second and offset.
inline NKVXHMZ20::TCIMDateTime TimeOf(const std::string& text) {
  using NKVXHMZ20::TCIMDateTime;
  if (text.find(' ') == std::string::npos)
    return text.empty() ? TCIMDateTime() : TCIMDateTime(text);
  unsigned short number[6];
  short offset = 0;
  std::istringstream parts(text);
  for (unsigned short& part : number) parts >> part;
  parts >> offset;
  return {number[0], number[1], number[2], number[3], number[4], number[5], 0, offset};
}

/// The path "CLASS,KEY:VALUE,KEY:VALUE".
inline NKVXHMZ20::TCIMReference PathOf(const std::string& text) {
  const std::vector<std::string> parts = CellsOf(text, ",");
  NKVXHMZ20::TCIMReference::Keys keys;
  for (std::size_t i = 1; i < parts.size(); ++i) {
    const auto colon = parts[i].find(':');
    keys.emplace_back(parts[i].substr(0, colon), parts[i].substr(colon + 1));
  }
  return {nullptr, parts[0], keys};
}

/// The value of a property, of which the end of its name tells the type: "@" is a time, "|" an
/// array of lines, "#" one of numbers, "+" a small number, ">" a path, "!" no value.
inline NKVXHMZ20::TCIMValue ValueOf(char type, const std::string& text) {
  using NKVXHMZ20::TCIMValue;
  if (type == '@') return TimeOf(text);
  if (type == '+') return TCIMValue(static_cast<std::uint16_t>(std::stoul(text)));
  if (type == '>') return PathOf(text);
  if (type == '!') return {};
  if (type != '|' && type != '#') return Decoded(text);
  TCIMValue::Array elements;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, '|');) {
    const std::string element = Decoded(part);
    elements.push_back(type == '|' ? TCIMValue(element)
                                   : TCIMValue(static_cast<std::uint32_t>(std::stoul(element))));
  }
  const auto code = type == '|' ? TCIMValue::kString : TCIMValue::kUint32;
  return {TCIMValue::TCIMType(code), elements.size(), elements};
}

/// Commits an instance, "CLASS;PROPERTY=VALUE;PROPERTY=VALUE".
inline void CommitLine(standin::Repository& repository, const std::string& line) {
  std::istringstream fields(line);
  std::string class_name;
  std::getline(fields, class_name, ';');
  Properties properties;
  for (std::string name, value; std::getline(fields, name, '=');) {
    std::getline(fields, value, ';');
    const char type = name.empty() ? ' ' : name.back();
    properties.emplace_back(Decoded(name.substr(0, name.find_first_of("@|#+>!"))),
                            ValueOf(type, value));
  }
  Commit(repository, Decoded(class_name).c_str(), properties);
}

/// Commits the instances of a file in tests/machines, one a line but for comments.
inline void CommitFile(standin::Repository& repository, const std::string& name) {
  std::ifstream lines(KRAID_SOURCE_DIR "/tests/machines/" + name);
  EXPECT_TRUE(lines.is_open()) << name;
  for (std::string line; std::getline(lines, line);) {
    if (line[0] != '#') CommitLine(repository, line);
  }
}

#endif  // TESTS_INSTANCE_LINES_H_
