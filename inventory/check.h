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

/// The line of a check that could not be made.
std::string UnknownLine(const std::string& why);

#endif  // INVENTORY_CHECK_H_
