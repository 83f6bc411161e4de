#ifndef INVENTORY_MACHINE_READ_MACHINE_H_
#define INVENTORY_MACHINE_READ_MACHINE_H_

#include "inventory/base/report.h"
#include "inventory/machine/machine.h"

/// Reads the instances of the last pass (of the manager's events all, as each pass goes on where
/// the one before stopped). Takes time in proportion to their number.
Machine ReadMachine(const Report& report);

#endif  // INVENTORY_MACHINE_READ_MACHINE_H_
