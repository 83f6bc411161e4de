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

std::size_t PieceLength(std::string_view text) {
  constexpr std::size_t kMost = std::size_t{64} << 10;
  if (text.size() <= kMost) return text.size();
  // Behind three bytes that go on with a character, a fourth one cannot.
  for (std::size_t end = kMost; end >= kMost - 3; --end) {
    if ((text[end] & '\xC0') != '\x80') return end;
  }
  return kMost;
}

std::string ValidUtf8(std::string text) {
  using nlohmann::json;
  if (IsAscii(text)) return text;
  std::string valid;
  ForEachPiece(text, [&valid](std::string_view piece) {
    valid += json::parse(json(piece).dump(-1, ' ', false, json::error_handler_t::replace))
                 .get_ref<const std::string&>();
  });
  return valid;
}

std::optional<Hidden> FindHidden(std::string_view text, std::size_t at) {
  static constexpr std::pair<unsigned, unsigned> kRanges[] = {
      {0x7F, 0x9F}, {0x61C, 0x61C}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
  const auto byte = [&](std::size_t i) {
    return static_cast<unsigned>(static_cast<unsigned char>(text[at + i]));
  };
  Hidden hidden{byte(0) < 0x80 ? byte(0) : 0, 1};  // of a byte within a character nothing
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

std::string NameHidden(std::string text, std::string (*name)(unsigned code)) {
  std::size_t first = 0;
  while (first < text.size() && !FindHidden(text, first)) ++first;
  if (first == text.size()) return text;
  std::string named;
  named.reserve(text.size() + text.size() / 4);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto hidden = FindHidden(text, i);
    if (!hidden) {
      named += text[i];
      continue;
    }
    named += name(hidden->code);
    i += hidden->size - 1;
  }
  return named;
}

std::string Sanitized(std::string text, Layout layout) {
  text = ValidUtf8(std::move(text));
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = Replacement(c, layout);
  }
  return NameHidden(std::move(text), [](unsigned code) {
    char name[16];
    std::snprintf(name, sizeof name, "<U+%04X>", code);
    return std::string(name);
  });
}

std::string Readable(std::string text) {
  text = ReadableLine(std::move(text));
  std::size_t size = 0;
  for (const char c : text) {
    if (c != ' ' || (size > 0 && text[size - 1] != ' ')) text[size++] = c;
  }
  text.resize(size);
  return text;
}

std::string ReadableLine(std::string text) {
  text = Sanitized(std::move(text), Layout::kBlanks);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
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
