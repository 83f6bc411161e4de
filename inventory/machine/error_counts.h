#ifndef INVENTORY_MACHINE_ERROR_COUNTS_H_
#define INVENTORY_MACHINE_ERROR_COUNTS_H_

#include <string>
#include <unordered_map>
#include <vector>

#include "inventory/machine/drive_groups.h"
#include "inventory/machine/machine.h"
#include "standin/repository.h"

/// Of a controller the bad stripes and error counters, which are published apart from the drives
/// and devices that they belong to.
class ErrorCounts {
 public:
  void ReadBadStripes(const standin::StoredInstance& instance);
  void ReadCounters(const standin::StoredInstance& instance);

  /// Gives them to the controller's drives and devices. What is above 0 and belongs to none of them
  /// is kept, too.
  void MoveTo(Controller& controller, const DevicesByPlace& devices);

 private:
  std::unordered_map<std::string, std::vector<Number>> bad_stripes_;  // by logical drive
  std::vector<UnlistedDevice> counters_;
};

#endif  // INVENTORY_MACHINE_ERROR_COUNTS_H_
