#ifndef INVENTORY_MACHINE_RAW_OUTPUT_H_
#define INVENTORY_MACHINE_RAW_OUTPUT_H_

#include <string>
#include <vector>

#include "inventory/base/report.h"
#include "inventory/machine/machine.h"
#include "standin/repository.h"

/// What a tool's raw output about a controller says beyond the instances.
struct RawOutput {
  std::string tool;
  int number = 0;  ///< The tool's own for the controller.
  bool has_controller = false;
  bool has_devices = false;
  std::string battery_status;
};

/// Of a raw record; without a controller unless it is one of the configuration.
RawOutput ReadRawOutput(const standin::StoredInstance& raw_record);

/// Tells each controller its tool and the state of its battery, and the machine which controllers
/// were not published. The outputs stand in the order in which the tools ran.
///
/// Which controller is whose comes from the plug-in's requests, as it parses another one than it
/// keeps: the plug-in numbers each tool's controllers on from those that it found before. Without
/// requests (a report of instances alone) each output is taken for the one that was parsed.
void AddRawOutputs(const std::vector<RawOutput>& outputs, const Report& report, Machine& machine);

#endif  // INVENTORY_MACHINE_RAW_OUTPUT_H_
