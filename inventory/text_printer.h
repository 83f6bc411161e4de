#ifndef INVENTORY_TEXT_PRINTER_H_
#define INVENTORY_TEXT_PRINTER_H_

#include <string>

#include "inventory/display.h"
#include "inventory/output_file.h"
#include "inventory/report.h"

/// Writes the report for a person: what needs attention, then each controller with its tree of
/// arrays, drives and devices and its logs, then the RAID manager's last events. `root` is where
/// the tools were looked for, to be named when they found nothing.
void PrintText(const Report& report, const std::string& root, const Display& display,
               OutputFile& output);

/// Writes the instances themselves for a person, property by property, values in readable form.
void PrintInstances(const Report& report, const Display& display, OutputFile& output);

#endif  // INVENTORY_TEXT_PRINTER_H_
