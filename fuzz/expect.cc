#include "fuzz/expect.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

void Expect(bool holds, std::string_view what, std::string_view shown) {
  if (holds) return;
  constexpr std::size_t kShown = 2000;
  std::cerr << "violation: " << what << '\n'
            << shown.substr(shown.size() > kShown ? shown.size() - kShown : 0) << std::endl;
  std::abort();
}

void ExpectFitForTerminal(const std::string& text, bool with_tabs) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool is_white = byte == '\n' || (byte == '\t' && with_tabs);
    const bool is_control = (byte < 0x20 && !is_white) || byte == 0x7f;
    // U+0080 to U+009F do on some terminals what escape sequences do.
    const bool is_second_set =
        byte == 0xc2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xa0;
    Expect(!is_control && !is_second_set, "a control character",
           std::string_view(text).substr(0, i + 1));
  }
  // By a library, not by what is to be tested: it does not write a text that is none.
  try {
    static_cast<void>(nlohmann::json(text).dump());
  } catch (const nlohmann::json::exception&) {
    Expect(false, "no UTF-8", text);
  }
}

void ExpectWithin(const std::string& text, std::size_t width) {
  std::size_t column = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((text[i] & '\xC0') != '\x80') ++column;  // not within a character
    if (text[i] == '\n') column = 0;
    Expect(column <= width, "a line is too wide", std::string_view(text).substr(0, i + 1));
  }
}

void ExpectCheckLine(const std::string& line, int exit_status) {
  static constexpr std::string_view kWords[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
  Expect(exit_status >= 0 && exit_status <= 3, "a check's status", std::to_string(exit_status));
  ExpectFitForTerminal(line, false);
  Expect(line.ends_with('\n') && std::count(line.begin(), line.end(), '\n') == 1,
         "a check is no single line", line);
  Expect(line.starts_with("KRAID " + std::string(kWords[exit_status]) + " - "),
         "a check does not say how it ends", line);
}

void ExpectMetrics(const std::string& text) {
  static const std::regex sample(
      R"re((kraid_[a-z_]+)(\{[a-z_]+="(\\[\\"]|[^\\"])*"(,[a-z_]+="(\\[\\"]|[^\\"])*")*\})? [0-9.]+)re",
      std::regex::optimize);
  static constexpr std::size_t kLongest = 3000;  // 20 labels of 128 bytes, with room for escapes
  ExpectFitForTerminal(text, false);
  Expect(text.ends_with("\n# EOF\n"), "metrics do not end", text);
  std::set<std::string> families;
  std::set<std::string> samples;
  std::string family;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("# HELP ")) {
      family = line.substr(7, line.find(' ', 7) - 7);
      Expect(families.insert(family).second, "a family comes twice", line);
    }
    if (line.starts_with('#')) continue;
    std::smatch parts;
    Expect(line.size() < kLongest && std::regex_match(line, parts, sample), "no sample", line);
    Expect(parts[1] == family, "a sample of another family", line);
    Expect(samples.insert(line.substr(0, line.rfind(' '))).second, "a sample comes twice", line);
  }
}

void ExpectOneLine(const std::string& message) {
  Expect(!message.empty() && message.find('\n') == std::string::npos, "no one-line message",
         message);
}
