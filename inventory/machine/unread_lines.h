#ifndef INVENTORY_MACHINE_UNREAD_LINES_H_
#define INVENTORY_MACHINE_UNREAD_LINES_H_

#include <vector>

#include "inventory/base/problem.h"
#include "inventory/base/report.h"
#include "inventory/machine/machine.h"

/// What the tools print of the controllers that were published and nobody gets to see: for each
/// controller one problem with the number of such lines and the first few of their labels; none
/// where there is no such line. A line counts as read when its value is that of a property of the
/// controller or its parts; lines without a value (blank ones, rules, headings) do not count at
/// all. The machine is the report's.
std::vector<Problem> FindUnreadLines(const Report& report, const Machine& machine);

#endif  // INVENTORY_MACHINE_UNREAD_LINES_H_
