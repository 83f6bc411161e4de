#ifndef INVENTORY_COMMAND_COLLECTION_H_
#define INVENTORY_COMMAND_COLLECTION_H_

#include <cstddef>
#include <memory>
#include <vector>

#include "inventory/command/options.h"
#include "inventory/runs/tool_runs.h"
#include "standin/repository.h"

struct Collection {
  std::unique_ptr<standin::Repository> repository;  ///< What was committed.
  /// What the plug-in or the host threw and no output is to blame for, each kind once.
  std::vector<Problem> failures;
  /// The index of the first instance that the last pass to commit any committed.
  std::size_t latest_pass = 0;
};

/// Loads the plug-in, asks it for the classes as often as the options say and unloads it.
///
/// Where the plug-in throws over a tool's output or a file, the whole is done again with that one
/// request refused or without that file, until it goes through or nothing new is learnt; no tool
/// runs again for that. As a host,
/// or where no output is to blame, a pass ends at what the plug-in throws, what it committed before
/// stays, and the next pass is made all the same.
Collection Collect(const Options& options, ToolRuns& tools);

#endif  // INVENTORY_COMMAND_COLLECTION_H_
