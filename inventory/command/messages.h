#ifndef INVENTORY_COMMAND_MESSAGES_H_
#define INVENTORY_COMMAND_MESSAGES_H_

#include <string>

#include "inventory/base/run_record.h"

/// Writes one line to standard error, behind this program's name; Sanitized.
void Complain(const std::string& text);

/// Shows on standard error what a run wrote there, its beginning, and what it left behind; nothing
/// when it did neither.
void ShowRun(const RunRecord& run);

/// Says on standard error why nothing can be answered; a check has its line on standard output all
/// the same. Returns how to end: with `exit_status`, or as an unknown check.
int Refuse(const std::string& why, bool is_check, int exit_status);

#endif  // INVENTORY_COMMAND_MESSAGES_H_
