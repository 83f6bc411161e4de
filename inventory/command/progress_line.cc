#include "inventory/command/progress_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "inventory/base/readable.h"

namespace {

constexpr char kClearLine[] = "\r\x1b[K";

bool CanRewriteLines() {
  const char* term = std::getenv("TERM");
  return isatty(STDERR_FILENO) != 0 && term != nullptr && std::string_view(term) != "dumb";
}

/// The width in columns within which a line can be taken away again.
std::size_t Width() {
  winsize size{};
  const bool is_known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return is_known ? size.ws_col - std::size_t{1} : std::string::npos;
}

}  // namespace

std::string FittingLine(const std::string& text, std::size_t columns) {
  std::string line = Sanitized(text, Layout::kBlanks);
  if (columns < line.size()) {
    while ((line[columns] & '\xC0') == '\x80') --columns;  // not within a character
    line.resize(columns);
  }
  return line;
}

ProgressLine::ProgressLine() : on_terminal_(CanRewriteLines()) {}

ProgressLine::~ProgressLine() { Clear(); }

void ProgressLine::Show(const std::string& text) {
  if (!on_terminal_) return;
  std::cerr << kClearLine << FittingLine(text, Width()) << std::flush;
  shown_ = true;
}

void ProgressLine::Clear() {
  if (shown_) std::cerr << kClearLine << std::flush;
  shown_ = false;
}
