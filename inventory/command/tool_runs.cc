#include "inventory/command/tool_runs.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "hmz/exception.h"
#include "inventory/base/readable.h"
#include "inventory/command/messages.h"

std::string ToolRuns::Run(const std::string& program, const std::vector<std::string>& arguments) {
  last_run_ = program;
  for (const std::string& argument : arguments) last_run_ += " " + argument;
  progress_.Show("run " + std::to_string(++run_count_) + ": " + last_run_);

  standin::ProcessResult result = standin::RunProcess(program, arguments, limits_);
  if (show_error_output_ && !result.error_output.empty()) {
    progress_.Clear();
    Complain("standard error of " + last_run_ + ":");
    std::cerr << Sanitized(result.error_output, Layout::kLines);
    if (result.error_output.back() != '\n') std::cerr << '\n';
  }

  Record& record = records_[program];
  ++record.runs;
  if (result.failure.empty()) return std::move(result.output);

  if (++record.failures == 1) failed_programs_.push_back(program);
  const auto known =
      std::find_if(record.reasons.begin(), record.reasons.end(),
                   [&](const auto& reason) { return reason.first == result.failure; });
  if (known == record.reasons.end()) {
    record.reasons.emplace_back(result.failure, 1);
  } else {
    ++known->second;
  }
  throw NKVXHMZ20::THMZException(result.failure);
}

std::vector<Problem> ToolRuns::GetProblems() const {
  std::vector<Problem> problems;
  for (const std::string& program : failed_programs_) {
    const Record& record = records_.at(program);
    std::string why =
        std::to_string(record.failures) + " of " + std::to_string(record.runs) + " runs failed: ";
    for (const auto& [reason, count] : record.reasons) {
      if (&reason != &record.reasons.front().first) why += "; ";
      // The reasons begin with the program, which `what` names already.
      const std::string prefix = program + ": ";
      why += reason.starts_with(prefix) ? reason.substr(prefix.size()) : reason;
      if (record.reasons.size() > 1) why += " (" + std::to_string(count) + ")";
    }
    Problem::Extent extent = Problem::Extent::kRuns;
    if (record.failures == record.runs) {
      // The system's reason would not tell: a script without its interpreter has the same.
      std::error_code error;
      const auto type = std::filesystem::symlink_status(program, error).type();
      extent = type == std::filesystem::file_type::not_found ? Problem::Extent::kAbsentTool
                                                             : Problem::Extent::kTool;
    }
    problems.push_back({program, why, extent});
  }
  return problems;
}
