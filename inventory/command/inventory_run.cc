#include "inventory/command/inventory_run.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "inventory/base/times.h"
#include "inventory/command/class_list.h"
#include "inventory/command/collection.h"
#include "inventory/command/collection_lock.h"
#include "inventory/command/ending_signals.h"
#include "inventory/command/exit_status.h"
#include "inventory/command/file_place.h"
#include "inventory/command/log_file.h"
#include "inventory/command/messages.h"
#include "inventory/command/output_file.h"
#include "inventory/command/progress_line.h"
#include "inventory/machine/compare.h"
#include "inventory/machine/read_machine.h"
#include "inventory/machine/selection.h"
#include "inventory/machine/unread_lines.h"
#include "inventory/print/check_line.h"
#include "inventory/print/document_reader.h"
#include "inventory/print/openmetrics_printer.h"
#include "inventory/runs/left_processes.h"
#include "inventory/runs/recording.h"
#include "inventory/runs/recording_reader.h"
#include "inventory/runs/recording_writer.h"
#include "inventory/runs/run_problems.h"
#include "inventory/runs/sanitize.h"
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
  std::vector<Problem> failures;  ///< Of the plug-in or the host.
  std::optional<Comparison> comparison = {};
};

/// Where the results go besides standard output.
struct Places {
  explicit Places(const Options& options)
      : output(FindPlace(options.output)),
        log(FindPlace(options.log)),
        record(FindPlace(options.record.has_filename() ? options.record
                                                       : options.record.parent_path())) {}

  FilePlace output;
  FilePlace log;
  FilePlace record;
};

std::string WhyReplaced(const std::filesystem::path& file) {
  return "--record replaces the folder that " + file.string() + " is in";
}

/// Why the output would destroy another result, or go with one; "" when it does not.
std::string FindOutputClash(const Options& options, const Places& places) {
  if (AreInConflict(places.output, places.log)) return "--log and --output name the same file";
  return IsInside(places.output, places.record) ? WhyReplaced(options.output) : "";
}

/// The same of the log, which metrics can still tell.
std::string FindLogClash(const Options& options, const Places& places) {
  if (AreInConflict(FindPlace(options.earlier), places.log)) {
    return "--log names the document to compare with";
  }
  return IsInside(places.log, places.record) ? WhyReplaced(options.log) : "";
}

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
      ShowRun(record);
    };
  }
  // A recording is for others, too.
  if (options.output.empty() && options.record.empty()) observer.why_stop = WhyNobodyReads;
  return observer;
}

