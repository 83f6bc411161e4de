#include "inventory/print/display.h"

#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::size_t kNarrowest = 40;

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// A number above 0 in the environment; 0 for anything else.
std::size_t NumberIn(const char* name) {
  const std::string_view text = Environment(name);
  std::size_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() ? number : 0;
}

/// The environment goes before what the terminal says.
std::size_t FindExtent(const char* variable, std::size_t of_terminal) {
  if (const std::size_t number = NumberIn(variable); number > 0) return number;
  return of_terminal > 0 ? of_terminal : Display::kUnlimited;
}

// The locale is asked but never set: the plug-in in this process is not to notice.
bool IsUtf8Locale() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) return false;
  const bool is_utf8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
  freelocale(locale);
  return is_utf8;
}

}  // namespace

Display FindDisplay(Color color, bool to_file) {
  const bool on_terminal = !to_file && isatty(STDOUT_FILENO) != 0;
  Display display;
  winsize size{};
  if (on_terminal) ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
  display.width = std::max(FindExtent("COLUMNS", size.ws_col), kNarrowest);
  if (on_terminal) display.height = FindExtent("LINES", size.ws_row);
  display.color = color == Color::kAlways ||
                  (color == Color::kAuto && on_terminal && Environment("NO_COLOR").empty() &&
                   !Environment("TERM").empty() && Environment("TERM") != "dumb");
  display.utf8 = IsUtf8Locale();
  return display;
}
