#include "inventory/command/inventory_run.h"

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "inventory/command/class_list.h"
#include "inventory/command/collection.h"
#include "inventory/command/collection_lock.h"
#include "inventory/command/ending_signals.h"
#include "inventory/command/exit_status.h"
#include "inventory/command/log_file.h"
#include "inventory/command/messages.h"
#include "inventory/command/output_file.h"
#include "inventory/command/progress_line.h"
#include "inventory/machine/read_machine.h"
#include "inventory/machine/selection.h"
#include "inventory/machine/unread_lines.h"
#include "inventory/print/check_line.h"
#include "inventory/runs/run_problems.h"
#include "inventory/runs/tool_runs.h"
#include "standin/host_services.h"
#include "standin/repository.h"

namespace {

using Clock = std::chrono::steady_clock;

/// A report and what it is about.
struct Outcome {
  std::unique_ptr<standin::Repository> repository;
  std::unique_ptr<Report> report;
  Machine machine;
};

/// "cannot write FILE: WHY"
std::string CannotWrite(const std::filesystem::path& file, const std::string& why) {
  return "cannot write " + file.string() + ": " + why;
}

/// Why nobody waits for standard output any more; "" as long as somebody does.
std::string WhyNobodyReads() {
  pollfd output = {STDOUT_FILENO, 0, 0};
  const bool is_broken = poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
  return is_broken ? "nobody reads standard output any more" : "";
}

RunObserver Observe(const Options& options, ProgressLine& progress) {
  RunObserver observer;
  observer.before = [&progress, count = 0](const std::string& command_line) mutable {
    progress.Show("run " + std::to_string(++count) + ": " + command_line);
  };
  if (options.verbose) {
    observer.after = [&progress](const RunRecord& record) {
      progress.Clear();
      ShowErrorOutput(record);
    };
  }
  if (options.output.empty()) observer.why_stop = WhyNobodyReads;
  return observer;
}

/// What only the end of a collection shows: adds it to the report and tells what was lost.
void AddProblems(const Options& options, const std::vector<Problem>& failures,
                 const Machine& machine, Report& report) {
  std::vector<Problem>& problems = report.problems;
  problems.insert(problems.end(), failures.begin(), failures.end());
  for (const Problem& problem : problems) {
    if (problem.kind == ProblemKind::kOutputUnreadable ||
        problem.kind == ProblemKind::kPluginFailed) {
      Complain(problem.what + ": " + problem.why);
      report.exit_status = kExitFailed;
    }
  }
  for (const std::string& name : options.classes) {
    const std::string nearest(NearestClass(name));
    if (name == nearest) continue;
    problems.push_back({"class " + name,
                        "the schema has no such class; did you mean " + nearest + "?",
                        ProblemKind::kUnknownClass});
  }
  // Where only some classes were asked for, most of what the tools print is not to show up.
  if (!options.all_classes) return;
  const std::vector<Problem> unread = FindUnreadLines(report, machine);
  problems.insert(problems.end(), unread.begin(), unread.end());
}

/// Collects within `limit`, and says how that went.
Outcome CollectOutcome(const Options& options, std::optional<std::chrono::milliseconds> limit,
                       LogFile& log) {
  RunBounds bounds;
  bounds.run.time = options.tool_timeout;
  bounds.collection = limit;
  ProgressLine progress;
  ToolRuns tools(bounds, options.as_host ? Sharing::kOff : Sharing::kOn,
                 Observe(options, progress));
  standin::HostServices services = standin::Services();
  services.spawn_process = [&tools](const auto& program, const auto& arguments) {
    return tools.Run(program, arguments);
  };
  services.log = [&log](int level, const auto& text) { log.Write(level, text); };
  const standin::ScopedServices in_force(std::move(services));

  const auto collected_at = standin::Services().get_local_time();
  const auto start = Clock::now();
  Collection collection = Collect(options, tools);
  progress.Clear();

  Outcome outcome{std::move(collection.repository), nullptr, {}};
  outcome.report = std::make_unique<Report>(Report{
      standin::Services().get_machine_name(), kExitAnswered, FindRunProblems(tools.GetRecords()),
      *outcome.repository, collection.latest_pass, tools.GetRecords(), tools.GetRequests(),
      collected_at, std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start),
      std::filesystem::current_path().string()});
  outcome.machine = ReadMachine(*outcome.report);
  AddProblems(options, collection.failures, outcome.machine, *outcome.report);
  if (!log.GetError().empty()) {
    Complain(CannotWrite(options.log, log.GetError()));
    outcome.report->exit_status = kExitOutput;
  }
  return outcome;
}

/// Returns the exit status, which only a check has a say in.
int Print(const Options& options, const Outcome& outcome, OutputFile& output) {
  ViewOptions view;
  view.display = FindDisplay(options.color, !options.output.empty());
  view.is_brief = options.brief;
  view.is_verbose = options.verbose;
  view.runs = options.runs;
  view.is_whole = options.all_classes;
  return options.view({*outcome.report, outcome.machine}, view, output);
}

}  // namespace

int RunInventory(const Options& options) {
  const auto refuse = [&options](const std::string& why, int exit_status) {
    return Refuse(why, options.is_check, exit_status);
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

  if (options.is_check) {
    SayWhenASignalEnds(UnknownCheckLine("a signal ended the check before it had an answer"));
  }
  CollectionLock lock;
  auto limit = options.timeout;
  if (options.lock) {
    ProgressLine progress;
    const auto start = Clock::now();
    const std::string why =
        lock.Take(std::filesystem::current_path(error), limit, [&progress](const auto& holder) {
          progress.Show("waiting for another collection here, of " + holder);
        });
    if (!why.empty()) return refuse(why, kExitFailed);
    if (limit)
      *limit -= std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
  }
  Outcome outcome = CollectOutcome(options, limit, log);
  SayWhenASignalEnds("");
  if (!options.controllers.empty()) {
    const std::string missing = SelectControllers(options.controllers, outcome.machine);
    if (!missing.empty()) return refuse(missing, kExitFailed);
    SelectProblems(outcome.machine, outcome.report->problems);
  }
  const int exit_status = Print(options, outcome, output);
  output.Finish();
  if (output.GetError().empty()) return exit_status;
  if (!output.IsBrokenPipe()) Complain("cannot write the output: " + output.GetError());
  return kExitOutput;
}
