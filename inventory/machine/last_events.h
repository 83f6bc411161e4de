#ifndef INVENTORY_MACHINE_LAST_EVENTS_H_
#define INVENTORY_MACHINE_LAST_EVENTS_H_

#include "inventory/machine/machine.h"
#include "standin/repository.h"

// The logs: how many entries there are, and as many of the last ones as are to be shown.

/// The words of a soft or hard event log.
EventWords ReadEventWords(const standin::StoredInstance& instance, const char* property,
                          std::size_t kept);

/// An entry of the log of defunct drives.
void AddDddEvent(const standin::StoredInstance& instance, std::size_t kept, Controller& controller);

/// An entry of the manager's log, unless it is none of the manager's own.
void AddManagerEvent(const standin::StoredInstance& instance, std::size_t kept, Machine& machine);

/// When all entries are there: the last ones were kept in turns, and get into their order.
void OrderLastEvents(Machine& machine);

#endif  // INVENTORY_MACHINE_LAST_EVENTS_H_
