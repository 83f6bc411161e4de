#ifndef INVENTORY_PRINT_CHECK_LINE_H_
#define INVENTORY_PRINT_CHECK_LINE_H_

#include <string>

#include "inventory/base/report.h"
#include "inventory/base/sink.h"
#include "inventory/print/check_verdict.h"

/// Writes the one line that a monitoring system takes: the verdict, what led to it, and performance
/// data behind a bar. Returns the verdict's status.
CheckStatus PrintCheck(const Report& report, Sink& output);

/// The line of a check that could not even begin.
std::string UnknownCheckLine(const std::string& why);

#endif  // INVENTORY_PRINT_CHECK_LINE_H_
