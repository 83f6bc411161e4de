#include "inventory/print/check_line.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "inventory/base/readable.h"

namespace {

// A line has to stay readable in a message, and whole: some agents cut long ones.
constexpr std::size_t kFindingsNamed = 8;
constexpr std::size_t kLongestFinding = 200;

/// One line, in which a bar would begin the performance data.
std::string FormatLine(CheckStatus status, const std::string& text,
                       const std::string& performance) {
  static constexpr const char* kNames[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
  std::string line = std::string("KRAID ") + kNames[status] + " - " + Readable(text);
  std::replace(line.begin(), line.end(), '|', '/');
  return line + performance + "\n";
}

std::string FormatPerformance(const Machine& machine) {
  const HealthCounts health = machine.CountHealth();
  const std::pair<const char*, std::size_t> values[] = {
      {"controllers", machine.controllers.size()},
      {"logical_drives", machine.CountLogicalDrives()},
      {"devices", machine.CountDevices()},
      {"failed_devices", health.failed_devices},
      {"degraded_drives", health.degraded_drives},
      {"predicted_failures", health.predicted_failures},
      {"drives_with_bad_stripes", health.drives_with_bad_stripes},
      {"rebuilds", health.rebuilds},
  };
  std::string text = " |";
  for (const auto& [name, value] : values) {
    text.append(" ").append(name).append("=").append(std::to_string(value)).append(";;;0");
  }
  return text;
}

std::string Truncated(const std::string& whole) {
  std::string text = Readable(whole);
  if (text.size() <= kLongestFinding) return text;
  std::size_t end = kLongestFinding;
  while ((text[end] & '\xC0') == '\x80') --end;  // not within a character
  return text.substr(0, end) + "...";
}

/// "2 critical, 3 warnings: first; second"
std::string DescribeFindings(const CheckVerdict& verdict) {
  const std::vector<Finding>& findings = verdict.findings;
  std::string text = std::to_string(verdict.critical) + " critical, " +
                     Counted(findings.size() - verdict.critical, "warning");
  const std::size_t named = std::min(findings.size(), kFindingsNamed);
  for (std::size_t i = 0; i < named; ++i) {
    text += i == 0 ? ": " : "; ";
    text += Truncated(findings[i].where + ": " + findings[i].What());
  }
  const std::size_t left = findings.size() - named;
  return left == 0 ? text : text + "; and " + std::to_string(left) + " more";
}

std::string Describe(const CheckVerdict& verdict, const Machine& machine) {
  std::string text;
  for (const std::string& unknown : verdict.unknowns) {
    text.append(text.empty() ? "" : "; ").append(Truncated(unknown));
  }
  if (!verdict.findings.empty()) {
    return text.append(text.empty() ? "" : "; ").append(DescribeFindings(verdict));
  }
  return text.empty() ? machine.DescribeCounts() + ", all fine" : text;
}

}  // namespace

int PrintCheck(const ViewInput& input, const ViewOptions& /*options*/, Sink& output) {
  const Machine& machine = input.machine;
  const CheckVerdict verdict = JudgeCheck(machine, input.comparison, input.report.problems);
  output.Write(FormatLine(verdict.status, Describe(verdict, machine), FormatPerformance(machine)));
  return verdict.status;
}

std::string UnknownCheckLine(const std::string& why) { return FormatLine(kCheckUnknown, why, ""); }
