#ifndef INVENTORY_PRINT_CHECK_LINE_H_
#define INVENTORY_PRINT_CHECK_LINE_H_

#include <string>

#include "inventory/base/report.h"
#include "inventory/base/sink.h"

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
CheckStatus PrintCheck(const Report& report, Sink& output);

/// The line of a check that could not even begin.
std::string UnknownCheckLine(const std::string& why);

#endif  // INVENTORY_PRINT_CHECK_LINE_H_
