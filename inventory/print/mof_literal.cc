#include "inventory/print/mof_literal.h"

#include <chrono>
#include <cstdio>
#include <string_view>

#include "inventory/base/readable.h"

namespace {

constexpr std::size_t kDateTimeWidth = 25;
constexpr char kEarliestDateTime[] = "00010101000000.000000+000";
constexpr std::string_view kUnknownFields = "**************.******";  // up to the offset

/// A piece of a text as it stands in a literal.
std::string Escaped(std::string_view piece) {
  static constexpr std::string_view kEscaped = "\b\t\n\f\r\"\\";
  static constexpr std::string_view kLetters = "btnfr\"\\";
  std::string literal;
  const std::string valid = ValidUtf8(std::string(piece));
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const char c = valid[i];
    const unsigned code = static_cast<unsigned char>(c);
    if (const auto escape = kEscaped.find(c); escape != std::string_view::npos) {
      literal += '\\';
      literal += kLetters[escape];
      continue;
    }
    if (code == 0) {
      literal += "\uFFFD";  // a MOF string holds no NUL, however it is written
      continue;
    }
    const Hidden hidden = FindHidden(valid, i).value_or(Hidden{code, 0});
    if (code < ' ' || hidden.size > 0) {
      char escape[16];
      std::snprintf(escape, sizeof escape, "\\x%04X", hidden.code);
      literal += escape;
      i += hidden.size > 0 ? hidden.size - 1 : 0;
    } else {
      literal += c;
    }
  }
  return literal;
}

}  // namespace

void WriteMofString(std::string_view text, Sink& output) {
  output.Write("\"");
  ForEachPiece(text, [&output](std::string_view piece) { output.Write(Escaped(piece)); });
  output.Write("\"");
}

std::string MofDateTime(const std::string& text) {
  if (text.size() != kDateTimeWidth || text.starts_with("0000")) return kEarliestDateTime;
  const auto number = [&text](std::size_t at, std::size_t count) {
    return static_cast<unsigned>(std::stoul(text.substr(at, count)));
  };
  const auto month =
      std::chrono::year(static_cast<int>(number(0, 4))) / std::chrono::month(number(4, 2));
  const struct {
    std::size_t at;
    bool is_possible;
  } fields[] = {
      {4, month.month().ok()},  {6, (month / std::chrono::day(number(6, 2))).ok()},
      {8, number(8, 2) < 24},   {10, number(10, 2) < 60},
      {12, number(12, 2) < 60},
  };
  std::string result = text;
  for (const auto& field : fields) {
    if (field.is_possible) continue;
    const std::string_view unknown = kUnknownFields.substr(field.at);
    return result.replace(field.at, unknown.size(), unknown);
  }
  return result;
}
