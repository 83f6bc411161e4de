#ifndef INVENTORY_MACHINE_HEALTH_H_
#define INVENTORY_MACHINE_HEALTH_H_

#include <cstddef>
#include <string>
#include <vector>

#include "inventory/machine/machine.h"

enum class Severity { kFine, kWarning, kCritical };

/// Something that needs attention: where it is, and all that is the matter with it.
struct Finding {
  Severity severity;
  std::string where;
  std::string what;
};

struct Health {
  std::vector<Finding>
      findings;  ///< One for each controller, drive or device; critical ones first.
  std::size_t critical = 0;
  std::size_t failed_devices = 0;
  std::size_t degraded_drives = 0;
  std::size_t predicted_failures = 0;
  std::size_t drives_with_bad_stripes = 0;
  std::size_t rebuilds = 0;
};

// How the words of the tools are understood. A state is fine when all of it is known to be; a word
// in it that means loss makes it critical; everything else, no state at all included, is a warning.

Severity JudgeDevice(const std::string& state);
Severity JudgeLogicalDrive(const std::string& state);

/// The device's own flag, or anything else in its place than "No".
bool PredictsFailure(const Device& device);

/// The drive says so, or anything else than "No".
bool IsBlocked(const LogicalDrive& drive);

/// What of this machine needs attention.
Health Assess(const Machine& machine);

#endif  // INVENTORY_MACHINE_HEALTH_H_
