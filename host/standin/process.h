#ifndef STANDIN_PROCESS_H_
#define STANDIN_PROCESS_H_

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "hmz/api.h"

namespace standin {

/// What one run of a program may use.
struct ProcessLimits {
  std::chrono::milliseconds time{std::chrono::seconds{300}};
  std::size_t output_bytes = std::size_t{64} << 20;
  /// Between asking a program to end and ending it.
  std::chrono::milliseconds grace{std::chrono::seconds{2}};
  /// A descriptor of the file to execute, so that nothing else can take its place; -1 for whatever
  /// is at the program's path. The path is the program's name in either case.
  int executable = -1;
};

enum class ProcessEnd {
  kExited,       ///< By itself.
  kSignalled,    ///< By a signal of somebody else's.
  kTimedOut,     ///< Stopped at its time limit.
  kOutputLimit,  ///< Stopped at its output limit.
  kNotStarted,   ///< The system could not start it.
  kLost,         ///< Its output could not be read, or its exit status is not to be had.
};

/// How a run ended.
struct ProcessResult {
  ProcessEnd end = ProcessEnd::kExited;
  /// Standard output, byte for byte: whole when `failure` is empty.
  std::string output;
  /// Standard error: its beginning and its end, with a note between them of what is left out.
  std::string error_output;
  /// How many bytes of it there were.
  std::size_t error_bytes = 0;
  /// Of a program that ended by itself.
  int exit_status = 0;
  /// Of one that a signal ended.
  int signal = 0;
  /// "" when the program ran and ended by itself, whatever its exit status. Otherwise the reason,
  /// for a person, beginning with the program's path.
  std::string failure;
  /// It was killed and goes on all the same: it hangs inside the kernel, or is not ours to kill.
  bool has_outlived_killing = false;
  int pid = 0;  ///< Of the run, which is over unless it has outlived that; 0 when it never began.
  /// For how long the host was suspended meanwhile, which is no time of the run's.
  std::chrono::milliseconds suspended{};
  /// What the run left behind in other sessions, by name. For callers that look for it: RunProcess
  /// does not.
  std::vector<std::string> left_behind;
};

/// Runs `program`, a path without a search, with exactly `arguments`, and waits for its end.
///
/// The child gets the null device as standard input, only descriptors 0 to 2, default signal
/// dispositions, an empty signal mask, a session of its own, so no terminal, and an environment of
/// PATH, HOME, LANG, LC_ALL=C and the host's TZ. There is one run at a time: a call from a second
/// thread waits for its turn, and its time counts from there.
HMZ_API ProcessResult RunProcess(const std::string& program,
                                 const std::vector<std::string>& arguments,
                                 const ProcessLimits& limits);

/// Ends the run in progress, if there is one, with all its session's process group. Meant for the
/// signal handlers of a program that is about to end: it is async-signal-safe.
HMZ_API void KillRunningProcess() noexcept;

}  // namespace standin

#endif  // STANDIN_PROCESS_H_
