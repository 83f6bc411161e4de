#ifndef INVENTORY_MACHINE_SELECTION_H_
#define INVENTORY_MACHINE_SELECTION_H_

#include <cstdint>
#include <string>
#include <vector>

#include "inventory/base/problem.h"
#include "inventory/machine/machine.h"

/// Leaves of the machine the controllers of these numbers, with what was found of them. What was
/// not collected stays: the numbers go on from tool to tool, so it may be any controller's. Returns
/// which of the numbers there are not, for a person; "" when all are there.
std::string SelectControllers(const std::vector<std::uint64_t>& numbers, Machine& machine);

/// Leaves of the problems those that the selected controllers may have: all but those of single
/// runs about another one.
void SelectProblems(const Machine& selected, std::vector<Problem>& problems);

#endif  // INVENTORY_MACHINE_SELECTION_H_
