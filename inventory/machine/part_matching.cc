#include "inventory/machine/part_matching.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace {

using Keys = Matches::Keys;

/// A key of each part of a list.
template <class Part, class GetKey>
Keys KeysOf(const std::vector<Part>& parts, const GetKey& get_key) {
  Keys keys;
  keys.reserve(parts.size());
  for (const Part& part : parts) keys.push_back(get_key(part));
  return keys;
}

/// Two lists of one controller's parts, all of which have a key.
template <class Part, class GetKey>
Matches MatchParts(const std::vector<Part>& earlier, const std::vector<Part>& now,
                   const GetKey& get_key) {
  Matches matches(earlier.size(), now.size());
  matches.MatchInOrder(KeysOf(earlier, get_key), KeysOf(now, get_key));
  return matches;
}

Text SerialNumberOf(const Controller& controller) { return controller.serial_number; }

Text ToolNumberOf(const Controller& controller) {
  return controller.tool ? Text(controller.tool->Describe()) : std::nullopt;
}

Text PublishedNumberOf(const Controller& controller) { return MakeText(controller.NumberText()); }

Text NumberWithoutTool(const Controller& controller) {
  return controller.tool ? std::nullopt : PublishedNumberOf(controller);
}

/// The serial numbers of all devices, numbered as DeviceNumbering does.
Keys SerialNumbers(const Machine& machine) {
  Keys keys;
  for (const Controller& controller : machine.controllers) {
    for (const Device& device : controller.devices) keys.push_back(device.serial_number);
  }
  return keys;
}

std::string PlaceOn(std::size_t controller, const Device& device) {
  return std::to_string(controller) + " " + device.place.GetText();
}

}  // namespace

void Matches::Match(std::size_t earlier, std::size_t now) {
  now_of_[earlier] = now;
  earlier_of_[now] = earlier;
}

void Matches::MatchUnique(const Keys& earlier, const Keys& now) {
  struct Holders {
    std::size_t earlier_count = 0;
    std::size_t earlier = 0;  // the last one
    std::size_t now_count = 0;
    std::size_t now = 0;
  };
  std::unordered_map<std::string_view, Holders> holders;
  for (std::size_t i = 0; i < earlier.size(); ++i) {
    if (!earlier[i]) continue;
    Holders& found = holders[*earlier[i]];
    ++found.earlier_count;
    found.earlier = i;
  }
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (!now[i]) continue;
    Holders& found = holders[*now[i]];
    ++found.now_count;
    found.now = i;
  }
  for (const auto& [key, found] : holders) {
    if (found.earlier_count == 1 && found.now_count == 1) Match(found.earlier, found.now);
  }
}

void Matches::MatchInOrder(const Keys& earlier, const Keys& now) {
  struct Waiting {
    std::vector<std::size_t> parts;
    std::size_t next = 0;
  };
  std::unordered_map<std::string_view, Waiting> waiting;
  for (std::size_t i = 0; i < earlier.size(); ++i) {
    if (earlier[i] && !now_of_[i]) waiting[*earlier[i]].parts.push_back(i);
  }
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (!now[i] || earlier_of_[i]) continue;
    const auto found = waiting.find(*now[i]);
    if (found == waiting.end() || found->second.next == found->second.parts.size()) continue;
    Match(found->second.parts[found->second.next++], i);
  }
}

Matches MatchControllers(const Machine& earlier, const Machine& now) {
  const std::vector<Controller>& before = earlier.controllers;
  const std::vector<Controller>& after = now.controllers;
  Matches matches(before.size(), after.size());
  matches.MatchUnique(KeysOf(before, SerialNumberOf), KeysOf(after, SerialNumberOf));
  matches.MatchInOrder(KeysOf(before, ToolNumberOf), KeysOf(after, ToolNumberOf));
  matches.MatchInOrder(KeysOf(before, NumberWithoutTool), KeysOf(after, PublishedNumberOf));
  matches.MatchInOrder(KeysOf(before, PublishedNumberOf), KeysOf(after, NumberWithoutTool));
  return matches;
}

DeviceNumbering::DeviceNumbering(const Machine& machine) {
  for (std::size_t i = 0; i < machine.controllers.size(); ++i) {
    firsts_.push_back(positions_.size());
    for (std::size_t j = 0; j < machine.controllers[i].devices.size(); ++j) {
      positions_.push_back({i, j});
    }
  }
}

Matches MatchDevices(const Machine& earlier, const Machine& now, const Matches& controllers) {
  const Keys earlier_numbers = SerialNumbers(earlier);
  const Keys numbers = SerialNumbers(now);
  Matches matches(earlier_numbers.size(), numbers.size());
  matches.MatchUnique(earlier_numbers, numbers);

  Keys earlier_places;
  for (std::size_t i = 0; i < earlier.controllers.size(); ++i) {
    const Matches::Index same = controllers.NowOf(i);
    for (const Device& device : earlier.controllers[i].devices) {
      earlier_places.push_back(same ? Text(PlaceOn(*same, device)) : std::nullopt);
    }
  }
  Keys places;
  for (std::size_t i = 0; i < now.controllers.size(); ++i) {
    for (const Device& device : now.controllers[i].devices) places.push_back(PlaceOn(i, device));
  }
  matches.MatchInOrder(earlier_places, places);
  return matches;
}

Matches MatchLogicalDrives(const Controller& earlier, const Controller& now) {
  return MatchParts(
      earlier.logical_drives, now.logical_drives,
      [](const LogicalDrive& drive) -> Text { return drive.number ? drive.number->text : ""; });
}

Matches MatchUnlistedDrives(const Controller& earlier, const Controller& now) {
  return MatchParts(
      earlier.unlisted_drives, now.unlisted_drives,
      [](const UnlistedDrive& drive) -> Text { return drive.number ? drive.number->text : ""; });
}

Matches MatchUnlistedDevices(const Controller& earlier, const Controller& now) {
  return MatchParts(earlier.unlisted_devices, now.unlisted_devices,
                    [](const UnlistedDevice& device) -> Text { return device.place.GetText(); });
}
