#ifndef COLLECT_TOOL_RUN_H_
#define COLLECT_TOOL_RUN_H_

#include <string>

/// A command-line tool and how its runs are logged.
struct Tool {
  const char* name;
  /// Logged before each run, directly followed by the controller number and the arguments.
  const char* run_message;
  /// Logged when a run fails, directly followed by the reason.
  const char* abort_message;
};

/// A command word and its option.
struct Command {
  const char* word;
  const char* option;
};

/// The tool's path, relative to the host's working directory.
std::string PathOf(const Tool& tool);

/// Runs the tool once with the arguments command, controller number and option.
///
/// Returns all that it printed. A run that fails with the host's exception is logged and gives "";
/// other exceptions pass. Logs to the core logger at level 3.
std::string RunTool(const Tool& tool, const std::string& command, const std::string& option,
                    int controller_number);

/// Writes one message to the core logger, at the one level that the plug-in uses.
void LogMessage(const std::string& text);

/// Tools number their controllers from 1; no tool tells how many there are.
inline constexpr int kFirstController = 1;
inline constexpr int kLastController = 8;

#endif  // COLLECT_TOOL_RUN_H_
