#ifndef INVENTORY_PRINT_TEXT_REPORT_H_
#define INVENTORY_PRINT_TEXT_REPORT_H_

#include "inventory/print/view.h"

/// Writes the report for a person: what needs attention, what has changed, then each controller
/// with its tree of arrays, drives and devices and its logs, then the RAID manager's last events.
/// On a terminal that is too short for it, a last line points back to what needs attention. Brief,
/// it is what needs attention only; verbose, it has the lines of the tools that no parser took,
/// too.
int PrintText(const ViewInput& input, const ViewOptions& options, Sink& output);

#endif  // INVENTORY_PRINT_TEXT_REPORT_H_
