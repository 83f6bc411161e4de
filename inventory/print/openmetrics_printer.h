#ifndef INVENTORY_PRINT_OPENMETRICS_PRINTER_H_
#define INVENTORY_PRINT_OPENMETRICS_PRINTER_H_

#include "inventory/print/view.h"

/// Writes the machine and its collection as metrics, which docs/fleet.md explains. What a tool did
/// not report has no sample; what the collection says of itself is always there.
int PrintOpenMetrics(const ViewInput& input, const ViewOptions& options, Sink& output);

#endif  // INVENTORY_PRINT_OPENMETRICS_PRINTER_H_
