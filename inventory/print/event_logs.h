#ifndef INVENTORY_PRINT_EVENT_LOGS_H_
#define INVENTORY_PRINT_EVENT_LOGS_H_

#include "inventory/machine/machine.h"
#include "inventory/print/flow.h"

/// Writes the last entries of a controller's logs, defunct drives, soft and hard, behind an empty
/// line; nothing when all are empty.
void PrintControllerLogs(const Controller& controller, TextWriter& writer);

/// Writes the RAID manager's last events behind an empty line; nothing when there are none.
void PrintManagerEvents(const ManagerLog& log, TextWriter& writer);

#endif  // INVENTORY_PRINT_EVENT_LOGS_H_
