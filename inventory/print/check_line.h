#ifndef INVENTORY_PRINT_CHECK_LINE_H_
#define INVENTORY_PRINT_CHECK_LINE_H_

#include <string>

#include "inventory/print/check_verdict.h"
#include "inventory/print/view.h"

/// Writes the one line that a monitoring system takes: the verdict, what led to it, and performance
/// data behind a bar. Returns the verdict's status, a CheckStatus.
int PrintCheck(const ViewInput& input, const ViewOptions& options, Sink& output);

/// The line of a check that could not even begin.
std::string UnknownCheckLine(const std::string& why);

#endif  // INVENTORY_PRINT_CHECK_LINE_H_
