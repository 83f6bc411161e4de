#ifndef INVENTORY_RUNS_RUN_PROBLEMS_H_
#define INVENTORY_RUNS_RUN_PROBLEMS_H_

#include <vector>

#include "inventory/base/problem.h"
#include "inventory/base/run_record.h"
#include "standin/regular_file.h"

/// What went wrong with the runs: of each tool, in the order of their first runs, whether it is
/// there, refuses or fails as a whole, or else its single failures, alike ones in one. A controller
/// number that no controller has is no problem.
std::vector<Problem> FindRunProblems(const std::vector<RunRecord>& records);

/// That of a file only its newest end was read.
Problem DescribeCut(const standin::FileCut& cut);

#endif  // INVENTORY_RUNS_RUN_PROBLEMS_H_
