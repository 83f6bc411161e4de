#include "inventory/machine/error_counts.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "inventory/machine/property_text.h"

namespace {

bool IsZero(std::string_view text) { return text.find_first_not_of('0') == std::string_view::npos; }

}  // namespace

void ErrorCounts::ReadBadStripes(const standin::StoredInstance& instance) {
  const std::string count = PropertyText(instance, "NumBadStripes");
  if (IsZero(count)) return;
  const auto [found, is_new] = bad_stripes_.emplace(PropertyText(instance, "LogicalDrive"), count);
  if (!is_new) found->second += ", " + count;
}

void ErrorCounts::ReadCounters(const standin::StoredInstance& instance) {
  static constexpr std::pair<const char*, const char*> kCounters[] = {
      {"NumHardErrors", "hard"},
      {"NumSoftErrors", "soft"},
      {"NumParityErrors", "parity"},
      {"PFA", "PFA"},
      {"Misc", "misc"},
  };
  Device device;
  for (const auto& [property, name] : kCounters) {
    const std::string count = PropertyText(instance, property);
    if (!IsZero(count)) device.counters.emplace_back(name, count);
  }
  if (device.counters.empty()) return;
  device.place = PlaceText(PropertyText(instance, "Channel"), PropertyText(instance, "ScsiId"));
  counters_.push_back(std::move(device));
}

void ErrorCounts::MoveTo(Controller& controller, const DevicesByPlace& devices) {
  for (LogicalDrive& drive : controller.logical_drives) {
    if (const auto found = bad_stripes_.extract(drive.number); !found.empty()) {
      drive.bad_stripes = found.mapped();
    }
  }
  controller.stray_bad_stripes.assign(bad_stripes_.begin(), bad_stripes_.end());
  std::sort(controller.stray_bad_stripes.begin(), controller.stray_bad_stripes.end());

  for (Device& counted : counters_) {
    const auto found = devices.find(counted.place);
    // Of several at one place (without a number, mostly) nobody knows whose they are.
    if (found == devices.end() || found->second.size() > 1) {
      controller.stray_counters.push_back(std::move(counted));
    } else {
      auto& counters = controller.devices[found->second.front()].counters;
      counters.insert(counters.end(), counted.counters.begin(), counted.counters.end());
    }
  }
}
