#ifndef INVENTORY_PRINT_JSON_PRINTER_H_
#define INVENTORY_PRINT_JSON_PRINTER_H_

#include "inventory/base/report.h"
#include "inventory/base/sink.h"

/// Which runs of the tools a document lists.
enum class RunsShown { kNone, kFailed, kAll };

/// Writes the report as one JSON document. Bytes that are not UTF-8 become U+FFFD. The
/// document is never in memory as a whole.
void PrintJson(const Report& report, RunsShown runs, Sink& output);

#endif  // INVENTORY_PRINT_JSON_PRINTER_H_
