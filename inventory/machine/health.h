#ifndef INVENTORY_MACHINE_HEALTH_H_
#define INVENTORY_MACHINE_HEALTH_H_

#include <cstddef>
#include <vector>

#include "inventory/machine/finding.h"
#include "inventory/machine/machine.h"

struct Health {
  /// One for each controller, drive or device; critical ones first.
  std::vector<Finding> findings;
  std::size_t critical = 0;
  std::size_t failed_devices = 0;
  std::size_t degraded_drives = 0;
  std::size_t predicted_failures = 0;
  std::size_t drives_with_bad_stripes = 0;
  std::size_t rebuilds = 0;
};

/// What of this machine needs attention.
Health Assess(const Machine& machine);

#endif  // INVENTORY_MACHINE_HEALTH_H_
