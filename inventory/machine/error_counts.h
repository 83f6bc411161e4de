#ifndef INVENTORY_MACHINE_ERROR_COUNTS_H_
#define INVENTORY_MACHINE_ERROR_COUNTS_H_

#include <string>
#include <unordered_map>
#include <vector>

#include "inventory/machine/machine.h"
#include "inventory/machine/place.h"
#include "standin/repository.h"

/// Of a controller the bad stripes and error counters above 0, which are published apart from the
/// drives and devices that they belong to.
class ErrorCounts {
 public:
  void ReadBadStripes(const standin::StoredInstance& instance);
  void ReadCounters(const standin::StoredInstance& instance);

  /// Gives them to the controller's drives and devices, or as strays to itself.
  void MoveTo(Controller& controller, const DevicesByPlace& devices);

 private:
  std::unordered_map<std::string, std::string> bad_stripes_;  // by logical drive
  std::vector<Device> counters_;                              // with a place and counters only
};

#endif  // INVENTORY_MACHINE_ERROR_COUNTS_H_
