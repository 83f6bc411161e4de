#include "inventory/command/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "inventory/base/program.h"
#include "inventory/base/readable.h"
#include "inventory/print/check_line.h"

namespace {

constexpr char kClearLine[] = "\r\x1b[K";

bool CanRewriteLines() {
  const char* term = std::getenv("TERM");
  return isatty(STDERR_FILENO) != 0 && term != nullptr && std::string_view(term) != "dumb";
}

}  // namespace

void Complain(const std::string& text) {
  std::cerr << kProgramName << ": " << Sanitized(text, Layout::kOneLine) << std::endl;
}

int Refuse(const std::string& why, bool is_check, int exit_status) {
  Complain(why);
  if (!is_check) return exit_status;
  std::cout << UnknownCheckLine(why) << std::flush;
  return kCheckUnknown;
}

ProgressLine::ProgressLine() : on_terminal_(CanRewriteLines()) {}

ProgressLine::~ProgressLine() { Clear(); }

void ProgressLine::Show(const std::string& text) {
  if (!on_terminal_) return;
  // One that runs over the end of its line could not be taken away.
  winsize size{};
  const bool is_known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  std::cerr << kClearLine << text.substr(0, is_known ? size.ws_col - 1 : text.npos) << std::flush;
  shown_ = true;
}

void ProgressLine::Clear() {
  if (shown_) std::cerr << kClearLine << std::flush;
  shown_ = false;
}
