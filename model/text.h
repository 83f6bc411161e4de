#ifndef MODEL_TEXT_H_
#define MODEL_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Whether the text holds the words, anywhere.
inline bool Contains(std::string_view text, std::string_view words) {
  return text.find(words) != std::string_view::npos;
}

/// The part of the text from `begin` on, `length` characters or what there is of them. The cuts
/// that parsers compute may come out negative, or begin behind the text: both give "".
std::string Cut(std::string_view text, std::size_t begin, std::ptrdiff_t length);

/// The number at the start of the text, in base 10: white space is skipped, reading stops at the
/// first other character, no digits give 0. Numbers that need more than 32 bits lose the upper
/// ones.
std::int32_t ToInt32(const std::string& text);

#endif  // MODEL_TEXT_H_
