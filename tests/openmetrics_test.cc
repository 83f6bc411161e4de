// What Prometheus is told of a machine. That its parsers take it is tested with the command.

#include <gtest/gtest.h>

#include "inventory/base/program.h"
#include "inventory/print/openmetrics_printer.h"
#include "inventory/print/openmetrics_writer.h"
#include "tests/odd_machine.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

RunRecord MakeRun(const char* tool, RunEnd end) {
  RunRecord run;
  run.program = std::string("./kraid/") + tool;
  run.end = end;
  return run;
}

/// As they are in any version of the program.
std::string Unversioned(std::string metrics) {
  const std::string version = std::string("version=\"") + kProgramVersion;
  return metrics.replace(metrics.find(version), version.size(), "version=\"VERSION");
}

TEST(OpenMetrics, SaysWhatIsInTheMachineAndHowItWasFound) {
  const auto repository = PublishSampleMachine();
  Report report{"harbor1", 0, {{"arcconf", "", ProblemKind::kToolAbsent}}, *repository};
  report.runs = {MakeRun("kelvcmd", RunEnd::kExited), MakeRun("kelvcmd", RunEnd::kExited),
                 MakeRun("arcconf", RunEnd::kNotStarted)};
  report.collected_at = NKVXHMZ20::TCIMDateTime("20050315040005.672707-300");
  report.duration = std::chrono::milliseconds(1234);
  CompareExpected("sample/metrics.txt", Unversioned(Print(PrintOpenMetrics, report)));

  standin::Repository odd;
  CommitOddMachine(odd);
  const Problem log = {"log", "odd", ProblemKind::kLogUnreadable};
  const Problem run = {"a\"b", "c\\d\ne\xff", ProblemKind::kRunFailed};
  CompareExpected("odd_values/metrics.txt",
                  Unversioned(Print(PrintOpenMetrics, {"h\"\n", 0, {log, log, run, run}, odd})));
}

TEST(OpenMetrics, SaysWhetherTheCollectionIsComplete) {
  const struct {
    bool has_controller;
    std::vector<Problem> problems;
    bool is_complete;
  } cases[] = {
      {true, {}, true},
      {true,
       {{"", "", ProblemKind::kToolAbsent}, {"", "", ProblemKind::kLinesNotUnderstood}},
       true},
      {true, {{"", "", ProblemKind::kLogCut}}, false},
      {false, {}, false},
  };
  for (const auto& c : cases) {
    standin::Repository repository;
    if (c.has_controller) {
      Commit(repository, "KVXSG_krSCSIProtocolController", {{"ControllerNum", "1"}});
    }
    const std::string text = Print(PrintOpenMetrics, {"", 0, c.problems, repository});
    EXPECT_NE(text.find(c.is_complete ? "\nkraid_collection_complete 1\n"
                                      : "\nkraid_collection_complete 0\n"),
              std::string::npos);
  }
  const NKVXHMZ20::TCIMDateTime time("20050315040005.672707-300");
  CompareExpected("no_controller/metrics.txt", Unversioned(MetricsOfNothing("no \"lock\"", time)));
  EXPECT_LE(MetricsOfNothing(std::string(100'000, '"'), time).size(), 4096U);
}

TEST(OpenMetrics, AddsUpWhatIsCountedTwiceAndNamesTheFirstProblems) {
  standin::Repository repository;
  Commit(repository, "KVXSG_krSCSIProtocolController", {{"ControllerNum", ""}});
  Commit(repository, "KVXSG_krDiskDrive",
         {{"ControllerNum", ""}, {"Channel", "1"}, {"ScsiId", "0"}, {"State", "Online"}});
  for (const char* count : {"3", "4"}) {
    Commit(repository, "KVXSG_krSCSIDeviceData",
           {{"ControllerNum", ""}, {"Channel", "1"}, {"ScsiId", "0"}, {"NumSoftErrors", count}});
  }
  std::vector<Problem> problems(12, {std::string(200, 'x')});
  for (std::size_t i = 0; i < 12; ++i) problems[i].why = std::to_string(i);
  const std::string text = Print(PrintOpenMetrics, {"", 0, problems, repository});
  EXPECT_NE(text.find("\nkraid_device_soft_errors_total{controller=\"?\",device=\"1,0\"} 7\n"),
            std::string::npos);
  const std::string last = "what=\"" + std::string(125, 'x') + "#10\"";
  EXPECT_NE(text.find(last), std::string::npos);
  EXPECT_EQ(text.find("x#11\""), std::string::npos);
}

TEST(OpenMetrics, LabelsHoldAnyTextInABoundedRoom) {
  const std::string most(126, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {"a\\b\"c", "a\\\\b\\\"c"},
      {"a\nb\x1b\xe2\x80\xae", "a b?<U+202E>"},
      {"\xff", "\uFFFD"},
      {most + "xxx", most + "xx"},
      {most + "\u00e4x", most + "\u00e4"},
      {most + "x\u00e4", most + "x"},
      {most + "x x", most + "x"},
      {"", ""},
  };
  for (const auto& [text, label] : cases) {
    EXPECT_EQ(MetricLabels().With("a", text).GetText(), "a=\"" + label + "\"");
  }
  EXPECT_EQ(MetricLabels().With("a", "1").WithReported("b", std::nullopt).With("c", "2").GetText(),
            "a=\"1\",c=\"2\"");

  DistinctNames names;
  for (const char* expected : {"1", "1#2", "1#3"}) EXPECT_EQ(names.Take("1"), expected);
  EXPECT_EQ(names.Take("1#3"), "1#3#2");
  EXPECT_EQ(names.Take("1#4"), "1#4");
  EXPECT_EQ(names.Take("1"), "1#5");
  names.Take(most + "xx");
  EXPECT_EQ(names.Take(most + "xxx"), most + "#2");
}

}  // namespace
