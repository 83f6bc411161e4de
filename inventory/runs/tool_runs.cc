#include "inventory/runs/tool_runs.h"

#include <algorithm>
#include <filesystem>

#include "hmz/exception.h"
#include "inventory/runs/trust.h"
#include "schema/published_texts.h"
#include "standin/host_services.h"

namespace {

using std::chrono::milliseconds;

constexpr std::size_t kKeptOfFailed = std::size_t{1} << 20;

std::string Seconds(milliseconds time) {
  if (time.count() % 1000 == 0) return std::to_string(time.count() / 1000) + " s";
  return std::to_string(time.count()) + " ms";
}

/// The system's reason would not tell: a script without its interpreter has the same.
bool IsAbsent(const std::string& program) {
  std::error_code error;
  return std::filesystem::symlink_status(program, error).type() ==
         std::filesystem::file_type::not_found;
}

RunEnd EndOf(standin::ProcessEnd end) {
  switch (end) {
    case standin::ProcessEnd::kExited:
      return RunEnd::kExited;
    case standin::ProcessEnd::kSignalled:
      return RunEnd::kSignalled;
    case standin::ProcessEnd::kTimedOut:
      return RunEnd::kTimedOut;
    case standin::ProcessEnd::kOutputLimit:
      return RunEnd::kOutputLimit;
    case standin::ProcessEnd::kNotStarted:
      return RunEnd::kNotStarted;
    case standin::ProcessEnd::kLost:
      break;
  }
  return RunEnd::kLost;
}

}  // namespace

ToolRuns::ToolRuns(const RunBounds& bounds, Sharing sharing, RunObserver observer, Process process)
    : bounds_(bounds),
      sharing_(sharing),
      observer_(std::move(observer)),
      process_(std::move(process)),
      wall_clock_(standin::Services().get_local_time) {}

ToolRuns::ToolRuns(const Recording& recording, RunObserver observer)
    : sharing_(recording.as_host ? Sharing::kOff : Sharing::kOn),
      observer_(std::move(observer)),
      recording_(&recording) {
  for (std::size_t i = 0; i < recording.runs.size(); ++i) {
    recorded_[recording.runs[i].CommandLine()].push_back(i);
  }
}

void ToolRuns::BeginAttempt() {
  requests_.clear();
  times_asked_.clear();
}

const RunRecord* ToolRuns::GetLatest() const {
  return requests_.empty() ? nullptr : &records_[requests_.back().record];
}

bool ToolRuns::RefuseLatestRequest(const std::string& why) {
  if (requests_.empty()) return false;
  RunRecord& record = records_[requests_.back().record];
  if (!record.reason.empty()) return false;
  if (refused_.erase(latest_) > 0) {
    record.why_unreadable.clear();
    return false;
  }
  refused_.insert(latest_);
  record.why_unreadable = why;
  return true;
}

std::string ToolRuns::Run(const std::string& program, const std::vector<std::string>& arguments) {
  std::string command_line = program;
  for (const std::string& argument : arguments) command_line.append(" ").append(argument);
  latest_ = {command_line, ++times_asked_[command_line]};
  const std::size_t index = Find(program, arguments, command_line);
  const bool is_refused = refused_.contains(latest_);
  requests_.push_back({index, is_refused});
  RunRecord& record = records_[index];
  if (is_refused) {
    throw NKVXHMZ20::THMZException(program + ": printed what cannot be read");
  }
  if (!record.reason.empty()) throw NKVXHMZ20::THMZException(program + ": " + record.reason);
  std::string output = *record.output;
  // As a host it keeps no text; only what a controller was made of is looked into again.
  if (sharing_ == Sharing::kOff && (arguments.empty() || arguments[0] != kGetConfigWord)) {
    record.output = std::make_shared<const std::string>();
  }
  return output;
}

/// The index of the record that answers a request.
std::size_t ToolRuns::Find(const std::string& program, const std::vector<std::string>& arguments,
                           const std::string& command_line) {
  if (sharing_ == Sharing::kOn) {
    const auto known = by_command_line_.find(command_line);
    if (known != by_command_line_.end()) return known->second;
  }
  records_.push_back(recording_ == nullptr ? Start(program, arguments)
                                           : Replay(program, arguments, command_line));
  by_command_line_[command_line] = records_.size() - 1;
  observer_.after(records_.back());
  return records_.size() - 1;
}

RunRecord ToolRuns::Replay(const std::string& program, const std::vector<std::string>& arguments,
                           const std::string& command_line) {
  const auto found = recorded_.find(command_line);
  if (found != recorded_.end()) {
    const std::vector<std::size_t>& runs = found->second;
    return recording_->runs[runs[std::min(replayed_[command_line]++, runs.size() - 1)]];
  }
  RunRecord record;
  record.program = program;
  record.arguments = arguments;
  record.started = recording_->collected_at;
  record.end = RunEnd::kNotAsked;
  record.reason = "is not in the recording";
  return record;
}

