#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>

#include "inventory/command/collection.h"
#include "inventory/command/ending_signals.h"
#include "inventory/command/exit_status.h"
#include "inventory/command/log_file.h"
#include "inventory/command/options.h"
#include "inventory/command/output_file.h"
#include "inventory/command/terminal.h"
#include "inventory/command/tool_monitor.h"
#include "inventory/print/check_line.h"
#include "inventory/print/instance_list.h"
#include "inventory/print/json_printer.h"
#include "inventory/print/mof_printer.h"
#include "inventory/print/text_report.h"
#include "standin/host_services.h"
#include "standin/repository.h"

namespace {

// Started without one of the standard descriptors, the next file to be opened would take its place.
// The stand-ins fail on writing, as a closed descriptor does.
void FillStandardDescriptors() {
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDONLY);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
}

// What a caller may have left behind: with SIGCHLD ignored the ends of the tools would be lost, and
// with signals blocked nothing could end this program in time.
void ResetSignals() {
  signal(SIGCHLD, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Returns the exit status, which only a check has a say in.
int Print(const Options& options, const Report& report, OutputFile& output) {
  switch (options.format) {
    case Format::kText: {
      const Display display = FindDisplay(options.color, !options.output.empty());
      if (options.all_classes) {
        PrintText(report, std::filesystem::current_path().string(), display, output);
      } else {
        PrintInstances(report, display, output);
      }
      break;
    }
    case Format::kJson:
      PrintJson(report, output);
      break;
    case Format::kMof:
      PrintMof(report, output);
      break;
    case Format::kCheck:
      return PrintCheck(report, output);
  }
  return report.exit_status;
}

int Run(const Options& options) {
  const bool is_check = options.format == Format::kCheck;
  OutputFile output(options.output);
  if (!output.GetError().empty()) {
    return Refuse("cannot write " + options.output.string() + ": " + output.GetError(), is_check,
                  kExitOutput);
  }
  LogFile log(options.log);
  if (!log.GetError().empty()) {
    return Refuse("cannot write " + options.log.string() + ": " + log.GetError(), is_check,
                  kExitOutput);
  }

  if (!options.root.empty()) {
    std::error_code error;
    std::filesystem::current_path(options.root, error);
    if (error) {
      return Refuse("cannot work in " + options.root.string() + ": " + error.message(), is_check,
                    kExitUsage);
    }
  }

  standin::ProcessLimits limits;
  limits.time = options.tool_timeout;
  ToolMonitor tools(limits, options.verbose);
  standin::Services().spawn_process = [&tools](const auto& program, const auto& arguments) {
    return tools.Run(program, arguments);
  };
  standin::Services().log = [&log](int level, const auto& text) { log.Write(level, text); };

  standin::Repository repository;
  const Collection collection = Collect(options, repository, tools);
  tools.GetProgress().Clear();

  Report report{standin::Services().get_machine_name(), kExitAnswered, tools.GetProblems(),
                repository, collection.latest_pass};
  for (const Problem& failure : collection.failures) {
    Complain(failure.what + ": " + failure.why);
    report.problems.push_back(failure);
    report.exit_status = kExitFailed;
  }
  if (!log.GetError().empty()) {
    Complain("cannot write " + options.log.string() + ": " + log.GetError());
    report.exit_status = kExitOutput;
  }

  const int exit_status = Print(options, report, output);
  output.Finish();
  if (!output.GetError().empty()) {
    if (!output.IsBrokenPipe()) Complain("cannot write the output: " + output.GetError());
    return kExitOutput;
  }
  return exit_status;
}

}  // namespace

int main(int argc, char** argv) {
  FillStandardDescriptors();
  ResetSignals();
  std::optional<Options> options;
  try {
    int exit_status = kExitAnswered;
    options = ParseOptions(argc, argv, exit_status);
    if (!options) return exit_status;
    CleanUpOnSignals();
    return Run(*options);
  } catch (const std::exception& error) {
    return Refuse(error.what(), options && options->format == Format::kCheck, kExitFailed);
  }
}
