#ifndef INVENTORY_PRINT_JSON_PRINTER_H_
#define INVENTORY_PRINT_JSON_PRINTER_H_

#include "inventory/print/view.h"

/// Writes the report as one JSON document. Bytes that are not UTF-8 become U+FFFD. The
/// document is never in memory as a whole.
int PrintJson(const ViewInput& input, const ViewOptions& options, Sink& output);

#endif  // INVENTORY_PRINT_JSON_PRINTER_H_
