#include "inventory/print/machine_metrics.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "inventory/machine/state_words.h"
#include "inventory/print/machine_fields.h"

namespace {

/// A part, whose it is, and the labels by which it is known.
template <class Part>
struct Known {
  const Part& part;
  const Controller& controller;
  MetricLabels labels;
};
template <class Part>
using AllKnown = std::vector<Known<Part>>;

/// A figure of a part; absent where it is not reported.
template <class Part>
struct Figure {
  const char* name;
  const char* help;
  std::optional<double> (*value)(const Part&);
};

/// A text of a part that may change.
template <class Part>
struct InfoLabel {
  const char* name;
  Text (*text)(const Known<Part>&);
};

template <class Part, std::size_t kCount>
void WriteFigures(const Figure<Part> (&figures)[kCount], const AllKnown<Part>& parts,
                  OpenMetricsWriter& metrics) {
  for (const Figure<Part>& figure : figures) {
    metrics.Family(figure.name, figure.help);
    for (const Known<Part>& known : parts) {
      if (const auto value = figure.value(known.part)) metrics.Sample(known.labels, *value);
    }
  }
}

/// For each part a 1 with its texts; what is not reported is no label.
template <class Part, std::size_t kCount>
void WriteInfo(const char* name, const char* help, const InfoLabel<Part> (&rows)[kCount],
               const AllKnown<Part>& parts, OpenMetricsWriter& metrics) {
  metrics.Family(name, help);
  for (const Known<Part>& known : parts) {
    MetricLabels labels = known.labels;
    for (const InfoLabel<Part>& row : rows) labels = labels.WithReported(row.name, row.text(known));
    metrics.Sample(labels, 1);
  }
}

const char* StateName(const State& state) {
  if (!state.text) return "unknown";
  switch (state.judgement) {
    case Severity::kFine:
      return "ok";
    case Severity::kWarning:
      return "warning";
    case Severity::kCritical:
      break;
  }
  return "critical";
}

/// One series for each state there is: 1 for the one that it is in.
template <class Part>
void WriteStates(const char* name, const char* help, const State& (*state_of)(const Part&),
                 const AllKnown<Part>& parts, OpenMetricsWriter& metrics) {
  metrics.Family(name, help);
  for (const Known<Part>& known : parts) {
    const std::string_view is = StateName(state_of(known.part));
    for (const std::string_view state : {"ok", "warning", "critical", "unknown"}) {
      metrics.Sample(known.labels.With("state", state), state == is ? 1 : 0);
    }
  }
}

std::optional<double> ValueOf(const std::optional<Number>& number) {
  if (!number || !number->value) return std::nullopt;
  return static_cast<double>(*number->value);
}

std::optional<double> ValueOf(const Flag& flag) {
  const std::optional<bool> value = flag.Value();
  if (!value) return std::nullopt;
  return *value ? 1 : 0;
}

std::optional<double> ValueOf(const std::optional<Size>& size) {
  if (!size || !size->bytes) return std::nullopt;
  return static_cast<double>(*size->bytes);
}

/// Of the rows that count the same thing, all that are numbers.
template <class Rows, class Count>
std::optional<double> SumOf(const Rows& rows, const Count& count) {
  std::optional<double> sum;
  for (const auto& row : rows) {
    if (const auto value = ValueOf(count(row))) sum = sum.value_or(0) + *value;
  }
  return sum;
}

const char* const kNotKnown = "?";

// Controllers.

constexpr InfoLabel<Controller> kControllerInfo[] = {
    {"tool", [](const auto& of) { return of.part.tool ? Text(of.part.tool->tool) : Text(); }},
    {"tool_number",
     [](const auto& of) {
       return of.part.tool ? Text(std::to_string(of.part.tool->number)) : Text();
     }},
    {"name", [](const auto& of) { return of.part.name; }},
    {"model", [](const auto& of) { return of.part.type; }},
    {"serial", [](const auto& of) { return of.part.serial_number; }},
    {"slot", [](const auto& of) { return of.part.slot; }},
    {"firmware", [](const auto& of) { return of.part.firmware.Reported(); }},
    {"bios", [](const auto& of) { return of.part.bios.Reported(); }},
    {"boot_block", [](const auto& of) { return of.part.boot_block.Reported(); }},
    {"driver", [](const auto& of) { return of.part.driver; }},
    {"state", [](const auto& of) { return of.part.state.text; }},
};

constexpr Figure<Controller> kControllerFigures[] = {
    {"kraid_controller_rebuilds", "Rebuilds of the controller that go on.",
     [](const Controller& controller) -> std::optional<double> {
       return static_cast<double>(controller.health.rebuilds);
     }},
    {"kraid_controller_missing_devices", "Places in its arrays where no device is.",
     [](const Controller& controller) -> std::optional<double> {
       return static_cast<double>(controller.missing_places.size());
     }},
};

// The time that it has left is not among them: it would be another series each hour.
constexpr InfoLabel<Controller> kBatteryInfo[] = {
    {"state", [](const auto& of) { return of.part.battery.state.text; }},
};

constexpr Figure<Controller> kBatteryFigures[] = {
    {"kraid_controller_battery_charge_ratio", "How full the controller's battery is, 0 to 1.",
     [](const Controller& controller) {
       auto percent = ValueOf(ReadPercent(controller.battery.capacity));
       if (percent) *percent /= 100;
       return percent;
     }},
    {"kraid_controller_battery_over_temperature",
     "1 where the controller's battery is too warm, else 0.",
     [](const Controller& controller) { return ValueOf(controller.battery.over_temperature); }},
};

constexpr InfoLabel<Controller> kOperationInfo[] = {
    {"operation", [](const auto& of) { return of.part.operation.name; }},
    {"status", [](const auto& of) { return of.part.operation.status; }},
    {"logical_drive",
     [](const auto& of) {
       const auto& drive = of.part.operation.logical_drive;
       return drive ? Text(drive->text) : Text();
     }},
};

void WriteRebuildProgress(const AllKnown<Controller>& controllers, OpenMetricsWriter& metrics) {
  metrics.Family("kraid_controller_rebuild_progress_ratio",
                 "How much of a logical drive is rebuilt, 0 to 1.");
  for (const auto& [controller, itself, labels] : controllers) {
    const Operation& operation = controller.operation;
    const std::optional<double> progress = operation.Progress();
    if (!IsRebuilding(operation) || !progress) continue;
    const auto& drive = operation.logical_drive;
    metrics.Sample(labels.With("logical_drive", drive ? drive->text : kNotKnown), *progress);
  }
}

void WriteEventLogs(const AllKnown<Controller>& controllers, OpenMetricsWriter& metrics) {
  metrics.Family("kraid_controller_event_log_entries",
                 "Entries in the controller's logs of defunct drives, soft and hard events.");
  for (const auto& [controller, itself, labels] : controllers) {
    const auto write = [&, &labels = labels](const char* name, const auto& log) {
      if (log.IsReported()) {
        metrics.Sample(labels.With("log", name), static_cast<double>(log.count));
      }
    };
    write("defunct", controller.defunct_log);
    write("soft", controller.soft_log);
    write("hard", controller.hard_log);
  }
}

void WriteControllers(const AllKnown<Controller>& controllers, OpenMetricsWriter& metrics) {
  WriteInfo("kraid_controller_info", "A controller, and its own word for its state.",
            kControllerInfo, controllers, metrics);
  WriteStates<Controller>(
      "kraid_controller_state", "1 for the state that the controller is in.",
      [](const Controller& controller) -> const State& { return controller.state; }, controllers,
      metrics);
  WriteFigures(kControllerFigures, controllers, metrics);
  WriteRebuildProgress(controllers, metrics);

  AllKnown<Controller> with_battery;
  AllKnown<Controller> with_operation;
  for (const auto& known : controllers) {
    if (known.part.battery.IsReported()) with_battery.push_back(known);
    if (known.part.operation.IsReported()) with_operation.push_back(known);
  }
  WriteInfo("kraid_controller_operation_info",
            "What a controller does in the background, or did last.", kOperationInfo,
            with_operation, metrics);
  WriteInfo("kraid_controller_battery_info", "A controller's battery, in its own words.",
            kBatteryInfo, with_battery, metrics);
  WriteStates<Controller>(
      "kraid_controller_battery_state", "1 for the state that the controller's battery is in.",
      [](const Controller& controller) -> const State& { return controller.battery.state; },
      with_battery, metrics);
  WriteFigures(kBatteryFigures, with_battery, metrics);
  WriteEventLogs(controllers, metrics);
}

// Logical drives.

constexpr InfoLabel<LogicalDrive> kDriveInfo[] = {
    {"name", [](const auto& of) { return of.part.name; }},
    {"raid_level", [](const auto& of) { return of.part.raid_level; }},
    {"array", [](const auto& of) { return ArrayName(of.controller, of.part); }},
    {"state", [](const auto& of) { return of.part.state.text; }},
    {"stripe_unit", [](const auto& of) { return of.part.stripe_unit; }},
    {"write_cache", [](const auto& of) { return of.part.write_cache; }},
};

constexpr Figure<LogicalDrive> kDriveFigures[] = {
    {"kraid_logical_drive_size_bytes", "Size of the logical drive.",
     [](const LogicalDrive& drive) { return ValueOf(drive.size); }},
    {"kraid_logical_drive_access_blocked",
     "1 where access to the logical drive is blocked, else 0.",
     [](const LogicalDrive& drive) { return ValueOf(drive.access_blocked); }},
};

std::optional<double> BadStripes(const std::vector<Number>& counts) {
  return SumOf(counts, [](const Number& count) { return std::optional<Number>(count); });
}

void WriteLogicalDrives(const AllKnown<LogicalDrive>& drives,
                        const AllKnown<UnlistedDrive>& unlisted, OpenMetricsWriter& metrics) {
  WriteInfo("kraid_logical_drive_info", "A logical drive, and its own word for its state.",
            kDriveInfo, drives, metrics);
  WriteStates<LogicalDrive>(
      "kraid_logical_drive_state", "1 for the state that the logical drive is in.",
      [](const LogicalDrive& drive) -> const State& { return drive.state; }, drives, metrics);
  WriteFigures(kDriveFigures, drives, metrics);
  metrics.Family("kraid_logical_drive_bad_stripes", "Stripes that cannot be read any more.");
  const auto write = [&metrics](const auto& all) {
    for (const auto& [drive, controller, labels] : all) {
      if (const auto count = BadStripes(drive.bad_stripes)) metrics.Sample(labels, *count);
    }
  };
  write(drives);
  write(unlisted);
}

// Devices.

constexpr InfoLabel<Device> kDeviceInfo[] = {
    {"kind", [](const auto& of) { return Text(of.part.IsDrive() ? "drive" : "other"); }},
    {"type", [](const auto& of) { return of.part.type; }},
    {"model", [](const auto& of) { return of.part.model; }},
    {"firmware", [](const auto& of) { return of.part.firmware; }},
    {"serial", [](const auto& of) { return of.part.serial_number; }},
    {"world_wide_name", [](const auto& of) { return of.part.world_wide_name; }},
    {"fru", [](const auto& of) { return of.part.fru; }},
    {"enclosure", [](const auto& of) { return of.part.enclosure; }},
    {"array",
     [](const auto& of) {
       std::string all;
       for (const std::string& name : ArrayNames(of.controller, of.part)) {
         all.append(all.empty() ? "" : ", ").append(name);
       }
       return MakeText(all);
     }},
    {"state", [](const auto& of) { return of.part.state.text; }},
};

constexpr Figure<Device> kDeviceFigures[] = {
    {"kraid_device_size_bytes", "Size of the device.",
     [](const Device& device) { return ValueOf(device.size); }},
    {"kraid_device_hot_spare", "1 where the drive waits to take the place of another, else 0.",
     [](const Device& device) -> std::optional<double> {
       if (!device.IsDrive()) return std::nullopt;
       return IsHotSpare(device.state) ? 1 : 0;
     }},
    {"kraid_device_predicts_failure", "1 where the device itself says that it will fail, else 0.",
     [](const Device& device) { return ValueOf(device.predicts_failure); }},
};

constexpr struct {
  const char* name;
  const char* help;
  std::optional<Number> ErrorCounters::*count;
} kDeviceCounters[] = {
    {"kraid_device_hard_errors_total", "Hard errors that the controller counted of the device.",
     &ErrorCounters::hard},
    {"kraid_device_soft_errors_total", "Soft errors that the controller counted of the device.",
     &ErrorCounters::soft},
    {"kraid_device_parity_errors_total", "Parity errors that the controller counted of the device.",
     &ErrorCounters::parity},
    {"kraid_device_misc_errors_total", "Other errors that the controller counted of the device.",
     &ErrorCounters::misc},
    {"kraid_device_predicted_failures_total",
     "Predictions of a failure that the controller counted of the device.",
     &ErrorCounters::predicted_failures},
};

void WriteDevices(const AllKnown<Device>& devices, const AllKnown<UnlistedDevice>& unlisted,
                  OpenMetricsWriter& metrics) {
  WriteInfo("kraid_device_info", "A device, and its own word for its state.", kDeviceInfo, devices,
            metrics);
  WriteStates<Device>(
      "kraid_device_state", "1 for the state that the device is in.",
      [](const Device& device) -> const State& { return device.state; }, devices, metrics);
  WriteFigures(kDeviceFigures, devices, metrics);
  for (const auto& counter : kDeviceCounters) {
    metrics.Family(counter.name, counter.help);
    for (const auto& [device, controller, labels] : devices) {
      const auto count = SumOf(device.counters,
                               [&counter](const ErrorCounters& row) { return row.*counter.count; });
      if (count) metrics.Sample(labels, *count);
    }
    for (const auto& [device, controller, labels] : unlisted) {
      if (const auto count = ValueOf(device.counters.*counter.count)) {
        metrics.Sample(labels, *count);
      }
    }
  }
}

/// All parts of a machine by their labels, which nothing else has.
struct KnownParts {
  explicit KnownParts(const Machine& machine) {
    DistinctNames numbers;
    for (const Controller& controller : machine.controllers) {
      const std::string number = numbers.Take(TextOf(controller.number));
      controllers.push_back({controller, controller, MetricLabels().With("controller", number)});
      AddParts(controller);
    }
  }

