#ifndef INVENTORY_BASE_RUN_RECORD_H_
#define INVENTORY_BASE_RUN_RECORD_H_

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hmz/cim_date_time.h"

/// How a run of a tool ended.
enum class RunEnd {
  kExited,       ///< By itself, with whatever exit status.
  kSignalled,    ///< By a signal that this program did not send.
  kTimedOut,     ///< Stopped at its time limit.
  kOutputLimit,  ///< Stopped at its output limit.
  kNotStarted,   ///< The system could not start it.
  kNotAsked,     ///< Not started on purpose: what went before had used up its bounds.
  kUntrusted,    ///< Not started on purpose: not only root could have put the tool there.
  kLost,         ///< It ended, but nobody knows how.
};

/// "exited", "signalled", ...: as documents name it.
const char* NameOf(RunEnd end);
std::optional<RunEnd> FindRunEnd(std::string_view name);

/// One run of a tool, as it was.
struct RunRecord {
  std::string program;  ///< Its path, as the plug-in gave it.
  std::vector<std::string> arguments;
  NKVXHMZ20::TCIMDateTime started;  ///< Wall clock.
  std::chrono::milliseconds duration{};
  RunEnd end = RunEnd::kExited;
  int exit_status = 0;           ///< Of kExited.
  int signal = 0;                ///< Of kSignalled.
  std::string reason;            ///< Why it failed, for a person; "" when it ended by itself.
  std::size_t output_bytes = 0;  ///< Of standard output, as far as it was read.
  std::size_t error_bytes = 0;   ///< Of standard error.
  std::string error_output;      ///< Its beginning, at most 4 KiB.
  std::string last_error_line;   ///< The last one with something on it.
  /// Standard output, byte for byte; empty when the run failed.
  std::shared_ptr<const std::string> output = std::make_shared<std::string>();
  std::vector<std::string> left_behind;  ///< What was ended after it, each by its name.
  bool is_tool_absent = false;           ///< Nothing was at the program's path.
  /// For a recording, and else empty: standard output also where the run failed (its beginning
  /// then), and standard error as far as the host keeps it.
  std::shared_ptr<const std::string> whole_output = std::make_shared<std::string>();
  std::shared_ptr<const std::string> whole_error_output = std::make_shared<std::string>();
  /// Why the plug-in cannot read what it printed, for a person; "" as long as it can.
  std::string why_unreadable;

  /// "./kraid/kelvcmd getconfig 2 al"
  std::string CommandLine() const;
  /// "kelvcmd"
  std::string Tool() const;
  /// "getconfig al"; all arguments when they are not the usual three.
  std::string Command() const;
  /// The tool's number of the controller; 0 when there is none.
  int Controller() const;
  /// Takes the beginning and the last line of it.
  void SetErrorOutput(const std::string& whole);
  /// Whether nothing came of it: it did not end by itself, or with a status other than 0 and
  /// nothing on standard output.
  bool HasFailed() const;
};

/// One request of the plug-in and the run that answered it.
struct RunRequest {
  std::size_t record = 0;   ///< Its index.
  bool is_refused = false;  ///< Answered as a failed run, since the plug-in threw over it before.
};

#endif  // INVENTORY_BASE_RUN_RECORD_H_
