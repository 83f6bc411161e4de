#ifndef INVENTORY_PRINT_MOF_PRINTER_H_
#define INVENTORY_PRINT_MOF_PRINTER_H_

#include <string>

#include "inventory/base/report.h"
#include "inventory/base/sink.h"

/// Writes the instances as a MOF document (DSP0004) that compiles behind schema/kvxsg.mof; see
/// docs/mof.md.
void PrintMof(const Report& report, Sink& output);

/// A text as a MOF string literal, quotes included.
std::string MofString(const std::string& text);

/// A date-time of 25 characters whose impossible fields, and all behind the first of them, are
/// asterisks; the offset stays. Of a text of another length nothing is possible.
std::string MofDateTime(const std::string& text);

#endif  // INVENTORY_PRINT_MOF_PRINTER_H_
