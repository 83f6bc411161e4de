#include "inventory/base/run_record.h"

#include <charconv>

namespace {

constexpr std::size_t kKeptErrorBytes = std::size_t{4} << 10;

std::string LastLine(std::string_view text) {
  const auto end = text.find_last_not_of(" \t\r\n");
  if (end == std::string_view::npos) return "";
  text = text.substr(0, end + 1);
  return std::string(text.substr(text.rfind('\n') + 1));
}

}  // namespace

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
    case RunEnd::kUntrusted:
      return "untrusted";
    case RunEnd::kLost:
      break;
  }
  return "lost";
}

std::optional<RunEnd> FindRunEnd(std::string_view name) {
  for (int end = 0; end <= static_cast<int>(RunEnd::kLost); ++end) {
    if (name == NameOf(static_cast<RunEnd>(end))) return static_cast<RunEnd>(end);
  }
  return std::nullopt;
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

void RunRecord::SetErrorOutput(const std::string& whole) {
  last_error_line = LastLine(whole);
  error_output = whole.substr(0, kKeptErrorBytes);
}
