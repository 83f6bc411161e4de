#ifndef INVENTORY_MACHINE_HEALTH_H_
#define INVENTORY_MACHINE_HEALTH_H_

#include "inventory/machine/machine.h"

/// Finds what of this machine needs attention: fills its findings, the judgements of the states,
/// and of each part the verdict, of each controller the counts.
void Judge(Machine& machine);

/// "controller 2 (mail)", as findings and changes name it.
std::string DescribeController(const Controller& controller);

#endif  // INVENTORY_MACHINE_HEALTH_H_
