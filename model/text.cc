#include "model/text.h"

#include <cstdlib>

std::string Cut(std::string_view text, std::size_t begin, std::ptrdiff_t length) {
  if (length <= 0 || begin >= text.size()) return "";
  return std::string(text.substr(begin, static_cast<std::size_t>(length)));
}

std::int32_t ToInt32(const std::string& text) {
  return static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
}
