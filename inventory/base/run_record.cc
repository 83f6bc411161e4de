#include "inventory/base/run_record.h"

#include <charconv>

const char* NameOf(RunEnd end) {
  switch (end) {
    case RunEnd::kExited:
      return "exited";
    case RunEnd::kSignalled:
      return "signalled";
    case RunEnd::kTimedOut:
      return "timed_out";
    case RunEnd::kOutputLimit:
      return "output_limit";
    case RunEnd::kNotStarted:
      return "not_started";
    case RunEnd::kNotAsked:
      return "not_asked";
    case RunEnd::kLost:
      break;
  }
  return "lost";
}

std::string RunRecord::CommandLine() const {
  std::string line = program;
  for (const std::string& argument : arguments) line.append(" ").append(argument);
  return line;
}

std::string RunRecord::Tool() const { return program.substr(program.rfind('/') + 1); }

std::string RunRecord::Command() const {
  std::string command;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i == 1 && Controller() != 0) continue;
    command.append(command.empty() ? "" : " ").append(arguments[i]);
  }
  return command;
}

int RunRecord::Controller() const {
  int number = 0;
  if (arguments.size() == 3) {
    const std::string& text = arguments[1];
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return 0;
  }
  return number;
}

bool RunRecord::HasFailed() const {
  return end != RunEnd::kExited || (exit_status != 0 && output_bytes == 0);
}
