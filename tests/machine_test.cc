// What becomes of the published instances, and what is judged to need attention.

#include <gtest/gtest.h>

#include <sstream>

#include "inventory/machine/health.h"
#include "inventory/machine/read_machine.h"
#include "tests/machine_files.h"
#include "tests/print_to.h"

namespace {

using NKVXHMZ20::TCIMDateTime;
using NKVXHMZ20::TCIMValue;

/// The value of a property, of which the end of its name tells the type: "@" is a time, "|" an
/// array of lines, "#" one of numbers.
TCIMValue ValueOf(char type, const std::string& text) {
  if (type == '@') return text.empty() ? TCIMDateTime() : TCIMDateTime(text);
  if (type != '|' && type != '#') return text;
  TCIMValue::Array elements;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, '|');) {
    elements.push_back(type == '|' ? TCIMValue(part) : TCIMValue(std::uint32_t(std::stoul(part))));
  }
  const auto code = type == '|' ? TCIMValue::kString : TCIMValue::kUint32;
  return {TCIMValue::TCIMType(code), elements.size(), elements};
}

/// Commits an instance, "CLASS;PROPERTY=VALUE;PROPERTY=VALUE".
void CommitLine(standin::Repository& repository, const std::string& line) {
  std::istringstream fields(line);
  std::string class_name;
  std::getline(fields, class_name, ';');
  Properties properties;
  for (std::string name, value; std::getline(fields, name, '=');) {
    std::getline(fields, value, ';');
    const TCIMValue typed = ValueOf(name.back(), value);
    properties.emplace_back(name.substr(0, name.find_first_of("@|#")), typed);
  }
  Commit(repository, class_name.c_str(), properties);
}

/// " name=value" for each value that is neither empty nor 0.
std::string Named(std::initializer_list<std::pair<const char*, std::string>> fields) {
  std::string text;
  for (const auto& [name, value] : fields) {
    if (!value.empty() && value != "0") text.append(" ").append(name).append("=").append(value);
  }
  return text;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += "[" + text + "]";
  return joined;
}

std::string Joined(const std::vector<std::pair<std::string, std::string>>& pairs) {
  std::string joined;
  for (const auto& [name, count] : pairs) {
    joined.append("[").append(name).append(" ").append(count).append("]");
  }
  return joined;
}

std::string Logged(std::size_t count, const std::vector<std::string>& last) {
  return std::to_string(count) + Joined(last);
}

std::string DescribeHealth(const Machine& machine) {
  const Health health = Assess(machine);
  std::string text;
  for (const Finding& finding : health.findings) {
    text += finding.severity == Severity::kCritical ? "  CRITICAL " : "  WARNING ";
    text += finding.where + ": " + finding.what + "\n";
  }
  return text + "  =>" +
         Named({{"critical", std::to_string(health.critical)},
                {"failed", std::to_string(health.failed_devices)},
                {"degraded", std::to_string(health.degraded_drives)},
                {"predicted", std::to_string(health.predicted_failures)},
                {"with_bad_stripes", std::to_string(health.drives_with_bad_stripes)},
                {"rebuilds", std::to_string(health.rebuilds)}}) +
         "\n";
}

std::string Describe(const Device& d) {
  const std::string counters = Joined(d.counters);
  return "device " + d.place +
         Named({{"size", d.size}, {"model", d.model}, {"counters", counters}}) + "\n";
}

std::string Describe(const Controller& c) {
  std::string text = "  controller" +
                     Named({{"number", c.number},
                            {"type", c.type},
                            {"tool", c.tool},
                            {"shares_number", c.shares_number ? "yes" : ""},
                            {"battery", c.battery_status},
                            {"firmware", c.firmware},
                            {"stray_bad_stripes", Joined(c.stray_bad_stripes)},
                            {"ddd", Logged(c.ddd_count, c.last_ddd)},
                            {"soft", Logged(c.soft.count, c.soft.last)},
                            {"hard", Logged(c.hard.count, c.hard.last)}}) +
                     "\n";
  for (const DriveGroup& group : c.groups) {
    const std::string absent = Joined(group.absent_places);
    const std::string shared = Joined(group.shared_places);
    text += "    group" + Named({{"array", group.array}, {"absent", absent}, {"shared", shared}});
    for (const std::size_t i : group.logical_drives) {
      const LogicalDrive& d = c.logical_drives[i];
      text += "\n      drive " + d.number;
      text += Named({{"size", d.size}, {"raid", d.raid_level}, {"bad_stripes", d.bad_stripes}});
    }
    text += "\n";
    for (const std::size_t i : group.devices) text += "      " + Describe(c.devices[i]);
  }
  for (const Device& stray : c.stray_counters) text += "    stray " + Describe(stray);
  return text;
}

std::string DescribeMachine(const Machine& machine) {
  std::string text;
  for (const Controller& controller : machine.controllers) text += Describe(controller);
  for (const std::string& tool : machine.unpublished) text += "  unpublished " + tool + "\n";
  text += "  =>" + Named({{"events", std::to_string(machine.manager_event_count)}}) + "\n";
  for (const ManagerEvent& e : machine.last_manager_events) {
    text += "    " + e.time + "|" + e.severity + "|" + e.machine + "|" + e.message + "\n";
  }
  return text;
}

/// Compares with a file of cases, in which the results stand indented behind the lines of a case.
void CheckCases(const std::string& file, std::string (*describe)(const Machine&)) {
  std::istringstream lines(ReadFile(MachineFolder("instances") / "expected" / file));
  std::string text;
  for (std::string line; lines;) {
    standin::Repository repository;
    std::size_t latest_pass = 0;
    while (std::getline(lines, line) && !line.empty()) {
      if (line.starts_with("  ")) continue;
      text += line + "\n";
      if (line == "last pass") {
        latest_pass = repository.GetCommitted().size();
      } else if (!line.starts_with("#")) {
        CommitLine(repository, line);
      }
    }
    if (!repository.GetCommitted().empty()) {
      text += describe(ReadMachine({"host", 0, {}, repository, latest_pass}));
    }
    if (lines) text += "\n";
  }
  CompareExpected("instances/" + file, text);
}

TEST(Health, TellsWhatNeedsAttention) { CheckCases("health.txt", DescribeHealth); }

TEST(ReadMachine, PutsTheInstancesTogether) { CheckCases("reading.txt", DescribeMachine); }

}  // namespace
