#ifndef INVENTORY_PRINT_CHANGE_LIST_H_
#define INVENTORY_PRINT_CHANGE_LIST_H_

#include "inventory/machine/compare.h"
#include "inventory/print/flow.h"

/// Writes for a person what has changed since the earlier machine, one change a line, also that
/// nothing has, and what could not be compared.
void PrintChanges(const Comparison& comparison, TextWriter& writer);

#endif  // INVENTORY_PRINT_CHANGE_LIST_H_
