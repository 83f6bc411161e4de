#include "inventory/print/check_line.h"

#include <algorithm>

#include "inventory/base/readable.h"
#include "inventory/machine/health.h"
#include "inventory/machine/read_machine.h"

namespace {

// A line has to stay readable in a message, and whole: some agents cut long ones.
constexpr std::size_t kFindingsNamed = 8;
constexpr std::size_t kLongestFinding = 200;

/// One line, in which a bar would begin the performance data.
std::string Line(CheckStatus status, const std::string& text, const std::string& performance) {
  static constexpr const char* kNames[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
  std::string line = std::string("KRAID ") + kNames[status] + " - " + Readable(text);
  std::replace(line.begin(), line.end(), '|', '/');
  return line + performance + "\n";
}

std::string Performance(const Machine& machine, const Health& health) {
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

std::string Shortened(std::string text) {
  if (text.size() <= kLongestFinding) return text;
  std::size_t end = kLongestFinding;
  while ((text[end] & '\xC0') == '\x80') --end;  // not within a character
  return text.substr(0, end) + "...";
}

/// "2 critical, 3 warnings: first; second"
std::string Describe(const std::vector<Finding>& findings, std::size_t critical) {
  std::string text = std::to_string(critical) + " critical, " +
                     Counted(findings.size() - critical, "warning") + ": ";
  for (std::size_t i = 0; i < std::min(findings.size(), kFindingsNamed); ++i) {
    if (i > 0) text += "; ";
    text += Shortened(findings[i].where + ": " + findings[i].what);
  }
  if (findings.size() > kFindingsNamed) {
    text += "; and " + std::to_string(findings.size() - kFindingsNamed) + " more";
  }
  return text;
}

}  // namespace

CheckStatus PrintCheck(const Report& report, Sink& output) {
  const Machine machine = ReadMachine(report);
  Health health = Assess(machine);
  std::string unknown;
  bool is_blind = false;  // to all that a tool would have told
  for (const Problem& problem : report.problems) {
    switch (problem.extent) {
      case Problem::Extent::kAbsentTool:
        break;
      case Problem::Extent::kCollection:
        unknown += Shortened(problem.what + ": " + problem.why) + "; ";
        break;
      case Problem::Extent::kTool:
        is_blind = true;
        [[fallthrough]];
      case Problem::Extent::kRuns:
        health.findings.push_back({Severity::kWarning, problem.what, problem.why});
        break;
    }
  }
  if (machine.controllers.empty()) unknown += "no controller was found; ";

  CheckStatus status = kCheckOk;
  std::string text = machine.DescribeCounts() + ", all fine";
  if (!health.findings.empty()) {
    status = health.critical > 0 ? kCheckCritical : kCheckWarning;
    text = Describe(health.findings, health.critical);
  }
  if (is_blind && status != kCheckCritical) status = kCheckUnknown;
  if (!unknown.empty()) {
    text = health.findings.empty() ? unknown.substr(0, unknown.size() - 2) : unknown + text;
    status = kCheckUnknown;
  }
  output.Write(Line(status, text, Performance(machine, health)));
  return status;
}

std::string UnknownCheckLine(const std::string& why) { return Line(kCheckUnknown, why, ""); }
