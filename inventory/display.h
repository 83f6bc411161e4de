#ifndef INVENTORY_DISPLAY_H_
#define INVENTORY_DISPLAY_H_

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

/// When text is coloured.
enum class Color { kAuto, kAlways, kNever };

/// What the place where a text is read can show.
struct Display {
  static constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

  std::size_t width = kUnlimited;  ///< In columns.
  bool color = false;
  bool utf8 = false;
};

/// What standard output can show, or a file when `to_file`. The width is that of COLUMNS in the
/// environment, else the terminal's, else unlimited; 40 at least. Color::kAuto means a terminal,
/// but for NO_COLOR in the environment and for a dumb one. UTF-8 is what the locale says.
Display FindDisplay(Color color, bool to_file);

/// Text from elsewhere as valid UTF-8: bytes that are none become U+FFFD, as in the JSON document.
std::string ValidUtf8(std::string text);

/// Text from elsewhere, fit to be read: valid UTF-8, trimmed, each run of blanks and line ends as
/// one blank, control characters as "?".
std::string Readable(std::string text);

/// As Readable, for a line whose columns matter: blanks stay, but for those at the end.
std::string ReadableLine(std::string text);

/// "1 device", "2 devices"
std::string Counted(std::size_t count, const std::string& noun);

/// With the ASCII letters in lower case.
std::string Lower(std::string_view text);

/// How many columns a text of Readable takes.
std::size_t WidthOf(std::string_view text);

#endif  // INVENTORY_DISPLAY_H_
