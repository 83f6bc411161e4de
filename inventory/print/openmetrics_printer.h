#ifndef INVENTORY_PRINT_OPENMETRICS_PRINTER_H_
#define INVENTORY_PRINT_OPENMETRICS_PRINTER_H_

#include <string>

#include "hmz/cim_date_time.h"
#include "inventory/print/view.h"

/// Writes the machine and its collection as metrics, which docs/fleet.md explains. What a tool did
/// not report has no sample; what the collection says of itself is always there.
int PrintOpenMetrics(const ViewInput& input, const ViewOptions& options, Sink& output);

/// The metrics of a collection that failed as a whole, at that time: that it did, and why. Nothing
/// in them could be read as a machine that is fine. At most 4096 bytes.
std::string MetricsOfNothing(const std::string& why, const NKVXHMZ20::TCIMDateTime& time);

#endif  // INVENTORY_PRINT_OPENMETRICS_PRINTER_H_
