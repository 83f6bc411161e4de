#ifndef INVENTORY_PRINT_MACHINE_FIELDS_H_
#define INVENTORY_PRINT_MACHINE_FIELDS_H_

#include <optional>
#include <string>
#include <vector>

#include "inventory/machine/machine.h"

// The machine's form in documents: of each record its fields in their order, declared once for
// writing (FieldWriter) and for reading back (FieldReader). A form takes
//
//   form(name, field)             a field; its type says how it looks
//   form.Group(name, fields)      an object that is no record of its own
//   form.List(name, records, ...) records, with what else their fields need
//   form.Linked(name, indices, parts)  parts of the controller by the names that they have there
//   form.Derived(name, make)      what `make` returns, which follows from other fields: not read
//
// and `Form::Of<Record>` is constant where it is written.

// What follows from other fields.
Text ArrayName(const Controller& controller, const LogicalDrive& drive);
std::vector<Place> DevicePlaces(const Controller& controller, const LogicalDrive& drive);
std::vector<std::string> ArrayNames(const Controller& controller, const Device& device);
std::vector<std::optional<Number>> DriveNumbers(const Controller& controller, const Device& device);
/// An array keeps its name where it is called by a number that is none.
void TakeName(const std::string& name, DriveArray& array);
inline void TakeName(const std::string&, const DriveArray&) {}
/// Of "91 percent".
std::optional<Number> ReadPercent(const Text& text);
/// "2004-11-27T02:14:08" of "2004-11-27 02:14:08"; absent when no calendar has it.
Text LocalTime(const std::string& text);

template <class Form>
void Fields(Form& form, typename Form::template Of<State>& state) {
  form("text", state.text);
  form("judgement", state.judgement);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<ErrorCounters>& counters) {
  form("hard", counters.hard);
  form("soft", counters.soft);
  form("parity", counters.parity);
  form("predicted_failures", counters.predicted_failures);
  form("misc", counters.misc);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<Battery>& battery) {
  form("state", battery.state);
  form("over_temperature", battery.over_temperature);
  form.Derived("capacity_percent", [&] { return ReadPercent(battery.capacity); });
  form("capacity_text", battery.capacity);
  form("time_remaining", battery.time_remaining);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<Operation>& operation) {
  form("name", operation.name);
  form("status", operation.status);
  form("judgement", operation.judgement);
  form("logical_drive", operation.logical_drive);
  form("is_active", operation.is_active);
  form("stripes", operation.stripes);
  form("stripes_left", operation.stripes_left);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<ToolNumber>& tool) {
  form("tool", tool.tool);
  form("number", tool.number);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<HealthCounts>& counts) {
  form("failed_devices", counts.failed_devices);
  form("degraded_drives", counts.degraded_drives);
  form("predicted_failures", counts.predicted_failures);
  form("drives_with_bad_stripes", counts.drives_with_bad_stripes);
  form("rebuilds", counts.rebuilds);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<LogicalDrive>& drive,
            typename Form::template Of<Controller>& controller) {
  form("number", drive.number);
  form("name", drive.name);
  form("state", drive.state);
  form("verdict", drive.verdict);
  form("size", drive.size);
  form("raid_level", drive.raid_level);
  form("bad_stripes", drive.bad_stripes);
  form("access_blocked", drive.access_blocked);
  form("write_cache", drive.write_cache);
  form("stripe_unit", drive.stripe_unit);
  form.Derived("array", [&] { return ArrayName(controller, drive); });
  form.Derived("devices", [&] { return DevicePlaces(controller, drive); });
}

template <class Form>
void Fields(Form& form, typename Form::template Of<Device>& device,
            typename Form::template Of<Controller>& controller) {
  form("place", device.place);
  form("type", device.type);
  form.Derived("is_drive", [&] { return device.IsDrive(); });
  form("state", device.state);
  form("verdict", device.verdict);
  form("size", device.size);
  form("predicts_failure", device.predicts_failure);
  form("firmware", device.firmware);
  form("serial_number", device.serial_number);
  form("world_wide_name", device.world_wide_name);
  form("model", device.model);
  form("fru", device.fru);
  form("enclosure", device.enclosure);
  form("transfer_speed", device.transfer_speed);
  form("write_cache", device.write_cache);
  form("counters", device.counters);
  form.Derived("arrays", [&] { return ArrayNames(controller, device); });
  form.Derived("logical_drives", [&] { return DriveNumbers(controller, device); });
}

