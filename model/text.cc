#include "model/text.h"

#include <cstdlib>

std::string CutShortOf(std::string_view text, std::size_t begin, std::size_t end) {
  if (begin > text.size()) return "";
  if (end == std::string_view::npos) return std::string(text.substr(begin));
  if (end <= begin + 1) return "";
  return std::string(text.substr(begin, end - begin - 1));
}

std::int32_t ToInt32(const std::string& text) {
  return static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
}
