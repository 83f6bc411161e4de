#ifndef INVENTORY_MACHINE_LAST_EVENTS_H_
#define INVENTORY_MACHINE_LAST_EVENTS_H_

#include "inventory/machine/machine.h"
#include "standin/repository.h"

// The logs: how many entries there are, and the last few as they are shown.

/// The words of a soft or hard event log.
EventWords ReadEventWords(const standin::StoredInstance& instance, const char* property);

/// An entry of the log of defunct drives.
void AddDddEvent(const standin::StoredInstance& instance, Controller& controller);

/// An entry of the manager's log, unless it is none of the manager's own.
void AddManagerEvent(const standin::StoredInstance& instance, Machine& machine);

#endif  // INVENTORY_MACHINE_LAST_EVENTS_H_