template <class Form>
void Fields(Form& form, typename Form::template Of<DriveArray>& array,
            typename Form::template Of<Controller>& controller) {
  std::string name = array.Name();
  form("name", name);
  form("letter", array.letter);
  form("logical_drive", array.logical_drive);
  TakeName(name, array);
  form.Linked("logical_drives", array.logical_drives, controller.logical_drives);
  form.Linked("devices", array.devices, controller.devices);
  form("missing", array.absent_places);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<UnlistedDrive>& drive) {
  form("number", drive.number);
  form("bad_stripes", drive.bad_stripes);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<UnlistedDevice>& device) {
  form("place", device.place);
  form("counters", device.counters);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<DefunctEvent>& event) {
  form.Derived("local_time", [&] { return LocalTime(event.local_time); });
  form("time_text", event.local_time);
  form("place", event.place);
  form("reason", event.reason);
  form("description", event.description);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<DefunctLog>& log) {
  form("count", log.count);
  form.List("last", log.last);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<EventWords>& log) {
  form("count", log.count);
  form("last", log.last);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<ManagerEvent>& event) {
  form("time", event.time);
  form("severity", event.severity);
  form("machine", event.machine);
  form("message", event.message);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<ManagerLog>& log) {
  form("count", log.count);
  form.List("last", log.last);
}

template <class Form>
void Fields(Form& form, typename Form::template Of<Controller>& controller) {
  form("number", controller.number);
  form("shares_number", controller.shares_number);
  form("tool", controller.tool);
  form("name", controller.name);
  form("type", controller.type);
  form("state", controller.state);
  form("verdict", controller.verdict);
  form("counts", controller.health);
  form.Group("versions", [&](auto& versions) {
    versions("firmware", controller.firmware);
    versions("bios", controller.bios);
    versions("boot_block", controller.boot_block);
    versions("driver", controller.driver);
  });
  form("serial_number", controller.serial_number);
  form("slot", controller.slot);
  form("fru", controller.fru);
  form("part_number", controller.part_number);
  form("battery", controller.battery);
  form("operation", controller.operation);
  form.Group("counters", [&](auto& counters) {
    counters("defunct_drives", controller.defunct_drives);
    counters("logical_drives", controller.drive_counts);
  });
  form.List("logical_drives", controller.logical_drives, controller);
  form.List("devices", controller.devices, controller);
  form.List("arrays", controller.arrays, controller);
  form.Group("unlisted", [&](auto& unlisted) {
    unlisted.List("logical_drives", controller.unlisted_drives);
    unlisted.List("devices", controller.unlisted_devices);
  });
  form.Group("logs", [&](auto& logs) {
    logs("defunct_drives", controller.defunct_log);
    logs("soft", controller.soft_log);
    logs("hard", controller.hard_log);
  });
}

template <class Form>
void Fields(Form& form, typename Form::template Of<Machine>& machine) {
  form.Derived("verdict", [&] {
    return machine.findings.empty() ? Severity::kFine : machine.findings.front().severity;
  });
  form.Group("counts", [&](auto& counts) {
    counts.Derived("controllers", [&] { return machine.controllers.size(); });
    counts.Derived("logical_drives", [&] { return machine.CountLogicalDrives(); });
    counts.Derived("devices", [&] { return machine.CountDevices(); });
    HealthCounts all = machine.CountHealth();
    Fields(counts, all);
  });
  form.List("controllers", machine.controllers);
  form.List("unpublished", machine.unpublished);
  form("manager_log", machine.manager_log);
}

#endif  // INVENTORY_PRINT_MACHINE_FIELDS_H_