  AllKnown<Controller> controllers;
  AllKnown<LogicalDrive> drives;
  AllKnown<UnlistedDrive> unlisted_drives;
  AllKnown<Device> devices;
  AllKnown<UnlistedDevice> unlisted_devices;

 private:
  static std::string TextOf(const std::optional<Number>& number) {
    return number ? number->text : kNotKnown;
  }

  void AddParts(const Controller& controller) {
    const MetricLabels labels = controllers.back().labels;
    DistinctNames numbers;
    const auto add_drives = [&](const auto& parts, auto& known) {
      for (const auto& drive : parts) {
        const std::string number = numbers.Take(TextOf(drive.number));
        known.push_back({drive, controller, labels.With("logical_drive", number)});
      }
    };
    add_drives(controller.logical_drives, drives);
    add_drives(controller.unlisted_drives, unlisted_drives);
    DistinctNames places;
    const auto add_devices = [&](const auto& parts, auto& known) {
      for (const auto& device : parts) {
        const std::string place = places.Take(device.place.GetText());
        known.push_back({device, controller, labels.With("device", place)});
      }
    };
    add_devices(controller.devices, devices);
    add_devices(controller.unlisted_devices, unlisted_devices);
  }
};

}  // namespace

void WriteMachineMetrics(const Machine& machine, OpenMetricsWriter& metrics) {
  const KnownParts parts(machine);
  WriteControllers(parts.controllers, metrics);
  WriteLogicalDrives(parts.drives, parts.unlisted_drives, metrics);
  WriteDevices(parts.devices, parts.unlisted_devices, metrics);
}
