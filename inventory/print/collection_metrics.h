#ifndef INVENTORY_PRINT_COLLECTION_METRICS_H_
#define INVENTORY_PRINT_COLLECTION_METRICS_H_

#include <string>

#include "hmz/cim_date_time.h"
#include "inventory/base/report.h"
#include "inventory/machine/machine.h"
#include "inventory/print/openmetrics_writer.h"

/// What a collection says of itself, and how much it found. Its words (kinds, outcomes, reasons)
/// are all there, so that a 0 is told from a machine that says nothing.
void WriteCollectionMetrics(const Report& report, const Machine& machine,
                            OpenMetricsWriter& metrics);

/// What one says that came to nothing: when that was, and why.
void WriteFailedCollection(const std::string& why, const NKVXHMZ20::TCIMDateTime& time,
                           OpenMetricsWriter& metrics);

#endif  // INVENTORY_PRINT_COLLECTION_METRICS_H_
