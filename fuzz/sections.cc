#include "fuzz/sections.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Where the next heading begins, its "@"; npos when there is none.
std::size_t FindHeading(std::string_view input, std::size_t from) {
  for (std::size_t at = input.find('@', from); at != std::string_view::npos;
       at = input.find('@', at + 1)) {
    if ((at == 0 || input[at - 1] == '\n') && at + 2 < input.size() && IsDigit(input[at + 1]) &&
        input[at + 2] == ' ') {
      return at;
    }
  }
  return std::string_view::npos;
}

}  // namespace

std::vector<Section> CutSections(std::string_view input) {
  std::vector<Section> sections;
  for (std::size_t at = FindHeading(input, 0); at != std::string_view::npos;) {
    const std::size_t next = FindHeading(input, at + 3);
    std::string_view whole =
        input.substr(at, next == std::string_view::npos ? next : next - 1 - at);
    const std::size_t line = whole.find('\n');
    Section& section = sections.emplace_back();
    section.kind = whole[1] - '0';
    section.name = whole.substr(3, line == std::string_view::npos ? line : line - 3);
    if (line != std::string_view::npos) section.text = whole.substr(line + 1);
    at = next;
  }
  return sections;
}
