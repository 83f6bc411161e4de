#ifndef INVENTORY_COMMAND_TOOL_RUNS_H_
#define INVENTORY_COMMAND_TOOL_RUNS_H_

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "inventory/base/problem.h"
#include "inventory/command/progress_line.h"
#include "standin/process.h"

/// Runs the tools for the plug-in, within limits, and remembers how that went.
class ToolRuns {
 public:
  ToolRuns(const standin::ProcessLimits& limits, bool show_error_output)
      : limits_(limits), show_error_output_(show_error_output) {}

  /// As TOSSpecific::SpawnProcess.
  std::string Run(const std::string& program, const std::vector<std::string>& arguments);

  /// The command line of the latest run; "" before the first.
  const std::string& GetLastRun() const { return last_run_; }
  /// One for each tool that failed, in the order of the first failures.
  std::vector<Problem> GetProblems() const;

  ProgressLine& GetProgress() { return progress_; }

 private:
  struct Record {
    int runs = 0;
    int failures = 0;
    std::vector<std::pair<std::string, int>> reasons;  // and how often
  };

  standin::ProcessLimits limits_;
  bool show_error_output_;
  ProgressLine progress_;
  std::string last_run_;
  int run_count_ = 0;
  std::vector<std::string> failed_programs_;  // in the order of their first failures
  std::map<std::string, Record> records_;
};

#endif  // INVENTORY_COMMAND_TOOL_RUNS_H_
