#ifndef INVENTORY_COMMAND_MESSAGES_H_
#define INVENTORY_COMMAND_MESSAGES_H_

#include <stdexcept>
#include <string>

#include "inventory/base/run_record.h"

/// Why nothing can be answered, for a person, and how the command ends then.
struct Refusal : std::runtime_error {
  Refusal(const std::string& why, int how) : std::runtime_error(why), exit_status(how) {}

  int exit_status;
};

/// Writes one line to standard error, behind this program's name; Sanitized.
void Complain(const std::string& text);

/// Shows on standard error what a run wrote there, its beginning, and what it left behind; nothing
/// when it did neither.
void ShowRun(const RunRecord& run);

/// Says on standard error why nothing can be answered; a check has its line on standard output all
/// the same. Returns how to end: with `exit_status`, or as an unknown check.
int Refuse(const std::string& why, bool is_check, int exit_status);

#endif  // INVENTORY_COMMAND_MESSAGES_H_
