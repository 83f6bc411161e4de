#include "inventory/machine/drive_groups.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "schema/published_texts.h"

namespace {

/// Takes the devices at the places out of `devices`, so that one that stands in several stripe
/// orders is shown in the first.
void AddPlaces(const std::string& stripe_order, DevicesByPlace& devices, DriveGroup& group) {
  for (std::string& place : PlacesIn(stripe_order)) {
    const auto found = devices.find(place);
    if (found == devices.end()) {
      group.absent_places.push_back(std::move(place));
    } else if (found->second.empty()) {
      group.shared_places.push_back(std::move(place));
    } else {
      group.devices.insert(group.devices.end(), found->second.begin(), found->second.end());
      found->second.clear();
    }
  }
}

/// The arrays' groups, still empty of drives, and where they stand.
class GroupIndex {
 public:
  void Add(const DriveArray& array, std::size_t group) {
    if (array.letter.empty()) {
      by_drive_.emplace(array.logical_drive, group);
    } else {
      by_letter_.emplace(array.letter, group);
    }
  }

  /// Null when no array has the drive.
  const std::size_t* Find(const std::string& letter, const std::string& drive) const {
    if (const auto array = by_letter_.find(letter); array != by_letter_.end()) {
      return &array->second;
    }
    const auto own = by_drive_.find(drive);
    return own == by_drive_.end() ? nullptr : &own->second;
  }

 private:
  std::unordered_map<std::string, std::size_t> by_letter_;
  std::unordered_map<std::string, std::size_t> by_drive_;
};

bool StandsBefore(const DriveGroup& a, const DriveGroup& b) {
  if (a.logical_drives.empty()) return false;
  return b.logical_drives.empty() || a.logical_drives.front() < b.logical_drives.front();
}

}  // namespace

DriveArray MakeDriveArray(const std::string& id, const std::string& letter,
                          const std::string& stripe_order) {
  // The newer tools know no letters: their arrays are each one logical drive's, whose number stands
  // in the identifier.
  const std::string mark = kGroupsDriveMark;
  const auto found = id.find(mark);
  if (found == std::string::npos) return {letter, "", stripe_order};
  const auto number = found + mark.size();
  return {"", id.substr(number, id.find_first_not_of("0123456789", number) - number), stripe_order};
}

void GroupDrives(const std::vector<DriveArray>& arrays, const std::vector<DriveLocation>& locations,
                 DevicesByPlace devices, Controller& controller) {
  std::vector<DriveGroup>& groups = controller.groups;
  GroupIndex index;
  for (const DriveArray& array : arrays) {
    index.Add(array, groups.size());
    groups.emplace_back().array = array.letter;
    AddPlaces(array.stripe_order, devices, groups.back());
  }
  for (std::size_t i = 0; i < controller.logical_drives.size(); ++i) {
    const std::size_t* const group =
        index.Find(locations[i].array, controller.logical_drives[i].number);
    if (group != nullptr) {
      groups[*group].logical_drives.push_back(i);
    } else {
      groups.emplace_back().logical_drives.push_back(i);
      AddPlaces(locations[i].stripe_order, devices, groups.back());
    }
  }
  std::stable_sort(groups.begin(), groups.end(), StandsBefore);
  DriveGroup rest;
  for (const Device& device : controller.devices) {
    std::vector<std::size_t>& left = devices[device.place];
    rest.devices.insert(rest.devices.end(), left.begin(), left.end());
    left.clear();
  }
  if (!rest.devices.empty()) groups.push_back(std::move(rest));
}
