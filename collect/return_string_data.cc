#include "collect/return_string_data.h"

#include <cstdint>
#include <iostream>

std::string ReturnStringData(const std::string& marker, const std::string& text, int length) {
  if (text.empty()) return "";
  // In 32 bits, where "not found" is -1: the start then wraps to the marker's length.
  const auto found = static_cast<std::uint32_t>(text.find(marker));
  const auto start =
      static_cast<std::int32_t>(found + static_cast<std::uint32_t>(marker.size()) + 1);
  const std::string result =
      text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
  const auto quote = result.find('"');
  std::cout << "offset of marker is : " << static_cast<std::int32_t>(quote) << std::endl;
  return result.substr(0, quote);
}
