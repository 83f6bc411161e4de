#include "inventory/base/readable.h"

#include <algorithm>
#include <cstdio>
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

std::optional<Hidden> FindHidden(std::string_view text, std::size_t at) {
  static constexpr std::pair<unsigned, unsigned> kRanges[] = {
      {0x80, 0x9F}, {0x61C, 0x61C}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
  const auto byte = [&](std::size_t i) {
    return static_cast<unsigned>(static_cast<unsigned char>(text[at + i]));
  };
  Hidden hidden{};
  if ((byte(0) & 0xE0U) == 0xC0) {
    hidden = {(byte(0) & 0x1FU) << 6 | (byte(1) & 0x3FU), 2};
  } else if ((byte(0) & 0xF0U) == 0xE0) {
    hidden = {(byte(0) & 0x0FU) << 12 | (byte(1) & 0x3FU) << 6 | (byte(2) & 0x3FU), 3};
  }
  for (const auto& [first, last] : kRanges) {
    if (hidden.code >= first && hidden.code <= last) return hidden;
  }
  return std::nullopt;
}

std::string Sanitized(std::string text, Layout layout) {
  const std::string valid = ValidUtf8(std::move(text));
  std::string sanitized;
  sanitized.reserve(valid.size());
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const auto byte = static_cast<unsigned char>(valid[i]);
    if (byte < ' ' || byte == 0x7F) {
      sanitized += Replacement(valid[i], layout);
    } else if (const auto hidden = FindHidden(valid, i)) {
      char name[16];
      std::snprintf(name, sizeof name, "<U+%04X>", hidden->code);
      sanitized += name;
      i += hidden->size - 1;
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
