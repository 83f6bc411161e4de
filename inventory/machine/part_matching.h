#ifndef INVENTORY_MACHINE_PART_MATCHING_H_
#define INVENTORY_MACHINE_PART_MATCHING_H_

#include <cstddef>
#include <optional>
#include <vector>

#include "inventory/machine/machine.h"

// Which part of a machine is which part of an earlier one.

/// Of two lists of parts, those that are the same.
class Matches {
 public:
  /// A key for each part; those without one are no matter here.
  using Keys = std::vector<Text>;
  using Index = std::optional<std::size_t>;

  Matches(std::size_t earlier_count, std::size_t now_count)
      : now_of_(earlier_count), earlier_of_(now_count) {}

  /// Matches the parts with equal keys where no other part, matched or not, has the key.
  void MatchUnique(const Keys& earlier, const Keys& now);
  /// Of the parts that are not matched yet, matches those with equal keys in their order.
  void MatchInOrder(const Keys& earlier, const Keys& now);

  /// Absent: the part is gone.
  Index NowOf(std::size_t earlier) const { return now_of_[earlier]; }
  /// Absent: the part is new.
  Index EarlierOf(std::size_t now) const { return earlier_of_[now]; }

 private:
  void Match(std::size_t earlier, std::size_t now);

  std::vector<Index> now_of_;
  std::vector<Index> earlier_of_;
};

/// By serial number, by the tool's own number, and only where no tool is known by the published
/// number: that is another one as soon as a controller before it vanishes.
Matches MatchControllers(const Machine& earlier, const Machine& now);

/// The devices of all controllers, one behind the other.
class DeviceNumbering {
 public:
  explicit DeviceNumbering(const Machine& machine);

  struct Position {
    std::size_t controller;
    std::size_t index;
  };

  std::size_t NumberOf(std::size_t controller, std::size_t index) const {
    return firsts_[controller] + index;
  }
  const Position& PositionOf(std::size_t number) const { return positions_[number]; }
  std::size_t Count() const { return positions_.size(); }

 private:
  std::vector<std::size_t> firsts_;  // of each controller
  std::vector<Position> positions_;
};

/// By serial number wherever the device is, then by its place on a controller that is the same.
/// Numbered as a DeviceNumbering of each of the two has it.
Matches MatchDevices(const Machine& earlier, const Machine& now, const Matches& controllers);

/// By number, within a controller.
Matches MatchLogicalDrives(const Controller& earlier, const Controller& now);
Matches MatchUnlistedDrives(const Controller& earlier, const Controller& now);
/// By place.
Matches MatchUnlistedDevices(const Controller& earlier, const Controller& now);

#endif  // INVENTORY_MACHINE_PART_MATCHING_H_
