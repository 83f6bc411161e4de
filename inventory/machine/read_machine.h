#ifndef INVENTORY_MACHINE_READ_MACHINE_H_
#define INVENTORY_MACHINE_READ_MACHINE_H_

#include <cstddef>

#include "inventory/base/report.h"
#include "inventory/machine/machine.h"

/// Reads the instances of the last pass (of the manager's events all, as each pass goes on where
/// the one before stopped), and of each log the last `log_entries`, at least one. Takes time in
/// proportion to their number.
Machine ReadMachine(const Report& report, std::size_t log_entries = 5);

#endif  // INVENTORY_MACHINE_READ_MACHINE_H_
