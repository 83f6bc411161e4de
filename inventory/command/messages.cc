#include "inventory/command/messages.h"

#include <iostream>

#include "inventory/base/program.h"
#include "inventory/base/readable.h"
#include "inventory/print/check_line.h"

void Complain(const std::string& text) {
  std::cerr << kProgramName << ": " << Sanitized(text, Layout::kOneLine) << std::endl;
}

void ShowRun(const RunRecord& run) {
  if (!run.left_behind.empty()) {
    std::string names;
    for (const std::string& name : run.left_behind) {
      names += (names.empty() ? "" : ", ") + name;
    }
    Complain("ended what " + run.CommandLine() + " had left behind: " + names);
  }
  if (run.error_output.empty()) return;
  Complain("standard error of " + run.CommandLine() + ":");
  std::cerr << Sanitized(run.error_output, Layout::kLines);
  if (run.error_output.back() != '\n') std::cerr << '\n';
}

int Refuse(const std::string& why, bool is_check, int exit_status) {
  // The line goes first: some engines read both streams as one, and show what comes first.
  if (is_check) std::cout << UnknownCheckLine(why) << std::flush;
  Complain(why);
  return is_check ? kCheckUnknown : exit_status;
}
