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