RunRecord ToolRuns::Start(const std::string& program, const std::vector<std::string>& arguments) {
  if (!begin_) begin_ = Clock::now();
  RunRecord record;
  record.program = program;
  record.arguments = arguments;
  record.started = wall_clock_();
  record.reason = WhyNotAsked(record);
  if (!record.reason.empty()) {
    record.end = RunEnd::kNotAsked;
    record.is_tool_absent = IsAbsent(program);
    return record;
  }
  standin::ProcessLimits limits = bounds_.run;
  std::optional<TrustedFile> file;
  if (!bounds_.trusts_tools) {
    file.emplace(program);
    if (!file->WhyNot().empty() && file->IsAbsent()) {
      // Not even tried, as somebody could put it there now.
      record.end = RunEnd::kNotStarted;
      record.reason = "cannot be started: No such file or directory";
      record.is_tool_absent = true;
      return record;
    }
    if (!file->WhyNot().empty()) {
      record.end = RunEnd::kUntrusted;
      record.reason =
          "was not run, as others than root could have put it there: " + file->WhyNot() +
          "; --trust-tools runs it all the same";
      return record;
    }
    limits.executable = file->GetDescriptor();
  }
  observer_.before(record.CommandLine());
  const bool is_last = bounds_.collection && TimeLeft() < limits.time;
  if (is_last) limits.time = TimeLeft();
  const std::size_t room = bounds_.output_bytes - output_bytes_;
  const bool fills_room = KeepsOutputs() && room < limits.output_bytes;
  if (fills_room) limits.output_bytes = room;
  const auto start = Clock::now();
  standin::ProcessResult result = process_(program, arguments, limits);
  record.duration = std::chrono::duration_cast<milliseconds>(Clock::now() - start);
  *begin_ += result.suspended;
  record.end = EndOf(result.end);
  record.exit_status = result.exit_status;
  record.signal = result.signal;
  record.output_bytes = result.output.size();
  record.error_bytes = result.error_bytes;
  record.SetErrorOutput(result.error_output);
  record.left_behind = std::move(result.left_behind);
  record.is_tool_absent = record.end != RunEnd::kExited && IsAbsent(program);
  record.reason = std::move(result.failure);
  // The reasons begin with the program, which whoever shows them names already.
  if (record.reason.starts_with(program + ": ")) record.reason.erase(0, program.size() + 2);
  // What cannot be killed hangs, whatever it was stopped for.
  if (record.end == RunEnd::kTimedOut || result.has_outlived_killing) {
    ++hangs_[program];
    hanging_controllers_.emplace(program, record.Controller());
  }
  if (record.end == RunEnd::kTimedOut && is_last) {
    record.reason = "was stopped: the time limit of the whole collection, " +
                    Seconds(bounds_.asked.value_or(*bounds_.collection)) + ", was over";
  }
  if (record.end == RunEnd::kOutputLimit && fills_room) {
    record.reason = "was stopped: the outputs of all runs had used up the " + MebibytesInAll();
    output_bytes_ = bounds_.output_bytes;
  }
  // Nobody parses what a run printed that failed.
  if (!record.reason.empty()) result.output.resize(std::min(result.output.size(), kKeptOfFailed));
  auto output = std::make_shared<const std::string>(std::move(result.output));
  if (record.reason.empty() || bounds_.keeps_all) output_bytes_ += output->size();
  if (bounds_.keeps_all) {
    record.whole_output = output;
    record.whole_error_output = std::make_shared<const std::string>(std::move(result.error_output));
  }
  if (record.reason.empty()) record.output = std::move(output);
  return record;
}

/// Why a run is not even begun; "" when it is.
std::string ToolRuns::WhyNotAsked(const RunRecord& record) const {
  if (std::string why = observer_.why_stop(); !why.empty()) return "was not run: " + why;
  if (bounds_.collection && TimeLeft().count() <= 0) {
    return "was not run: the time limit of the whole collection, " +
           Seconds(bounds_.asked.value_or(*bounds_.collection)) + ", was over";
  }
  if (sharing_ == Sharing::kOn) {
    const auto hangs = hangs_.find(record.program);
    if (hangs != hangs_.end() && hangs->second >= bounds_.hangs) {
      return "was not run: the tool had hung " + std::to_string(hangs->second) + " times";
    }
    if (hanging_controllers_.contains({record.program, record.Controller()})) {
      return "was not run: the tool had hung over this controller";
    }
  }
  if (KeepsOutputs() && output_bytes_ >= bounds_.output_bytes) {
    return "was not run: the outputs before it had used up the " + MebibytesInAll();
  }
  return "";
}

std::string ToolRuns::MebibytesInAll() const {
  return std::to_string(bounds_.output_bytes >> 20) + " MiB that all may have together";
}

milliseconds ToolRuns::TimeLeft() const {
  return *bounds_.collection - std::chrono::duration_cast<milliseconds>(Clock::now() - *begin_);
}
