#ifndef INVENTORY_MACHINE_SELECTION_H_
#define INVENTORY_MACHINE_SELECTION_H_

#include <cstdint>
#include <string>
#include <vector>

#include "inventory/base/problem.h"
#include "inventory/machine/compare.h"
#include "inventory/machine/machine.h"

/// Leaves of the machine the controllers of these numbers, with what was found of them. What was
/// not collected stays: the numbers go on from tool to tool, so it may be any controller's. Returns
/// which of the numbers there are not, for a person; "" when all are there. Of a comparison it
/// leaves the changes of these controllers, those that are gone included, and of no controller.
std::string SelectControllers(const std::vector<std::uint64_t>& numbers, Machine& machine,
                              Comparison* comparison = nullptr);

/// Leaves of the problems those that the selected controllers may have: all but those of single
/// runs about another one.
void SelectProblems(const Machine& selected, std::vector<Problem>& problems);

#endif  // INVENTORY_MACHINE_SELECTION_H_
