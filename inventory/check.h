#ifndef INVENTORY_CHECK_H_
#define INVENTORY_CHECK_H_

#include <string>

#include "inventory/output_file.h"
#include "inventory/report.h"

/// How a check ends, as monitoring systems read the exit status of their plug-ins.
enum CheckStatus : int {
  kCheckOk = 0,
  kCheckWarning = 1,
  kCheckCritical = 2,
  kCheckUnknown = 3,
};

/// Writes the one line that a monitoring system takes: the verdict, what led to it, and performance
/// data behind a bar. Unknown when there is no controller or the collection threw, whatever was
/// found, and when a tool that is there failed in all its runs, unless something critical was
/// found.
CheckStatus PrintCheck(const Report& report, OutputFile& output);

/// Says on standard error why nothing can be answered; a check has its line on standard output all
/// the same. Returns how to end: with `exit_status`, or as an unknown check.
int Refuse(const std::string& why, bool is_check, int exit_status);

#endif  // INVENTORY_CHECK_H_
