#include "inventory/print/collection_metrics.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "inventory/base/program.h"
#include "inventory/base/times.h"

namespace {

// Each of these enumerations begins with 0 and ends here.
constexpr std::size_t kEnds = static_cast<std::size_t>(RunEnd::kLost) + 1;
constexpr std::size_t kKinds = static_cast<std::size_t>(ProblemKind::kCollectionFailed) + 1;
// What comes behind is found by comparing only.
constexpr std::size_t kReasons = static_cast<std::size_t>(ReasonCode::kUnreadable) + 1;

/// A machine may have thousands of problems; whoever reads these wants to know where to begin.
constexpr std::size_t kProblemsNamed = 10;

using Seconds = std::chrono::duration<double>;

void WriteStart(const NKVXHMZ20::TCIMDateTime& time, OpenMetricsWriter& metrics) {
  metrics.Family("kraid_build_info", "The program that collected.");
  metrics.Sample(MetricLabels().With("version", kProgramVersion), 1);
  if (const auto start = ToInstant(time)) {
    metrics.Family("kraid_collection_start_time_seconds",
                   "When the collection began, since the epoch.");
    metrics.Sample({}, Seconds(start->utc.time_since_epoch()).count());
  }
}

void WriteComplete(bool is_complete, OpenMetricsWriter& metrics) {
  metrics.Family("kraid_collection_complete",
                 "1 where all that the tools know was collected, of one controller at least.");
  metrics.Sample({}, is_complete ? 1 : 0);
}

void WriteRuns(const std::vector<RunRecord>& runs, OpenMetricsWriter& metrics) {
  std::map<std::string, std::array<std::size_t, kEnds>> tools;
  for (const RunRecord& run : runs) ++tools[run.Tool()][static_cast<std::size_t>(run.end)];
  metrics.Family("kraid_collection_runs", "Runs of a tool in this collection, by how they ended.");
  DistinctNames names;
  for (const auto& [tool, counts] : tools) {
    const MetricLabels labels = MetricLabels().With("tool", names.Take(tool));
    for (std::size_t end = 0; end < kEnds; ++end) {
      const std::string_view outcome = NameOf(static_cast<RunEnd>(end));
      metrics.Sample(labels.With("outcome", outcome), static_cast<double>(counts[end]));
    }
  }
}

void WriteProblems(const std::vector<Problem>& problems, OpenMetricsWriter& metrics) {
  std::array<std::size_t, kKinds> counts{};
  // Where several are told apart by nothing that is named, they are one.
  std::set<std::tuple<std::string, std::string, std::string>> named;
  for (const Problem& problem : problems) {
    ++counts[static_cast<std::size_t>(problem.kind)];
    if (IsLoss(problem) && named.size() < kProblemsNamed) {
      named.emplace(NameOf(problem.kind), problem.what, problem.why);
    }
  }
  metrics.Family("kraid_collection_problems", "What was not collected, by its kind.");
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    const std::string_view name = NameOf(static_cast<ProblemKind>(kind));
    metrics.Sample(MetricLabels().With("kind", name), static_cast<double>(counts[kind]));
  }
  metrics.Family("kraid_collection_problem_info", "The first things that were not collected.");
  DistinctNames names;
  for (const auto& [kind, what, why] : named) {
    metrics.Sample(
        MetricLabels().With("kind", kind).With("what", names.Take(what)).With("why", why), 1);
  }
}

void WriteFindings(const Machine& machine, OpenMetricsWriter& metrics) {
  std::array<std::array<std::size_t, kReasons>, 3> counts{};  // by severity
  for (const Finding& finding : machine.findings) {
    for (const Reason& reason : finding.reasons) {
      ++counts[static_cast<std::size_t>(reason.severity)][static_cast<std::size_t>(reason.code)];
    }
  }
  metrics.Family("kraid_findings", "What needs attention, by severity and reason.");
  for (const Severity severity : {Severity::kWarning, Severity::kCritical}) {
    const MetricLabels labels = MetricLabels().With("severity", NameOf(severity));
    for (std::size_t code = 0; code < kReasons; ++code) {
      const std::string_view reason = NameOf(static_cast<ReasonCode>(code));
      metrics.Sample(labels.With("reason", reason),
                     static_cast<double>(counts[static_cast<std::size_t>(severity)][code]));
    }
  }
}

}  // namespace

void WriteCollectionMetrics(const Report& report, const Machine& machine,
                            OpenMetricsWriter& metrics) {
  WriteStart(report.collected_at, metrics);
  metrics.Family("kraid_machine_info", "The machine, by its own name.");
  metrics.Sample(MetricLabels().With("host", report.host), 1);
  metrics.Family("kraid_collection_duration_seconds", "How long the collection took.");
  metrics.Sample({}, Seconds(report.duration).count());
  // As for a check: no controller at all is more likely one that hides.
  WriteComplete(!machine.controllers.empty() &&
                    std::none_of(report.problems.begin(), report.problems.end(), IsLoss),
                metrics);
  WriteProblems(report.problems, metrics);
  WriteRuns(report.runs, metrics);
  WriteFindings(machine, metrics);
  const struct {
    const char* name;
    const char* help;
    std::size_t count;
  } counts[] = {
      {"kraid_controllers", "Controllers that were found.", machine.controllers.size()},
      {"kraid_logical_drives", "Logical drives that were found.", machine.CountLogicalDrives()},
      {"kraid_devices", "Devices that were found.", machine.CountDevices()},
      {"kraid_manager_log_entries", "Entries in the RAID manager's log.",
       machine.manager_log.count},
  };
  for (const auto& count : counts) {
    metrics.Family(count.name, count.help);
    metrics.Sample({}, static_cast<double>(count.count));
  }
}

void WriteFailedCollection(const std::string& why, const NKVXHMZ20::TCIMDateTime& time,
                           OpenMetricsWriter& metrics) {
  WriteStart(time, metrics);
  WriteComplete(false, metrics);
  WriteProblems({{"the collection", why, ProblemKind::kCollectionFailed}}, metrics);
}
