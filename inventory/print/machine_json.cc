#include "inventory/print/machine_json.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "inventory/base/times.h"
#include "inventory/machine/drive_groups.h"
#include "inventory/print/field_reader.h"
#include "inventory/print/field_writer.h"
#include "inventory/print/machine_fields.h"

namespace {

/// Null in a document that says of no array that it has the drive.
const DriveArray* ArrayOf(const Controller& controller, const LogicalDrive& drive) {
  return drive.array < controller.arrays.size() ? &controller.arrays[drive.array] : nullptr;
}

}  // namespace

Text ArrayName(const Controller& controller, const LogicalDrive& drive) {
  const DriveArray* const array = ArrayOf(controller, drive);
  return array == nullptr ? std::nullopt : Text(array->Name());
}

std::vector<Place> DevicePlaces(const Controller& controller, const LogicalDrive& drive) {
  std::vector<Place> places;
  if (const DriveArray* const array = ArrayOf(controller, drive)) {
    for (const std::size_t i : array->devices) places.push_back(controller.devices[i].place);
  }
  return places;
}

std::vector<std::string> ArrayNames(const Controller& controller, const Device& device) {
  std::vector<std::string> names;
  for (const std::size_t i : device.arrays) names.push_back(controller.arrays[i].Name());
  return names;
}

std::vector<std::optional<Number>> DriveNumbers(const Controller& controller,
                                                const Device& device) {
  std::vector<std::optional<Number>> numbers;
  for (const std::size_t i : device.arrays) {
    for (const std::size_t drive : controller.arrays[i].logical_drives) {
      numbers.push_back(controller.logical_drives[drive].number);
    }
  }
  return numbers;
}

void TakeName(const std::string& name, DriveArray& array) {
  static constexpr std::string_view kStart = "logical drive ";
  if (!array.letter && !array.logical_drive && name.starts_with(kStart)) {
    array.logical_drive = MakeNumber(name.substr(kStart.size()));
  }
}

std::optional<Number> ReadPercent(const Text& text) {
  if (!text) return std::nullopt;
  const std::size_t end = text->find_first_not_of("0123456789");
  const std::string unit = end == std::string::npos ? "" : text->substr(end);
  const bool is_percent = unit == " percent" || unit == "%" || unit == " %";
  return is_percent ? MakeNumber(text->substr(0, end)) : std::nullopt;
}

Text LocalTime(const std::string& text) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string::npos) return std::nullopt;
  std::string time = text;
  time[blank] = 'T';
  return ParseRfc3339(time + "Z") ? Text(time) : std::nullopt;
}

void WriteMachineJson(const Machine& machine, JsonWriter& json) {
  FieldWriter fields(json);
  json.Open('{');
  Fields(fields, machine);
  json.Close('}');
}

Machine ReadMachineJson(const nlohmann::json& machine) {
  FieldReader fields(machine, "machine");
  Machine read;
  Fields(fields, read);
  for (Controller& controller : read.controllers) {
    // Where no array has a drive, none is named.
    for (LogicalDrive& drive : controller.logical_drives) drive.array = controller.arrays.size();
    LinkBack(controller);
    for (std::size_t i = 0; i < controller.devices.size(); ++i) {
      if (controller.devices[i].arrays.empty()) controller.unplaced_devices.push_back(i);
    }
  }
  return read;
}
