#ifndef INVENTORY_PRINT_DISPLAY_H_
#define INVENTORY_PRINT_DISPLAY_H_

#include <cstddef>
#include <limits>

/// When text is coloured.
enum class Color { kAuto, kAlways, kNever };

/// What the place where a text is read can show.
struct Display {
  static constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

  std::size_t width = kUnlimited;  ///< In columns.
  bool color = false;
  bool utf8 = false;
  std::size_t height = kUnlimited;  ///< In lines.
};

/// What standard output can show, or a file when `to_file`. The width is that of COLUMNS in the
/// environment, else the terminal's, else unlimited; 40 at least. The height is a terminal's, as
/// LINES has it or the terminal itself. Color::kAuto means a terminal, but for NO_COLOR in the
/// environment and for a dumb one. UTF-8 is what the locale says.
Display FindDisplay(Color color, bool to_file);

#endif  // INVENTORY_PRINT_DISPLAY_H_
