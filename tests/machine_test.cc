// What becomes of the published instances, and what is judged to need attention.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "inventory/machine/read_machine.h"
#include "inventory/machine/selection.h"
#include "inventory/print/machine_json.h"
#include "tests/instance_lines.h"
#include "tests/machine_files.h"
#include "tests/print_to.h"

namespace {

/// " name=value" for each value that is neither empty nor 0.
std::string Named(std::initializer_list<std::pair<const char*, std::string>> fields) {
  std::string text;
  for (const auto& [name, value] : fields) {
    if (!value.empty() && value != "0") text.append(" ").append(name).append("=").append(value);
  }
  return text;
}

/// "reason code: text" for each reason.
std::string DescribeHealth(const Machine& machine) {
  std::string text;
  for (const Finding& finding : machine.findings) {
    text += finding.severity == Severity::kCritical ? "  CRITICAL " : "  WARNING ";
    text += finding.where + ":";
    for (const Reason& reason : finding.reasons) {
      text += std::string(" ") + NameOf(reason.code) + "(" + reason.text + ")";
    }
    text += "\n";
  }
  const HealthCounts health = machine.CountHealth();
  return text + "  =>" +
         Named({{"critical", std::to_string(machine.CountCritical())},
                {"failed", std::to_string(health.failed_devices)},
                {"degraded", std::to_string(health.degraded_drives)},
                {"predicted", std::to_string(health.predicted_failures)},
                {"with_bad_stripes", std::to_string(health.drives_with_bad_stripes)},
                {"rebuilds", std::to_string(health.rebuilds)}}) +
         "\n";
}

/// All that is known of it, as documents have it, but for what health says.
std::string DescribeMachine(const Machine& machine) {
  TextSink sink;
  JsonWriter json(sink);
  WriteMachineJson(machine, json);
  std::string text;
  const auto leaves = nlohmann::ordered_json::parse(sink.text).flatten();
  for (const auto& [name, value] : leaves.items()) {
    const bool is_judged = name.ends_with("/judgement") || name.ends_with("/verdict") ||
                           name.find("/counts/") != std::string::npos;
    // Nothing is said of what is not there.
    if (is_judged || value.is_null() || value.empty() || value == 0 || value == false) continue;
    text += "  " + name.substr(1) + " " + value.dump() + "\n";
  }
  return text;
}

/// What is said of the machine of these instances, of which "last pass" stands before the latest.
void CheckCases(const std::string& file, std::string (*describe)(const Machine&)) {
  CompareCases("instances/" + file, [describe](const std::vector<std::string>& lines) {
    standin::Repository repository;
    std::size_t latest_pass = 0;
    for (const std::string& line : lines) {
      if (line == "last pass") {
        latest_pass = repository.GetCommitted().size();
      } else {
        CommitLine(repository, line);
      }
    }
    return describe(ReadMachine({"host", 0, {}, repository, latest_pass}));
  });
}

TEST(Health, TellsWhatNeedsAttention) { CheckCases("health.txt", DescribeHealth); }

TEST(Place, OrdersAndPrints) {
  const char* const ordered[] = {"?,?", "?,1", "0,?", "0,9", "0,10", "1,x", "1,0", "10,0"};
  EXPECT_EQ(Place().GetText(), ordered[0]);
  for (std::size_t i = 1; i < std::size(ordered); ++i) {
    EXPECT_EQ(Place(ordered[i]).GetText(), ordered[i]);
    EXPECT_LT(Place(ordered[i - 1]), Place(ordered[i])) << ordered[i];
  }
  EXPECT_EQ(Place("01", "002"), Place("1,2"));
  EXPECT_EQ(Place("odd").GetText(), "odd");
}

TEST(Size, IsReadInAllItsForms) {
  const std::pair<const char*, std::optional<std::uint64_t>> cases[] = {
      {"34715/71096320", 36401315840},  // 71096320 sectors
      {"34716/71096321", 36401316352},  // rounded up
      {"34715/71096321", 36401316352},
      {"34714/71096320", std::nullopt},
      {"1/x", std::nullopt},
      {"140000", 146800640000},
      {"70006 MB", 73406611456},
      {"1.5 TB", 1649267441664},
      {"2 gb", 2147483648},
      {"0", 0},
      {"70006 blocks", std::nullopt},
      {"99999999999999 TB", std::nullopt},
      {"nan MB", std::nullopt},
      {"-1 MB", std::nullopt},
  };
  for (const auto& [text, bytes] : cases) EXPECT_EQ(MakeSize(text)->bytes, bytes) << text;
}

TEST(SelectControllers, LeavesTheirPartsAndWhatConcernsThem) {
  standin::Repository repository;
  for (const char* number : {"1", "2", "3"}) {
    CommitLine(repository, std::string("KVXSG_krDiskDrive;ControllerNum=") + number +
                               ";ReportedChannel=1,0;State=Defunct");
  }
  Machine machine = ReadMachine({"host", 0, {}, repository});
  for (Controller& c : machine.controllers) c.tool = {"t", static_cast<int>(*c.number->value)};
  EXPECT_EQ(SelectControllers({3, 9, 2, 8}, machine), "no controller has the number 9, 8");
  EXPECT_EQ(DescribeHealth(machine),
            "  CRITICAL controller 2, device 1,0: device_failed(Defunct)\n"
            "  CRITICAL controller 3, device 1,0: device_failed(Defunct)\n"
            "  => critical=2 failed=2\n");
  EXPECT_EQ(machine.findings[1].subject.controller, 1U);
  std::vector<Problem> problems = {{"a", "", ProblemKind::kRunFailed, "t", "", 1},
                                   {"b", "", ProblemKind::kRunFailed, "t", "", 2},
                                   {"c", "", ProblemKind::kRunFailed, "t", "", 1, 0, true},
                                   {"d", "", ProblemKind::kToolRefused, "u"}};
  SelectProblems(machine, problems);
  std::string left;
  for (const Problem& problem : problems) left += problem.what;
  EXPECT_EQ(left, "bcd");
}

TEST(ReadMachine, PutsTheInstancesTogether) { CheckCases("reading.txt", DescribeMachine); }

}  // namespace
