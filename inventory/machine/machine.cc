#include "inventory/machine/machine.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "inventory/base/readable.h"

std::optional<DriveCounts> MakeDriveCounts(std::string text) {
  if (text.empty()) return std::nullopt;
  DriveCounts counts;
  counts.is_read = std::count(text.begin(), text.end(), '/') == 2;
  std::istringstream parts(text);
  for (std::size_t DriveCounts::*count :
       {&DriveCounts::drives, &DriveCounts::offline, &DriveCounts::critical}) {
    std::string part;
    std::getline(parts, part, '/');
    const auto number = MakeNumber(part);
    counts.is_read = counts.is_read && number && number->value;
    if (counts.is_read) counts.*count = *number->value;
  }
  counts.text = std::move(text);
  return counts;
}

bool Device::IsDrive() const { return type && type->starts_with("Hard d"); }

std::string DriveArray::Name() const {
  if (letter) return *letter;
  return "logical drive " + (logical_drive ? logical_drive->text : "?");
}

bool Battery::IsReported() const {
  return state.text || over_temperature.text || capacity || time_remaining;
}

std::string Operation::Describe() const {
  if (!IsReported()) return "";
  std::string text = name.value_or("Background operation");
  if (logical_drive) text += " of logical drive " + logical_drive->text;
  return text + ": " + status.value_or("status not reported");
}

std::optional<double> Operation::Progress() const {
  if (!stripes || !stripes_left || !stripes->value || !stripes_left->value) return std::nullopt;
  const auto all = static_cast<double>(*stripes->value);
  const auto left = static_cast<double>(*stripes_left->value);
  if (all == 0 || left > all) return std::nullopt;
  return (all - left) / all;
}

std::string DescribeBadStripes(const std::vector<Number>& counts) {
  std::string text;
  for (const Number& count : counts) {
    if (!IsZero(count)) text.append(text.empty() ? "" : ", ").append(count.text);
  }
  return text.empty() ? "" : text + " bad stripes";
}

std::size_t Machine::CountLogicalDrives() const {
  std::size_t count = 0;
  for (const Controller& controller : controllers) count += controller.logical_drives.size();
  return count;
}

std::size_t Machine::CountDevices() const {
  std::size_t count = 0;
  for (const Controller& controller : controllers) count += controller.devices.size();
  return count;
}

std::size_t Machine::CountCritical() const {
  return static_cast<std::size_t>(std::count_if(
      findings.begin(), findings.end(),
      [](const Finding& finding) { return finding.severity == Severity::kCritical; }));
}

HealthCounts Machine::CountHealth() const {
  HealthCounts all;
  for (const Controller& controller : controllers) {
    all.failed_devices += controller.health.failed_devices;
    all.degraded_drives += controller.health.degraded_drives;
    all.predicted_failures += controller.health.predicted_failures;
    all.drives_with_bad_stripes += controller.health.drives_with_bad_stripes;
    all.rebuilds += controller.health.rebuilds;
  }
  return all;
}

std::string Machine::DescribeCounts() const {
  return Counted(controllers.size(), "controller") + ", " +
         Counted(CountLogicalDrives(), "logical drive") + ", " + Counted(CountDevices(), "device");
}
