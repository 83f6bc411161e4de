#include "inventory/print/controller_tree.h"

#include <string>
#include <utility>
#include <vector>

#include "inventory/machine/state_words.h"
#include "inventory/print/severity_tint.h"
#include "inventory/print/tree.h"

namespace {

Span StateCell(const std::string& state, Severity severity) {
  return {state.empty() ? "not reported" : state, TintOf(severity)};
}

TreeRow RowOf(const LogicalDrive& drive) {
  std::string errors = drive.bad_stripes.empty() ? "" : drive.bad_stripes + " bad stripes";
  if (IsBlocked(drive)) {
    errors.append(errors.empty() ? "" : ", ").append("access blocked: " + drive.access_blocked);
  }
  TreeRow row;
  row.name = "Logical drive " + drive.number;
  row.cells = {StateCell(drive.state, JudgeLogicalDrive(drive.state)),
               {drive.size},
               {drive.raid_level},
               {},
               {},
               {},
               {drive.name},
               {errors, Tint::kWarning}};
  return row;
}

TreeRow RowOf(const Device& device) {
  std::string errors;
  for (const auto& [name, count] : device.counters) {
    errors.append(errors.empty() ? "" : ", ").append(count).append(" ").append(name);
  }
  TreeRow row;
  row.name = device.place;
  row.cells = {StateCell(device.state, JudgeDevice(device.state)),
               {device.size},
               {device.type},
               {device.predicts_failure, PredictsFailure(device) ? Tint::kWarning : Tint::kPlain},
               {device.firmware},
               {device.serial_number},
               {device.model},
               {errors, Tint::kWarning}};
  return row;
}

/// A group without a letter that has one logical drive has this drive at its top.
TreeRow RowOf(const Controller& controller, const DriveGroup& group) {
  std::vector<TreeRow> drives;
  for (const std::size_t i : group.logical_drives) {
    drives.push_back(RowOf(controller.logical_drives[i]));
  }
  TreeRow top;
  if (!group.array.empty()) {
    top.name = "Array " + group.array;
    top.children = std::move(drives);
  } else if (drives.size() == 1) {
    top = std::move(drives.front());
  } else {
    const bool is_rest = drives.empty() && group.absent_places.empty();
    top.name = is_rest ? "In no array" : "Array";
    top.children = std::move(drives);
  }
  for (const std::size_t i : group.devices) {
    top.children.push_back(RowOf(controller.devices[i]));
  }
  for (const std::string& place : group.absent_places) {
    top.children.push_back({place, Tint::kPlain, {{"missing", Tint::kCritical}}, {}});
  }
  for (const std::string& place : group.shared_places) {
    top.children.push_back({place, Tint::kPlain, {{"see above", Tint::kFaint}}, {}});
  }
  return top;
}

/// What is known of a logical drive or a device that the controller does not list.
template <class Record>
TreeRow StrayRow(Record record) {
  record.state = "not listed";
  return RowOf(record);
}

}  // namespace

void PrintControllerTree(const Controller& controller, TextWriter& writer) {
  std::vector<TreeRow> rows;
  for (const DriveGroup& group : controller.groups) rows.push_back(RowOf(controller, group));
  for (const auto& [number, count] : controller.stray_bad_stripes) {
    LogicalDrive drive;
    drive.number = number;
    drive.bad_stripes = count;
    rows.push_back(StrayRow(std::move(drive)));
  }
  for (const Device& device : controller.stray_counters) rows.push_back(StrayRow(device));
  if (rows.empty()) return;
  writer.Line();
  WriteTree(writer, "  ",
            {"NAME", "STATE", "SIZE", "TYPE", "PFA", "FIRMWARE", "SERIAL", "MODEL/NAME", "ERRORS"},
            rows);
}
