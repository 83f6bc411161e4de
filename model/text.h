#ifndef MODEL_TEXT_H_
#define MODEL_TEXT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Whether the text holds the words, anywhere.
inline bool Contains(std::string_view text, std::string_view words) {
  return text.find(words) != std::string_view::npos;
}

/// Whether the text holds one of the words, anywhere.
inline bool ContainsAny(std::string_view text, std::span<const std::string_view> words) {
  return std::any_of(words.begin(), words.end(),
                     [text](std::string_view word) { return Contains(text, word); });
}

/// The text from `begin` up to one character short of `end`: how values of fixed
/// layouts are cut, on purpose. In the tools' layout that character is a blank, or part of a unit
/// behind the value; where it is not, the value loses its last character. All the rest of the text
/// when `end` is npos, "" when nothing is left.
std::string CutShortOf(std::string_view text, std::size_t begin, std::size_t end);

/// The number at the start of the text, in base 10: white space is skipped, reading stops at the
/// first other character, no digits give 0. Numbers that need more than 32 bits lose the upper
/// ones.
std::int32_t ToInt32(const std::string& text);

#endif  // MODEL_TEXT_H_
