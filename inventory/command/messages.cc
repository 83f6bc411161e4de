#include "inventory/command/messages.h"

#include <iostream>

#include "inventory/base/program.h"
#include "inventory/base/readable.h"
#include "inventory/print/check_line.h"

void Complain(const std::string& text) {
  std::cerr << kProgramName << ": " << Sanitized(text, Layout::kOneLine) << std::endl;
}

int Refuse(const std::string& why, bool is_check, int exit_status) {
  Complain(why);
  if (!is_check) return exit_status;
  std::cout << UnknownCheckLine(why) << std::flush;
  return kCheckUnknown;
}
