#ifndef INVENTORY_RUNS_TOOL_RUNS_H_
#define INVENTORY_RUNS_TOOL_RUNS_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "inventory/base/run_record.h"
#include "inventory/runs/recording.h"
#include "standin/process.h"

/// What all runs of a collection may use.
struct RunBounds {
  standin::ProcessLimits run;                           ///< Of each of them.
  std::optional<std::chrono::milliseconds> collection;  ///< From the first request on; none: ever.
  /// What was asked for, of which waiting may have taken a part: as messages name it.
  std::optional<std::chrono::milliseconds> asked = {};
  std::size_t output_bytes = std::size_t{256} << 20;  ///< Of all of them together.
  int hangs = 3;                                      ///< Of one tool, before it is given up.
  bool keeps_all = false;    ///< Whether the records keep their whole outputs, for a recording.
  bool trusts_tools = true;  ///< Whether a tool runs wherever it is; see TrustedFile.
};

/// Whether a command line runs once, or each time that the plug-in asks for it.
enum class Sharing { kOn, kOff };

/// Somebody who wants to know of the runs.
struct RunObserver {
  std::function<void(const std::string& command_line)> before = [](const std::string&) {};
  std::function<void(const RunRecord& record)> after = [](const RunRecord&) {};
  /// Why nobody is waiting for the results any more; "" as long as somebody is.
  std::function<std::string()> why_stop = [] { return std::string(); };
};

/// Every run of a tool: remembered, shared between the plug-in's requests, and bounded.
///
/// With sharing on, a command line runs once in a collection, however often the plug-in asks. What
/// hangs is given up: a tool that ran into its time limit is not asked again about the same
/// controller, and after a few such runs not at all. With sharing off each request runs, as a host
/// has it, and only the time of the collection is bounded.
class ToolRuns {
 public:
  using Process = std::function<standin::ProcessResult(const std::string& program,
                                                       const std::vector<std::string>& arguments,
                                                       const standin::ProcessLimits& limits)>;

  ToolRuns(const RunBounds& bounds, Sharing sharing, RunObserver observer = {},
           Process process = standin::RunProcess);

  /// Answers from a recording instead: the nth request of a command line with its nth run, then
  /// with the last one. No process is started and nothing is bounded. The recording has to outlive
  /// the object.
  ToolRuns(const Recording& recording, RunObserver observer);

  /// As TOSSpecific::SpawnProcess, which it stands behind: the standard output, or THMZException.
  std::string Run(const std::string& program, const std::vector<std::string>& arguments);

  /// A collection by a newly loaded plug-in: its requests are counted from the first one.
  void BeginAttempt();
  /// The plug-in threw over the answer to its latest request: from the next attempt on this request
  /// is refused; `why` is for a person. False when nothing new is learnt: there is no request, its
  /// run had failed anyway, or it was refused already. A refusal that did not help is taken back.
  bool RefuseLatestRequest(const std::string& why);

  const std::vector<RunRecord>& GetRecords() const { return records_; }
  /// Those of the latest attempt.
  const std::vector<RunRequest>& GetRequests() const { return requests_; }
  /// The run that answered the latest request; null before the first.
  const RunRecord* GetLatest() const;

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t Find(const std::string& program, const std::vector<std::string>& arguments,
                   const std::string& command_line);
  RunRecord Replay(const std::string& program, const std::vector<std::string>& arguments,
                   const std::string& command_line);
  RunRecord Start(const std::string& program, const std::vector<std::string>& arguments);
  std::string WhyNotAsked(const RunRecord& record) const;
  /// As a host it does not, unless for a recording.
  bool KeepsOutputs() const { return sharing_ == Sharing::kOn || bounds_.keeps_all; }
  std::string MebibytesInAll() const;
  std::chrono::milliseconds TimeLeft() const;

  RunBounds bounds_;
  Sharing sharing_;
  RunObserver observer_;
  Process process_;
  std::function<NKVXHMZ20::TCIMDateTime()> wall_clock_;  // apart from what the plug-in reads
  const Recording* recording_ = nullptr;
  std::unordered_map<std::string, std::vector<std::size_t>> recorded_;  // by command line
  std::unordered_map<std::string, std::size_t> replayed_;               // how often each
  std::optional<Clock::time_point> begin_;
  std::size_t output_bytes_ = 0;
  std::vector<RunRecord> records_;
  std::unordered_map<std::string, std::size_t> by_command_line_;
  std::vector<RunRequest> requests_;
  std::unordered_map<std::string, int> times_asked_;           // in this attempt
  std::set<std::pair<std::string, int>> refused_;              // command line, which time
  std::map<std::string, int> hangs_;                           // by program
  std::set<std::pair<std::string, int>> hanging_controllers_;  // by program and number
  std::pair<std::string, int> latest_;
};

#endif  // INVENTORY_RUNS_TOOL_RUNS_H_
