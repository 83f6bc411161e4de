// What is said of a machine and its earlier self.

#include "inventory/machine/compare.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "inventory/machine/read_machine.h"
#include "inventory/machine/selection.h"
#include "inventory/print/change_list.h"
#include "inventory/print/check_line.h"
#include "inventory/print/text_report.h"
#include "tests/instance_lines.h"
#include "tests/publish_machine.h"

namespace {

/// One side of a case: instances, and what was not collected, "problem KIND TOOL NUMBER blind".
struct Side {
  standin::Repository repository;
  std::vector<Problem> problems;

  void Add(const std::string& line) {
    if (!line.starts_with("problem")) return CommitLine(repository, line);
    std::istringstream words(line);
    Problem problem{"", "lost"};
    std::string problem_word;
    std::string blind;
    words >> problem_word >> problem.what >> problem.tool >> problem.controller >> blind;
    for (int i = 0; i <= static_cast<int>(ProblemKind::kCollectionFailed); ++i) {
      const auto named = static_cast<ProblemKind>(i);
      if (NameOf(named) == problem.what) problem.kind = named;
    }
    problem.is_blind = blind == "blind";
    problems.push_back(problem);
  }
};

/// The changes with their codes, and what they are about.
std::string Describe(const Comparison& comparison, const Machine& now) {
  std::string text;
  for (const Change& change : comparison.changes) {
    text += std::string("  ") + NameOf(change.code) + " " + change.where + ": " + change.what;
    text += " [" + change.property.value_or("") + "|" + change.before.value_or("") + "|" +
            change.after.value_or("") + "]";
    if (change.grown_by) text += " +" + std::to_string(*change.grown_by);
    text += "\n";
    if (!change.subject) continue;
    // The indices lead to what the text names.
    const Machine& machine = change.is_of_earlier ? comparison.earlier : now;
    const Controller& controller = machine.controllers.at(change.subject->controller);
    const std::size_t index = change.subject->index;
    const auto expect_named = [&change](const std::string& name) {
      EXPECT_TRUE(change.where.ends_with(name)) << change.where << " " << name;
    };
    if (change.subject->kind == Subject::Kind::kDevice) {
      expect_named(", device " + controller.devices.at(index).place.GetText());
    } else if (change.subject->kind == Subject::Kind::kLogicalDrive) {
      expect_named(", logical drive " + controller.logical_drives.at(index).number->text);
    }
  }
  for (const std::string& part : comparison.not_compared) text += "  not compared " + part + "\n";
  return text;
}

/// The check's status and its line, but for the performance data.
std::string DescribeCheck(const ViewInput& input) {
  TextSink sink;
  const int status = PrintCheck(input, {}, sink);
  EXPECT_EQ(sink.text.find('\n'), sink.text.size() - 1);
  EXPECT_EQ(std::count(sink.text.begin(), sink.text.end(), '|'), 1) << sink.text;
  return "  " + std::to_string(status) + " " + sink.text.substr(0, sink.text.find(" |")) + "\n";
}

/// The report in colour, on one line, as far as it does not tell of single controllers.
std::string DescribeReport(const ViewInput& input) {
  TextSink sink;
  PrintText(input, {.display = {Display::kUnlimited, true, false}}, sink);
  sink.text.resize(std::min(sink.text.size(), sink.text.find("\n\n\x1b[1mController ")));
  std::replace(sink.text.begin(), sink.text.end(), '\n', '$');
  std::replace(sink.text.begin(), sink.text.end(), '\x1b', '^');
  return "  " + sink.text + "\n";
}

std::string DescribeCase(const std::vector<std::string>& lines) {
  const auto middle = std::ranges::find_if(
      lines, [](const std::string& line) { return line == "now" || line == "alone"; });
  if (middle == lines.end()) return "  neither \"now\" nor \"alone\"\n";
  Side before;
  Side now;
  std::for_each(lines.begin(), middle, [&](const std::string& line) { before.Add(line); });
  std::for_each(middle + 1, lines.end(), [&](const std::string& line) { now.Add(line); });
  const Report report{.host = "host",
                      .exit_status = 0,
                      .problems = now.problems,
                      .repository = now.repository,
                      .root = "/r\n"};
  const Machine machine = ReadMachine(report);
  const ViewInput alone{report, machine};
  if (*middle == "alone") return DescribeCheck(alone) + DescribeReport(alone);
  Machine earlier = ReadMachine({"host", 0, {}, before.repository});
  const Comparison comparison =
      Compare({"", "host", std::move(earlier), before.problems}, machine, "host", now.problems);
  return Describe(comparison, machine) + DescribeCheck({report, machine, &comparison});
}

TEST(Compare, TellsWhatHasChangedAndChecksIt) {
  CompareCases("instances/changes.txt", DescribeCase);
}

/// The sample machine with one drive replaced, one counter grown, and a tool whose controller is
/// not there any more.
boost::shared_ptr<standin::Repository> PublishChangedMachine() {
  return PublishSampleMachine([](std::map<std::string, std::string>& outputs) {
    const auto replace = [&outputs](const char* run, const std::string& text, const char* by) {
      std::string& output = outputs.at(run);
      ASSERT_NE(output.find(text), std::string::npos) << output;
      output.replace(output.find(text), text.size(), by);
    };
    replace("./kraid/kelvcmd getconfig 1 al", "K0441190", "K0990001");
    replace("./kraid/kelvcmd getevent 2 device", "114", "120");
    for (auto& [run, output] : outputs) {
      if (run.find("arcconf") != std::string::npos) output = "Controller is not present.\n";
    }
  });
}

TEST(Compare, NamesJustWhatDiffersOfTheSampleMachine) {
  const auto repository = PublishChangedMachine();
  const Report report{"harbor1", 0, {}, *repository};
  const Machine now = ReadMachine(report);
  const auto read_before = [] {
    const auto before = PublishSampleMachine();
    return ReadMachine({"harbor1", 0, {}, *before});
  };
  const Comparison comparison =
      Compare({"2026-11-20T04:00:05+01:00", "harbor1", read_before()}, now, "harbor1", {});
  const auto text = [](const Comparison& shown) {
    return Printed([&](Sink& output) {
      TextWriter writer({}, output);
      PrintChanges(shown, writer);
    });
  };
  EXPECT_EQ(text(comparison), R"(
Changes since 2026-11-20 04:00:
  controller 1 (archive), device 1,1: was replaced: serial number K0441190, now K0990001
  controller 2 (mail), device 1,2: soft errors: 120, 6 more
  controller 4: is gone (arcconf 1), with 3 logical drives and 15 devices
)");
  const Machine before = read_before();
  EXPECT_EQ(text(Compare({"", "harbor1", read_before()}, before, "harbor1", {})),
            "\nChanges since an unknown time: none\n");
  EXPECT_EQ(text(Compare({"yesterday", "a\n", {}}, {}, "b", {})),
            "\nChanges since an unknown time:\n  host: a, now b\n");

  CompareExpected("sample/check_expect.txt", Printed([&](Sink& output) {
                    EXPECT_EQ(PrintCheck({report, now, &comparison}, {}, output), kCheckCritical);
                  }));
}

TEST(Compare, IsOfTheSelectedControllers) {
  const std::pair<std::vector<std::uint64_t>, const char*> cases[] = {
      {{2}, "|soft errors: 120, 6 more"},
      {{3}, "|is gone"},
      {{1, 4},
       "|was replaced: serial number K0441190, now K0990001"
       "|is gone (arcconf 1), with 3 logical drives and 15 devices"},
      {{5}, "no controller has the number 5"},
  };
  const auto repository = PublishChangedMachine();
  const auto before = PublishSampleMachine();
  for (const auto& [numbers, expected] : cases) {
    Machine now = ReadMachine({"h", 0, {}, *repository});
    Machine earlier = ReadMachine({"h", 0, {}, *before});
    earlier.controllers[2].devices.emplace_back();
    Comparison comparison = Compare({"", "h", std::move(earlier)}, now, "h", {});
    std::string text = SelectControllers(numbers, now, &comparison);
    for (const Change& change : comparison.changes) {
      text += "|" + change.what;
      EXPECT_TRUE(change.is_of_earlier || change.subject->controller < now.controllers.size());
    }
    EXPECT_EQ(text, expected);
  }
}

}  // namespace
