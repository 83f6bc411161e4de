#include "inventory/print/openmetrics_printer.h"

#include <utility>

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

std::string MetricsOfNothing(const std::string& why, const NKVXHMZ20::TCIMDateTime& time) {
  TextSink sink;
  OpenMetricsWriter metrics(sink);
  WriteFailedCollection(why, time, metrics);
  metrics.End();
  return std::move(sink.text);
}
