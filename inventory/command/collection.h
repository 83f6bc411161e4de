#ifndef INVENTORY_COMMAND_COLLECTION_H_
#define INVENTORY_COMMAND_COLLECTION_H_

#include <cstddef>
#include <vector>

#include "inventory/command/options.h"
#include "inventory/command/tool_runs.h"
#include "standin/repository.h"

struct Collection {
  /// What the plug-in or the host threw, each kind once: empty when nothing did. They name the tool
  /// run or the class at which it happened.
  std::vector<Problem> failures;
  /// The index of the first instance that the last pass to commit any committed.
  std::size_t latest_pass = 0;
};

/// Loads the plug-in, asks it for the classes as often as the options say and unloads it. What it
/// commits is in the repository, also when it throws: each pass is made even when an earlier one
/// ended so.
Collection Collect(const Options& options, standin::Repository& repository, const ToolRuns& tools);

#endif  // INVENTORY_COMMAND_COLLECTION_H_
