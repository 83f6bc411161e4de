#ifndef INVENTORY_RUNS_LEFT_PROCESSES_H_
#define INVENTORY_RUNS_LEFT_PROCESSES_H_

#include <string>
#include <vector>

#include "standin/process.h"

/// Makes this process the one that inherits whatever a run leaves behind, in whichever session; but
/// not where whoever started it has left children to it, as they cannot be told apart. For a
/// program: a library cannot know which children are its host's. To be called once.
void InheritLeftProcesses();

/// Runs a tool as standin::RunProcess and then ends what it has left behind: asks it to, and kills
/// what has not gone half a second later.
standin::ProcessResult RunAndEndAll(const std::string& program,
                                    const std::vector<std::string>& arguments,
                                    const standin::ProcessLimits& limits);

/// Kills the run in progress and whatever it has left behind. Async-signal-safe.
void KillAllProcesses() noexcept;

#endif  // INVENTORY_RUNS_LEFT_PROCESSES_H_
