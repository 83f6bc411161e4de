#include "inventory/print/openmetrics_printer.h"

#include "inventory/print/collection_metrics.h"
#include "inventory/print/machine_metrics.h"
#include "inventory/print/openmetrics_writer.h"

int PrintOpenMetrics(const ViewInput& input, const ViewOptions& /*options*/, Sink& output) {
  OpenMetricsWriter metrics(output);
  WriteCollectionMetrics(input.report, input.machine, metrics);
  WriteMachineMetrics(input.machine, metrics);
  metrics.End();
  return input.report.exit_status;
}
