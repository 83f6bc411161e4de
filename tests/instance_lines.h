#ifndef TESTS_INSTANCE_LINES_H_
#define TESTS_INSTANCE_LINES_H_

#include <sstream>
#include <string>

#include "tests/print_to.h"

// Instances as lines of a file of cases.

/// The value of a property, of which the end of its name tells the type: "@" is a time, "|" an
/// array of lines, "#" one of numbers.
inline NKVXHMZ20::TCIMValue ValueOf(char type, const std::string& text) {
  using NKVXHMZ20::TCIMDateTime;
  using NKVXHMZ20::TCIMValue;
  if (type == '@') return text.empty() ? TCIMDateTime() : TCIMDateTime(text);
  if (type != '|' && type != '#') return text;
  TCIMValue::Array elements;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, '|');) {
    elements.push_back(type == '|' ? TCIMValue(part) : TCIMValue(std::uint32_t(std::stoul(part))));
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
    const NKVXHMZ20::TCIMValue typed = ValueOf(name.back(), value);
    properties.emplace_back(name.substr(0, name.find_first_of("@|#")), typed);
  }
  Commit(repository, class_name.c_str(), properties);
}

#endif  // TESTS_INSTANCE_LINES_H_
