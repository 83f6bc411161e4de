#include "schema/mof_scanner.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";
constexpr std::string_view kWord =
    "0123456789_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

/// How many bytes the character at the start of the text takes; 0 when it is no UTF-8.
std::size_t CharacterSize(std::string_view text) {
  // The second byte's range keeps out what is too long, surrogates, and what is above U+10FFFF.
  static constexpr struct {
    unsigned char first, last, second_first, second_last;
    std::size_t size;
  } kRows[] = {
      {0x00, 0x7F, 0x00, 0x00, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
      {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
      {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
  };
  const auto is_between = [text](std::size_t at, unsigned char first, unsigned char last) {
    const auto byte = static_cast<unsigned char>(text[at]);
    return first <= byte && byte <= last;
  };
  for (const auto& row : kRows) {
    if (!is_between(0, row.first, row.last)) continue;
    if (text.size() < row.size) return 0;
    bool is_character = row.size == 1 || is_between(1, row.second_first, row.second_last);
    for (std::size_t i = 2; i < row.size; ++i) is_character &= is_between(i, 0x80, 0xBF);
    return is_character ? row.size : 0;
  }
  return 0;
}

/// `code` is below 0x10000.
void AppendUtf8(unsigned code, std::string& text) {
  const auto append = [&text](unsigned byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0 | code >> 6);
  } else {
    append(0xE0 | code >> 12);
    append(0x80 | (code >> 6 & 0x3F));
  }
  append(0x80 | (code & 0x3F));
}

unsigned Number(std::string_view digits, int base = 10) {
  unsigned number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  return number;
}

/// "yyyymmddHHMMSS.mmmmmm" and the offset.
bool IsDateTime(std::string text) {
  static constexpr std::string_view kUnknown = "**************.******";
  static constexpr std::string_view kLeast = "00010101000000.000000";
  if (text.size() != kLeast.size() + 4) return false;
  for (const std::size_t begin : {4U, 6U, 8U, 10U, 12U, 15U}) {
    if (text.substr(begin, kUnknown.size() - begin) == kUnknown.substr(begin)) {
      text.replace(begin, kLeast.size() - begin, kLeast.substr(begin));
    }
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view allowed = i == 14 ? "." : i == 21 ? "+-" : kDigits;
    if (allowed.find(text[i]) == std::string_view::npos) return false;
  }
  const auto number = [&text](std::size_t at, std::size_t size = 2) {
    return Number(std::string_view(text).substr(at, size));
  };
  const auto date = std::chrono::year(static_cast<int>(number(0, 4))) /
                    std::chrono::month(number(4)) / std::chrono::day(number(6));
  return number(0, 4) > 0 && date.ok() && number(8) < 24 && number(10) < 60 && number(12) < 60;
}

}  // namespace

MofScanner::MofScanner(std::string name, std::string_view text)
    : name_(std::move(name)), text_(text) {
  while (!Rest().empty()) {
    const std::size_t size = CharacterSize(Rest());
    Check(size > 0, "no UTF-8");
    Take(size);
  }
  at_ = 0;
  line_ = 1;
}

void MofScanner::Check(bool holds, std::string_view why) const {
  if (holds) return;
  throw std::runtime_error(name_ + ":" + std::to_string(line_) + ": " + std::string(why));
}

bool MofScanner::IsAtEnd() {
  SkipBlanks();
  return Rest().empty();
}

bool MofScanner::Accept(std::string_view token) {
  SkipBlanks();
  if (!Rest().starts_with(token)) return false;
  if (IsNext(kWord) && IsNext(kWord, token.size())) return false;
  Take(token.size());
  return true;
}

void MofScanner::Expect(std::string_view token) {
  if (!Accept(token)) Check(false, "expected " + std::string(token));
}

std::string MofScanner::TakeName() {
  SkipBlanks();
  Check(IsNext(kWord) && !IsNext(kDigits), "expected a name");
  return std::string(TakeAll(kWord));
}

std::string MofScanner::TakeAlias() {
  Expect("$");
  Check(IsNext(kWord), "expected an alias");  // right behind it, that is
  return "$" + TakeName();
}

std::string MofScanner::TakeString() {
  Expect("\"");
  std::string text;
  while (!IsNext("\"")) {
    Check(!Rest().empty() && static_cast<unsigned char>(Rest()[0]) >= ' ',
          "line end or control character in a string");
    const char c = Take(1)[0];
    c == '\\' ? TakeEscape(text) : text.push_back(c);
  }
  Take(1);
  return text;
}

void MofScanner::TakeDateTime() { Check(IsDateTime(TakeString()), "no date-time"); }

void MofScanner::TakeNumber(std::uint32_t largest) {
  SkipBlanks();
  const std::string_view digits = TakeAll(kDigits);
  Check(!digits.empty() && (digits[0] != '0' || digits == "0"), "expected a number");
  std::uint32_t number = 0;
  const auto error = std::from_chars(digits.data(), digits.data() + digits.size(), number).ec;
  Check(error == std::errc() && number <= largest, "number out of range");
}

bool MofScanner::IsNext(std::string_view characters, std::size_t ahead) const {
  return Rest().size() > ahead && characters.find(Rest()[ahead]) != std::string_view::npos;
}

std::string_view MofScanner::Take(std::size_t count) {
  const std::string_view taken = text_.substr(at_, count);
  line_ += static_cast<std::size_t>(std::count(taken.begin(), taken.end(), '\n'));
  at_ += count;
  return taken;
}

std::string_view MofScanner::TakeAll(std::string_view characters) {
  return Take(std::min(Rest().find_first_not_of(characters), Rest().size()));
}

void MofScanner::SkipBlanks() {
  for (;;) {
    TakeAll(" \t\r\n");
    if (Rest().starts_with("//")) {
      Take(std::min(Rest().find('\n'), Rest().size()));
    } else if (Rest().starts_with("/*")) {
      const std::size_t end = Rest().find("*/", 2);
      Check(end != std::string_view::npos, "comment without an end");
      Take(end + 2);
    } else {
      return;
    }
  }
}

void MofScanner::TakeEscape(std::string& text) {
  static constexpr std::string_view kLetters = "btnfr\"\\";
  static constexpr std::string_view kMeanings = "\b\t\n\f\r\"\\";
  if (Rest().starts_with('x')) {
    Take(1);
    const std::string_view digits = Rest().substr(0, 4);
    const unsigned code = Number(digits, 16);
    Check(digits.size() == 4 && digits.find_first_not_of(kHexDigits) == std::string_view::npos,
          "less than four digits behind \\x");
    Check(code != 0 && (code < 0xD800 || code > 0xDFFF), "no such character");
    Take(4);
    AppendUtf8(code, text);
    return;
  }
  Check(IsNext(kLetters), "no such escape");
  text += kMeanings[kLetters.find(Take(1)[0])];
}
