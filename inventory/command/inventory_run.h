#ifndef INVENTORY_COMMAND_INVENTORY_RUN_H_
#define INVENTORY_COMMAND_INVENTORY_RUN_H_

#include "inventory/command/options.h"

/// Collects, prints what was collected, and complains of what went wrong. Everything that can be
/// refused is refused before a tool runs. Returns the exit status; throws a Refusal. Metrics are
/// written in any case, for as long as there is a place for them.
int RunInventory(const Options& options);

/// The whole command, from its command line to its exit status; whatever is thrown ends here, too.
int RunCommand(int argc, const char* const* argv);

#endif  // INVENTORY_COMMAND_INVENTORY_RUN_H_
