#ifndef INVENTORY_JSON_PRINTER_H_
#define INVENTORY_JSON_PRINTER_H_

#include "inventory/output_file.h"
#include "inventory/report.h"

/// Writes the report as one JSON document. Bytes that are not UTF-8 become U+FFFD. The
/// document is never in memory as a whole.
void PrintJson(const Report& report, OutputFile& output);

#endif  // INVENTORY_JSON_PRINTER_H_
