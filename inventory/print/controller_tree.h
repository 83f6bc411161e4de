#ifndef INVENTORY_PRINT_CONTROLLER_TREE_H_
#define INVENTORY_PRINT_CONTROLLER_TREE_H_

#include "inventory/machine/machine.h"
#include "inventory/print/flow.h"

/// Writes what is on a controller as a tree behind an empty line: arrays, their logical drives and
/// devices, what is in no array, and last the bad stripes and counters of what is not listed.
/// Nothing of a controller that has none of these.
void PrintControllerTree(const Controller& controller, TextWriter& writer);

#endif  // INVENTORY_PRINT_CONTROLLER_TREE_H_
