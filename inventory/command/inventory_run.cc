#include "inventory/command/inventory_run.h"

#include <filesystem>
#include <string>
#include <utility>

#include "inventory/command/collection.h"
#include "inventory/command/exit_status.h"
#include "inventory/command/log_file.h"
#include "inventory/command/messages.h"
#include "inventory/command/output_file.h"
#include "inventory/command/tool_runs.h"
#include "inventory/print/check_line.h"
#include "inventory/print/instance_list.h"
#include "inventory/print/json_printer.h"
#include "inventory/print/mof_printer.h"
#include "inventory/print/text_report.h"
#include "standin/host_services.h"
#include "standin/repository.h"

namespace {

/// "cannot write FILE: WHY"
std::string CannotWrite(const std::filesystem::path& file, const std::string& why) {
  return "cannot write " + file.string() + ": " + why;
}

/// Fills the repository and says how that went.
Report CollectReport(const Options& options, LogFile& log, standin::Repository& repository) {
  standin::ProcessLimits limits;
  limits.time = options.tool_timeout;
  ToolRuns tools(limits, options.verbose);
  standin::HostServices services = standin::Services();
  services.spawn_process = [&tools](const auto& program, const auto& arguments) {
    return tools.Run(program, arguments);
  };
  services.log = [&log](int level, const auto& text) { log.Write(level, text); };
  const standin::ScopedServices in_force(std::move(services));

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
    Complain(CannotWrite(options.log, log.GetError()));
    report.exit_status = kExitOutput;
  }
  return report;
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

}  // namespace

int RunInventory(const Options& options) {
  const auto refuse = [&options](const std::string& why, int exit_status) {
    return Refuse(why, options.format == Format::kCheck, exit_status);
  };
  OutputFile output(options.output);
  if (!output.GetError().empty()) {
    return refuse(CannotWrite(options.output, output.GetError()), kExitOutput);
  }
  LogFile log(options.log);
  if (!log.GetError().empty()) {
    return refuse(CannotWrite(options.log, log.GetError()), kExitOutput);
  }
  std::error_code error;
  if (!options.root.empty()) std::filesystem::current_path(options.root, error);
  if (error) {
    return refuse("cannot work in " + options.root.string() + ": " + error.message(), kExitUsage);
  }

  standin::Repository repository;
  const Report report = CollectReport(options, log, repository);
  const int exit_status = Print(options, report, output);
  output.Finish();
  if (output.GetError().empty()) return exit_status;
  if (!output.IsBrokenPipe()) Complain("cannot write the output: " + output.GetError());
  return kExitOutput;
}
