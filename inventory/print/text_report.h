#ifndef INVENTORY_PRINT_TEXT_REPORT_H_
#define INVENTORY_PRINT_TEXT_REPORT_H_

#include <string>

#include "inventory/base/report.h"
#include "inventory/base/sink.h"
#include "inventory/print/display.h"

/// Writes the report for a person: what needs attention, then each controller with its tree of
/// arrays, drives and devices and its logs, then the RAID manager's last events. `root` is where
/// the tools were looked for, to be named when they found nothing. `is_verbose` adds the lines of
/// the tools that no parser took.
void PrintText(const Report& report, const std::string& root, bool is_verbose,
               const Display& display, Sink& output);

#endif  // INVENTORY_PRINT_TEXT_REPORT_H_
