#include "inventory/print/controller_tree.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "inventory/machine/state_words.h"
#include "inventory/machine/wording.h"
#include "inventory/print/severity_tint.h"
#include "inventory/print/tree.h"

namespace {

Span StateCell(const State& state) {
  return {state.text.value_or("not reported"), TintOf(state.judgement)};
}

std::string TextOf(const std::optional<Number>& number) { return number ? number->text : ""; }

/// What is wrong with a drive or device, one behind the other; only what is judged has a colour.
class ErrorCell {
 public:
  void Add(const std::string& text, bool is_judged) {
    if (text.empty()) return;
    if (!span_.text.empty()) span_.text += ", ";
    const std::size_t begin = span_.text.size();
    span_.text += text;
    if (!is_judged) return;
    if (span_.tint == Tint::kPlain) span_.tint_begin = begin;
    span_.tint = Tint::kWarning;
    span_.tint_end = span_.text.size();
  }

  void Add(const ErrorCounters& counters) {
    for (const auto& [name, member] : kErrorKinds) {
      const std::optional<Number>& count = counters.*member;
      if (!count || IsZero(*count)) continue;
      Add(count->text + " " + name, member == &ErrorCounters::predicted_failures);
    }
  }

  const Span& GetSpan() const { return span_; }

 private:
  Span span_;
};

TreeRow RowOf(const LogicalDrive& drive) {
  ErrorCell errors;
  errors.Add(DescribeBadStripes(drive.bad_stripes), true);
  if (JudgeFlag(drive.access_blocked) != Severity::kFine) {
    errors.Add("access blocked: " + drive.access_blocked.text.value_or(""), true);
  }
  TreeRow row;
  row.name = "Logical drive " + TextOf(drive.number);
  row.cells = {StateCell(drive.state),
               {drive.size ? DescribeSize(*drive.size) : ""},
               {DescribeRaidLevel(drive.raid_level)},
               {},
               {},
               {},
               {drive.name.value_or("")},
               errors.GetSpan()};
  return row;
}

TreeRow RowOf(const Device& device) {
  ErrorCell errors;
  for (const ErrorCounters& counters : device.counters) errors.Add(counters);
  const bool is_flagged = JudgeFlag(device.predicts_failure) != Severity::kFine;
  TreeRow row;
  row.name = device.place.GetText();
  row.cells = {
      StateCell(device.state),
      {DescribeRoom(device.size)},
      {device.type.value_or("")},
      {device.predicts_failure.text.value_or(""), is_flagged ? Tint::kWarning : Tint::kPlain},
      {device.firmware.value_or("")},
      {device.serial_number.value_or("")},
      {device.model.value_or("")},
      errors.GetSpan()};
  return row;
}

void AddDevices(const Controller& controller, const std::vector<std::size_t>& devices,
                TreeRow& row) {
  for (const std::size_t i : devices) row.children.push_back(RowOf(controller.devices[i]));
}

/// An array without a letter that has one logical drive has this drive at its top.
TreeRow RowOf(const Controller& controller, const DriveArray& array) {
  std::vector<TreeRow> drives;
  for (const std::size_t i : array.logical_drives) {
    drives.push_back(RowOf(controller.logical_drives[i]));
  }
  TreeRow top;
  if (array.letter) {
    top.name = "Array " + *array.letter;
    top.children = std::move(drives);
  } else if (drives.size() == 1) {
    top = std::move(drives.front());
  } else {
    const bool is_rest = drives.empty() && array.absent_places.empty();
    top.name = is_rest ? "In no array" : "Array";
    top.children = std::move(drives);
  }
  AddDevices(controller, array.shown_devices, top);
  for (const Place& place : array.absent_places) {
    top.children.push_back({place.GetText(), Tint::kPlain, {{"missing", Tint::kCritical}}, {}});
  }
  for (const Place& place : array.shared_places) {
    top.children.push_back({place.GetText(), Tint::kPlain, {{"see above", Tint::kFaint}}, {}});
  }
  return top;
}

/// What is known of a logical drive or a device that the controller does not list.
template <class Record>
TreeRow UnlistedRow(Record record) {
  record.state = {"not listed", Severity::kWarning};
  return RowOf(record);
}

TreeRow RowOf(const UnlistedDrive& unlisted) {
  LogicalDrive drive;
  drive.number = unlisted.number;
  drive.bad_stripes = unlisted.bad_stripes;
  return UnlistedRow(std::move(drive));
}

TreeRow RowOf(const UnlistedDevice& unlisted) {
  Device device;
  device.place = unlisted.place;
  device.counters = {unlisted.counters};
  return UnlistedRow(std::move(device));
}

}  // namespace

void PrintControllerTree(const Controller& controller, TextWriter& writer) {
  std::vector<TreeRow> rows;
  for (const DriveArray& array : controller.arrays) rows.push_back(RowOf(controller, array));
  if (!controller.unplaced_devices.empty()) {
    AddDevices(controller, controller.unplaced_devices, rows.emplace_back());
    rows.back().name = "In no array";
  }
  for (const UnlistedDrive& drive : controller.unlisted_drives) rows.push_back(RowOf(drive));
  for (const UnlistedDevice& device : controller.unlisted_devices) rows.push_back(RowOf(device));
  if (rows.empty()) return;
  writer.Line();
  WriteTree(writer, "  ",
            {"NAME", "STATE", "SIZE", "TYPE", "PFA", "FIRMWARE", "SERIAL", "MODEL/NAME", "ERRORS"},
            rows);
}
