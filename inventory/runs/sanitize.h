#ifndef INVENTORY_RUNS_SANITIZE_H_
#define INVENTORY_RUNS_SANITIZE_H_

#include <string_view>

#include "inventory/runs/recording.h"

/// Puts pseudonyms in place of what tells machines and their parts from others: serial numbers,
/// world-wide names, the names of the host, of controllers, logical drives and of the machines in
/// the manager's log. They are found by their labels in all outputs, also in those that no parser
/// takes. `key` is that of the pseudonyms; see docs/recordings.md for what is not covered.
void Sanitize(std::string_view key, Recording& recording);

#endif  // INVENTORY_RUNS_SANITIZE_H_
