#include "inventory/display.h"

#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace {

constexpr std::size_t kNarrowest = 40;

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::size_t FindWidth(bool on_terminal) {
  const std::string_view columns = Environment("COLUMNS");
  std::size_t width = 0;
  const auto read = std::from_chars(columns.data(), columns.data() + columns.size(), width);
  if (read.ec == std::errc() && read.ptr == columns.data() + columns.size() && width > 0) {
    return std::max(width, kNarrowest);
  }
  winsize size{};
  if (on_terminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    return std::max<std::size_t>(size.ws_col, kNarrowest);
  }
  return Display::kUnlimited;
}

// The locale is asked but never set: the plug-in in this process is not to notice.
bool IsUtf8Locale() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) return false;
  const bool is_utf8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
  freelocale(locale);
  return is_utf8;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & '\x80') == 0; });
}

}  // namespace

Display FindDisplay(Color color, bool to_file) {
  const bool on_terminal = !to_file && isatty(STDOUT_FILENO) != 0;
  Display display;
  display.width = FindWidth(on_terminal);
  display.color = color == Color::kAlways ||
                  (color == Color::kAuto && on_terminal && Environment("NO_COLOR").empty() &&
                   !Environment("TERM").empty() && Environment("TERM") != "dumb");
  display.utf8 = IsUtf8Locale();
  return display;
}

std::string ValidUtf8(std::string text) {
  using nlohmann::json;
  if (IsAscii(text)) return text;
  return json::parse(json(std::move(text)).dump(-1, ' ', false, json::error_handler_t::replace))
      .get<std::string>();
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
  const std::string valid = ValidUtf8(std::move(text));
  std::string readable;
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const auto byte = static_cast<unsigned char>(valid[i]);
    if (byte >= '\t' && byte <= '\r') {
      readable += ' ';
      continue;
    }
    // The second control set of ISO 8859, U+0080 to U+009F, moves some terminals, too.
    const bool is_high_control = byte == 0xC2 && static_cast<unsigned char>(valid[i + 1]) < 0xA0;
    if (is_high_control) ++i;
    readable += byte < ' ' || byte == 0x7F || is_high_control ? '?' : valid[i];
  }
  readable.erase(readable.find_last_not_of(' ') + 1);
  return readable;
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