/// What only the end of a collection shows: adds it to the report. Returns what was lost, in words.
std::vector<std::string> AddProblems(const Options& options, Outcome& outcome) {
  Report& report = *outcome.report;
  std::vector<Problem>& problems = report.problems;
  std::vector<std::string> losses;
  problems.insert(problems.end(), outcome.failures.begin(), outcome.failures.end());
  for (const Problem& problem : problems) {
    if (problem.kind == ProblemKind::kOutputUnreadable ||
        problem.kind == ProblemKind::kLogUnreadable ||
        problem.kind == ProblemKind::kRepositoryFull ||
        problem.kind == ProblemKind::kPluginFailed ||
        (problem.kind == ProblemKind::kToolUntrusted && problem.tool.empty())) {
      losses.push_back(problem.what + ": " + problem.why);
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
  if (!options.all_classes) return losses;
  const std::vector<Problem> unread = FindUnreadLines(report, outcome.machine);
  problems.insert(problems.end(), unread.begin(), unread.end());
  return losses;
}

/// Runs the plug-in with these services and runs behind it.
Outcome CollectOutcome(const Options& options, standin::HostServices services, ToolRuns& tools,
                       LogFile& log) {
  services.spawn_process = [&tools](const auto& program, const auto& arguments) {
    return tools.Run(program, arguments);
  };
  services.log = [&log](int level, const auto& text) { log.Write(level, text); };
  std::map<std::string, Problem> cuts;  // by path
  services.file_cut = [&cuts, next = services.file_cut](const standin::FileCut& cut) {
    cuts[cut.path] = DescribeCut(cut);
    next(cut);
  };
  const std::string host = services.get_machine_name();
  const standin::ScopedServices in_force(std::move(services));
  Collection collection = Collect(options, tools);
  Outcome outcome{std::move(collection.repository), nullptr, {}, std::move(collection.failures)};
  outcome.report = std::make_unique<Report>(
      Report{host, kExitAnswered, FindRunProblems(tools.GetRecords()), *outcome.repository,
             collection.latest_pass, tools.GetRecords(), tools.GetRequests()});
  for (const auto& [path, problem] : cuts) outcome.report->problems.push_back(problem);
  return outcome;
}

/// Collects from the machine within `limit`; into the recording as well, where one is made.
Outcome CollectHere(const Options& options, std::optional<std::chrono::milliseconds> limit,
                    LogFile& log, Recording* recording) {
  RunBounds bounds;
  bounds.run.time = options.tool_timeout;
  bounds.collection = limit;
  bounds.asked = options.timeout;
  bounds.keeps_all = recording != nullptr;
  bounds.trusts_tools = options.trust_tools || geteuid() != 0;
  ProgressLine progress;
  ToolRuns tools(bounds, options.as_host ? Sharing::kOff : Sharing::kOn, Observe(options, progress),
                 RunAndEndAll);
  Recorder recorder;
  standin::HostServices services = standin::Services();
  const auto collected_at = services.get_local_time();
  const auto start = Clock::now();
  if (recording != nullptr) services = recorder.Watch(std::move(services));
  Outcome outcome = CollectOutcome(options, std::move(services), tools, log);
  progress.Clear();

  Report& report = *outcome.report;
  report.collected_at = collected_at;
  report.duration = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
  std::error_code gone;
  report.root = std::filesystem::current_path(gone).string();
  if (recording != nullptr) {
    *recording = {report.host,         report.root,         options.as_host,
                  options.passes,      collected_at,        report.duration,
                  recorder.GetClock(), recorder.GetFiles(), tools.GetRecords()};
  }
  return outcome;
}

/// The same once more, of a recording.
Outcome Replay(Options options, const Recording& recording, LogFile& log) {
  options.as_host = recording.as_host;
  options.passes = recording.passes;
  RunObserver observer;
  if (options.verbose) observer.after = ShowRun;
  ToolRuns tools(recording, std::move(observer));
  Outcome outcome = CollectOutcome(options, ReplayServices(recording), tools, log);
  outcome.report->collected_at = recording.collected_at;
  outcome.report->duration = recording.duration;
  outcome.report->root = recording.root;
  return outcome;
}

/// Why a recording is not to be shown; "" when it is.
std::string WhyTooOld(const Recording& recording, const Options& options) {
  if (!options.max_age) return "";
  const auto made = ToInstant(recording.collected_at);
  // In microseconds, which all years have room in.
  const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
  const auto age = now - made.value_or(Instant{}).utc;
  // One from the future says as little of its age.
  if (std::chrono::abs(age) <= *options.max_age) return "";
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(age).count();
  return options.replay.string() + " was recorded at " + Rfc3339(recording.collected_at) + ", " +
         std::to_string(std::abs(seconds)) + " s " + (seconds < 0 ? "from now" : "ago");
}

/// What is shown, from wherever it comes, and its recording where one is made.
struct Source {
  explicit Source(const Options& options)
      : is_recorded(options.sanitize || !options.record.empty()) {}

  bool is_recorded;
  Recording recording;
};

Outcome TakeOutcome(const Options& options, std::optional<std::chrono::milliseconds> limit,
                    LogFile& log, Source& source) {
  if (options.replay.empty()) {
    // Nothing of what is to be hidden may be shown: all is done once more without it.
    LogFile none{FilePlace()};
    Options quiet = options;
    quiet.verbose = quiet.verbose && !options.sanitize;
    Outcome outcome = CollectHere(quiet, limit, options.sanitize ? none : log,
                                  source.is_recorded ? &source.recording : nullptr);
    if (!options.sanitize) return outcome;
  }
  if (options.sanitize) Sanitize(options.sanitize_key, source.recording);
  return Replay(options, source.recording, log);
}

/// Takes the lock, and what that took off the limit. Returns why there is none.
std::string WaitForLock(CollectionLock& lock, std::optional<std::chrono::milliseconds>& limit) {
  ProgressLine progress;
  std::error_code ignored;
  return lock.Take(std::filesystem::current_path(ignored), limit, [&progress](const auto& holder) {
    progress.Show("waiting for another collection here, of " + holder);
  });
}

/// The machine of the document that is to be compared with, where there is one.
std::optional<EarlierMachine> ReadEarlier(const Options& options) {
  if (options.earlier.empty()) return std::nullopt;
  return ReadDocument(options.earlier);
}

/// Returns the exit status, which only a check has a say in.
int Print(const Options& options, const Outcome& outcome, OutputFile& output) {
  ViewOptions view;
  view.display = FindDisplay(options.color, !options.output.empty());
  view.is_brief = options.brief;
  view.is_verbose = options.verbose;
  view.runs = options.runs;
  view.has_instances = options.instances;
  view.is_whole = options.all_classes;
  const Comparison* comparison = outcome.comparison ? &*outcome.comparison : nullptr;
  return options.view({*outcome.report, outcome.machine, comparison}, view, output);
}

bool AreMetrics(const Options& options) { return options.view == PrintOpenMetrics; }

/// Takes the recording that is to be shown, or the lock for collecting one.
void Begin(const Options& options, Source& source, CollectionLock& lock,
           std::optional<std::chrono::milliseconds>& limit) {
  std::string why;
  if (!options.replay.empty()) {
    source.recording = ReadRecording(options.replay);
    why = WhyTooOld(source.recording, options);
  } else if (options.lock) {
    why = WaitForLock(lock, limit);
  }
  if (!why.empty()) throw Refusal(why, kExitFailed);
}

/// Returns the folder of the recording that is to be made; "" for none.
std::filesystem::path FindRecord(const Options& options, const FilePlace& place) {
  if (options.record.empty()) return {};
  std::string why = place.error;
  if (why.empty()) why = WhyNoRecordingFits(options.record);
  if (!why.empty()) throw Refusal(CannotWrite(options.record, why), kExitOutput);
  return PathOf(place);
}

void Record(const Options& options, const Recording& recording, const std::filesystem::path& folder,
            Report& report) {
  const std::string why = WriteRecording(recording, folder);
  if (why.empty()) return;
  const std::string text = CannotWrite(options.record, why);
  if (!AreMetrics(options)) throw Refusal(text, kExitOutput);
  // What was found is worth more to those who watch a fleet than that it is not kept.
  Complain(text);
  report.problems.push_back({options.record.string(), why, ProblemKind::kCollectionFailed});
  report.exit_status = kExitOutput;
}

/// Prints what is asked for, and finishes the output. Returns the exit status.
int PrintAll(const Options& options, Outcome& outcome, OutputFile& output) {
  SayWhenASignalEnds("");
  if (!options.controllers.empty()) {
    const std::string missing = SelectControllers(
        options.controllers, outcome.machine, outcome.comparison ? &*outcome.comparison : nullptr);
    if (!missing.empty()) throw Refusal(missing, kExitFailed);
    SelectProblems(outcome.machine, outcome.report->problems);
  }
  const int exit_status = Print(options, outcome, output);
  output.Finish();
  if (output.GetError().empty()) return exit_status;
  if (!options.output.empty()) {
    throw Refusal(CannotWrite(options.output, output.GetError()), kExitOutput);
  }
  if (!output.IsBrokenPipe()) Complain("cannot write the output: " + output.GetError());
  return kExitOutput;
}

/// Collects and prints, when it is known where to. Returns the exit status.
int Answer(const Options& options, const Places& places, OutputFile& output) {
  const std::string clash = FindLogClash(options, places);
  if (!clash.empty()) throw Refusal(clash, kExitOutput);
  LogFile log(places.log);
  if (!log.GetError().empty()) {
    throw Refusal(CannotWrite(options.log, log.GetError()), kExitOutput);
  }
  const std::filesystem::path record = FindRecord(options, places.record);
  std::optional<EarlierMachine> earlier = ReadEarlier(options);
  std::error_code error;
  if (!options.root.empty()) std::filesystem::current_path(options.root, error);
  if (error) {
    throw Refusal("cannot work in " + options.root.string() + ": " + error.message(), kExitUsage);
  }

  Source source(options);
  CollectionLock lock;
  auto limit = options.timeout;
  Begin(options, source, lock, limit);
  Outcome outcome = TakeOutcome(options, limit, log, source);
  outcome.machine = ReadMachine(*outcome.report, options.log_entries);
  const std::vector<std::string> losses = AddProblems(options, outcome);
  if (!options.is_check) std::for_each(losses.begin(), losses.end(), Complain);
  if (earlier) {
    const Report& report = *outcome.report;
    outcome.comparison =
        Compare(std::move(*earlier), outcome.machine, report.host, report.problems);
  }
  if (!log.GetError().empty()) {
    Complain(CannotWrite(options.log, log.GetError()));
    outcome.report->exit_status = kExitOutput;
  }
  if (!record.empty()) Record(options, source.recording, record, *outcome.report);
  const int exit_status = PrintAll(options, outcome, output);
  // A check's line goes first, as with Refuse().
  if (options.is_check) std::for_each(losses.begin(), losses.end(), Complain);
  return exit_status;
}

std::string MetricsOfNothingNow(const std::string& why) {
  return MetricsOfNothing(why, standin::Services().get_local_time());
}

/// What a command line names may have gone since yesterday, and then its file is as old.
void WriteMetricsOfWrongUsage(const std::optional<Options>& options) {
  if (!options) return;
  Places places(*options);
  // It is not to destroy what another result is, or was.
  if (!FindOutputClash(*options, places).empty()) return;
  OutputFile output(std::move(places.output));
  output.Write(MetricsOfNothingNow("the command line is wrong, or what it names is not there"));
  output.Finish();
  if (!output.GetError().empty()) Complain(CannotWrite(options->output, output.GetError()));
}

/// Why the exception was thrown that is being handled.
std::string WhyThrown() {
  try {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an unknown exception";
  }
}

}  // namespace

int RunInventory(const Options& options) {
  if (options.is_check) {
    SayWhenASignalEnds(UnknownCheckLine("a signal ended the check before it had an answer"));
  }
  Places places(options);
  const std::string clash = FindOutputClash(options, places);
  if (!clash.empty()) throw Refusal(clash, kExitOutput);
  const bool is_standard_output =
      options.output.empty() || places.output.descriptor == STDOUT_FILENO;
  OutputFile output(std::move(places.output));
  if (AreMetrics(options)) {
    // What a server still reads has to go, as it looks like an answer.
    const std::string why = "a signal ended the collection";
    if (is_standard_output) SayWhenASignalEnds(MetricsOfNothingNow(why));
    output.SetLastWords(MetricsOfNothingNow(why + ", or there was no room for its metrics"));
  }
  if (!output.GetError().empty()) {
    throw Refusal(CannotWrite(options.output, output.GetError()), kExitOutput);
  }
  try {
    return Answer(options, places, output);
  } catch (...) {
    if (AreMetrics(options) && output.Restart()) {
      output.Write(MetricsOfNothingNow(WhyThrown()));
      output.Finish();
    }
    throw;
  }
}

int RunCommand(int argc, const char* const* argv) {
  int exit_status = kExitFailed;
  std::string why;
  try {
    const std::optional<Options> options = ParseOptions(argc, argv, exit_status);
    if (!options) {
      if (exit_status == kExitUsage) WriteMetricsOfWrongUsage(FindMetricsOptions(argc, argv));
      return exit_status;
    }
    InheritLeftProcesses();
    CleanUpOnSignals();
    return RunInventory(*options);
  } catch (const Refusal& refusal) {
    exit_status = refusal.exit_status;
    why = refusal.what();
  } catch (...) {
    exit_status = kExitFailed;
    why = WhyThrown();
  }
  return Refuse(why, IsCheck(argc, argv), exit_status);
}
