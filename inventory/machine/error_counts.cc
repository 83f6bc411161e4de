#include "inventory/machine/error_counts.h"

#include <algorithm>
#include <utility>

#include "inventory/machine/property_text.h"

namespace {

bool IsAboveZero(const std::optional<Number>& number) { return number && !IsZero(*number); }

bool IsAnyAboveZero(const ErrorCounters& counters) {
  return IsAboveZero(counters.hard) || IsAboveZero(counters.soft) || IsAboveZero(counters.parity) ||
         IsAboveZero(counters.predicted_failures) || IsAboveZero(counters.misc);
}

}  // namespace

void ErrorCounts::ReadBadStripes(const standin::StoredInstance& instance) {
  const auto count = MakeNumber(PropertyText(instance, "NumBadStripes"));
  if (count) bad_stripes_[PropertyText(instance, "LogicalDrive")].push_back(*count);
}

void ErrorCounts::ReadCounters(const standin::StoredInstance& instance) {
  static constexpr FieldRow<ErrorCounters> kRows[] = {
      {"NumHardErrors", &ErrorCounters::hard},
      {"NumSoftErrors", &ErrorCounters::soft},
      {"NumParityErrors", &ErrorCounters::parity},
      {"PFA", &ErrorCounters::predicted_failures},
      {"Misc", &ErrorCounters::misc},
  };
  UnlistedDevice& row = counters_.emplace_back();
  row.place = Place(PropertyText(instance, "Channel"), PropertyText(instance, "ScsiId"));
  ReadFields(instance, kRows, row.counters);
}

void ErrorCounts::MoveTo(Controller& controller, const DevicesByPlace& devices) {
  for (LogicalDrive& drive : controller.logical_drives) {
    if (auto found = bad_stripes_.extract(drive.number ? drive.number->text : ""); !found.empty()) {
      drive.bad_stripes = std::move(found.mapped());
    }
  }
  for (auto& [number, counts] : bad_stripes_) {
    if (!std::all_of(counts.begin(), counts.end(), IsZero)) {
      controller.unlisted_drives.push_back({MakeNumber(number), std::move(counts)});
    }
  }
  const auto number_text = [](const UnlistedDrive& drive) {
    return drive.number ? drive.number->text : "";
  };
  std::sort(controller.unlisted_drives.begin(), controller.unlisted_drives.end(),
            [&](const auto& a, const auto& b) { return number_text(a) < number_text(b); });

  for (UnlistedDevice& counted : counters_) {
    const auto found = devices.find(counted.place);
    // Of several at one place (without a number, mostly) nobody knows whose they are.
    if (found != devices.end() && found->second.size() == 1) {
      controller.devices[found->second.front()].counters.push_back(std::move(counted.counters));
    } else if (IsAnyAboveZero(counted.counters)) {
      controller.unlisted_devices.push_back(std::move(counted));
    }
  }
}
