#include "inventory/machine/drive_groups.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "schema/published_texts.h"

namespace {

/// The places of stripe orders, and which of their devices are shown already: one that stands in
/// several orders is shown in the first.
class Placing {
 public:
  explicit Placing(const DevicesByPlace& devices) : devices_(devices) {}

  void AddPlaces(const std::string& stripe_order, DriveArray& array) {
    std::unordered_set<Place> places;
    for (Place& place : PlacesIn(stripe_order)) {
      const auto found = devices_.find(place);
      const bool is_first = places.insert(place).second;
      if (found == devices_.end()) {
        if (is_first) array.absent_places.push_back(std::move(place));
        continue;
      }
      if (is_first) Append(found->second, array.devices);
      if (shown_.insert(place).second) {
        Append(found->second, array.shown_devices);
      } else {
        array.shared_places.push_back(std::move(place));
      }
    }
  }

  /// All that is in no stripe order, devices of one place together.
  std::vector<std::size_t> TakeRest(const std::vector<Device>& devices) {
    std::vector<std::size_t> rest;
    for (const Device& device : devices) {
      if (shown_.insert(device.place).second) Append(devices_.at(device.place), rest);
    }
    return rest;
  }

 private:
  static void Append(const std::vector<std::size_t>& more, std::vector<std::size_t>& all) {
    all.insert(all.end(), more.begin(), more.end());
  }

  const DevicesByPlace& devices_;
  std::unordered_set<Place> shown_;
};

/// The arrays, still empty of drives, and where they stand.
class ArrayIndex {
 public:
  void Add(const PublishedArray& array, std::size_t index) {
    if (array.letter) {
      by_letter_.emplace(*array.letter, index);
    } else {
      by_drive_[array.logical_drive].indices.push_back(index);
    }
  }

  /// Null when no array has the drive. Of several drives with one number, the next has the next.
  const std::size_t* Take(const std::string& letter, const std::string& drive) {
    if (const auto array = by_letter_.find(letter); array != by_letter_.end()) {
      return &array->second;
    }
    const auto own = by_drive_.find(drive);
    if (own == by_drive_.end()) return nullptr;
    OfNumber& arrays = own->second;
    return &arrays.indices[std::min(arrays.taken++, arrays.indices.size() - 1)];
  }

 private:
  struct OfNumber {
    std::vector<std::size_t> indices;
    std::size_t taken = 0;
  };

  std::unordered_map<std::string, std::size_t> by_letter_;
  std::unordered_map<std::string, OfNumber> by_drive_;
};

bool StandsBefore(const DriveArray& a, const DriveArray& b) {
  if (a.logical_drives.empty()) return false;
  return b.logical_drives.empty() || a.logical_drives.front() < b.logical_drives.front();
}

}  // namespace

DevicesByPlace IndexDevices(const std::vector<Device>& devices) {
  DevicesByPlace by_place;
  for (std::size_t i = 0; i < devices.size(); ++i) by_place[devices[i].place].push_back(i);
  return by_place;
}

PublishedArray MakePublishedArray(const std::string& id, const std::string& letter,
                                  const std::string& stripe_order) {
  // The newer tools know no letters: their arrays are each one logical drive's, whose number stands
  // in the identifier.
  const std::string mark = kGroupsDriveMark;
  const auto found = id.find(mark);
  if (found == std::string::npos) return {MakeText(letter), "", stripe_order};
  const auto number = found + mark.size();
  return {std::nullopt, id.substr(number, id.find_first_not_of("0123456789", number) - number),
          stripe_order};
}

void GroupDrives(const std::vector<PublishedArray>& arrays,
                 const std::vector<DriveLocation>& locations, const DevicesByPlace& devices,
                 Controller& controller) {
  Placing placing(devices);
  ArrayIndex index;
  for (const PublishedArray& published : arrays) {
    index.Add(published, controller.arrays.size());
    DriveArray& array = controller.arrays.emplace_back();
    array.letter = published.letter;
    array.logical_drive = MakeNumber(published.logical_drive);
    placing.AddPlaces(published.stripe_order, array);
  }
  for (std::size_t i = 0; i < controller.logical_drives.size(); ++i) {
    const auto& number = controller.logical_drives[i].number;
    const std::size_t* const known = index.Take(locations[i].array, number ? number->text : "");
    if (known != nullptr) {
      controller.arrays[*known].logical_drives.push_back(i);
      continue;
    }
    DriveArray& own = controller.arrays.emplace_back();
    own.logical_drive = number;
    own.logical_drives.push_back(i);
    placing.AddPlaces(locations[i].stripe_order, own);
  }
  std::stable_sort(controller.arrays.begin(), controller.arrays.end(), StandsBefore);
  controller.unplaced_devices = placing.TakeRest(controller.devices);
  LinkBack(controller);
}

void LinkBack(Controller& controller) {
  std::unordered_set<Place> missing;
  for (std::size_t i = 0; i < controller.arrays.size(); ++i) {
    const DriveArray& array = controller.arrays[i];
    for (const std::size_t drive : array.logical_drives) controller.logical_drives[drive].array = i;
    for (const std::size_t device : array.devices) controller.devices[device].arrays.push_back(i);
    for (const Place& place : array.absent_places) {
      if (missing.insert(place).second) controller.missing_places.push_back(place);
    }
  }
}
