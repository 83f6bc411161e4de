#include "inventory/base/readable.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & '\x80') == 0; });
}

/// What a control character becomes; most of them "?".
char Replacement(char control, Layout layout) {
  if (layout == Layout::kBlanks) return control >= '\t' && control <= '\r' ? ' ' : '?';
  const bool stays = control == '\t' || (control == '\n' && layout == Layout::kLines);
  return stays ? control : '?';
}

}  // namespace

std::string ValidUtf8(std::string text) {
  using nlohmann::json;
  if (IsAscii(text)) return text;
  return json::parse(json(std::move(text)).dump(-1, ' ', false, json::error_handler_t::replace))
      .get<std::string>();
}

std::string Sanitized(std::string text, Layout layout) {
  const std::string valid = ValidUtf8(std::move(text));
  std::string sanitized;
  sanitized.reserve(valid.size());
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const auto byte = static_cast<unsigned char>(valid[i]);
    if (byte < ' ' || byte == 0x7F) {
      sanitized += Replacement(valid[i], layout);
    } else if (byte == 0xC2 && static_cast<unsigned char>(valid[i + 1]) < 0xA0) {
      // The second set of controls moves some terminals, too. Behind 0xC2 there is a second byte.
      sanitized += '?';
      ++i;
    } else {
      sanitized += valid[i];
    }
  }
  return sanitized;
}

std::string Readable(std::string text) {
  const std::string line = ReadableLine(std::move(text));
  std::string readable;
  for (const char c : line) {
    if (c != ' ' || !(readable.empty() || readable.back() == ' ')) readable += c;
  }
  return readable;
}

std::string ReadableLine(std::string text) {
  std::string line = Sanitized(std::move(text), Layout::kBlanks);
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string Counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::size_t WidthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
}
