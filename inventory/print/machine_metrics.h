#ifndef INVENTORY_PRINT_MACHINE_METRICS_H_
#define INVENTORY_PRINT_MACHINE_METRICS_H_

#include "inventory/machine/machine.h"
#include "inventory/print/openmetrics_writer.h"

/// Of each controller, logical drive and device its state and figures by a few labels that stay as
/// they are, and the texts that change in a series of their own, "..._info".
void WriteMachineMetrics(const Machine& machine, OpenMetricsWriter& metrics);

#endif  // INVENTORY_PRINT_MACHINE_METRICS_H_
