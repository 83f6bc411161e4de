// What is said of a machine and its earlier self.

#include "inventory/machine/compare.h"

#include <gtest/gtest.h>

#include "inventory/machine/read_machine.h"
#include "inventory/machine/selection.h"
#include "inventory/print/change_list.h"
#include "inventory/print/check_line.h"
#include "tests/instance_lines.h"
#include "tests/publish_machine.h"

namespace {

/// One side of a case: instances, and what was not collected, "problem TOOL NUMBER blind".
struct Side {
  standin::Repository repository;
  std::vector<Problem> problems;

  void Add(const std::string& line) {
    if (!line.starts_with("problem")) return CommitLine(repository, line);
    std::istringstream words(line);
    Problem problem;
    std::string blind;
    words >> problem.what >> problem.tool >> problem.controller >> blind;
    problem.why = "lost";
    problem.is_blind = blind == "blind";
    if (problem.tool == "-") {
      problem.tool.clear();
      problem.kind = ProblemKind::kPluginFailed;
    } else if (problem.tool == "log") {
      problem.tool.clear();
      problem.kind = ProblemKind::kLogCut;
    }
    problems.push_back(problem);
  }
  Machine Read() const { return ReadMachine({"host", 0, {}, repository}); }
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
  return text + "  =>\n";
}

TEST(Compare, TellsWhatHasChanged) {
  std::istringstream lines(ReadFile(MachineFolder("instances") / "expected/changes.txt"));
  std::string text;
  for (std::string line; lines;) {
    Side before;
    Side now;
    Side* side = &before;
    bool is_case = false;
    while (std::getline(lines, line) && !line.empty()) {
      if (line.starts_with("  ")) continue;
      text += line + "\n";
      if (line.starts_with("#")) continue;
      if (line == "now") {
        is_case = true;
        side = &now;
      } else {
        side->Add(line);
      }
    }
    const Machine machine = now.Read();
    if (is_case) {
      text += Describe(
          Compare({"", "host", before.Read(), before.problems}, machine, "host", now.problems),
          machine);
    }
    if (lines) text += "\n";
  }
  CompareExpected("instances/changes.txt", text);
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

TEST(Check, ExpectsWhatWasThere) {
  const std::string one = "KVXSG_krSCSIProtocolController;ControllerNum=1;ControllerStatus=Okay";
  const std::string device = "KVXSG_krDiskDrive;ControllerNum=1;Channel=1;ScsiId=0;State=Online;";
  const std::string a = device + "DeviceSerialNum=A";
  const std::string b = device + "DeviceSerialNum=B";
  const std::string refused = "problem hrconf 0 blind";
  using Lines = std::vector<std::string>;
  const struct {
    Lines before;
    Lines now;
    int status;
    const char* start;
  } cases[] = {
      {{one, a}, {one, a}, 0, "OK - 1 controller, 0 logical drives, 1 device, all fine |"},
      {{one, a}, {one, b}, 1, "WARNING - 0 critical, 1 warning: controller 1, device 1,0: was rep"},
      {{one}, {one, a}, 1, "WARNING - 0 critical, 1 warning: controller 1, device 1,0: is new: se"},
      {{one, a}, {one}, 2, "CRITICAL - 1 critical, 0 warnings: controller 1, device 1,0: is gone"},
      {{one, a}, {}, 2, "CRITICAL - 1 critical, 0 warnings: controller 1: is gone, with 0 logical"},
      {{}, {}, 3, "UNKNOWN - no controller was found |"},
      {{one, a},
       {refused},
       3,
       "UNKNOWN - no controller was found; 0 critical, 1 warning: problem: l"},
      {{one, a},
       {one, b, refused},
       3,
       "UNKNOWN - 0 critical, 2 warnings: problem: lost; controller 1, d"},
  };
  for (const auto& c : cases) {
    Side before;
    Side now;
    for (const std::string& line : c.before) before.Add(line);
    for (const std::string& line : c.now) now.Add(line);
    const Report report{"h", 0, now.problems, now.repository};
    const Machine machine = ReadMachine(report);
    const Comparison comparison = Compare({"", "h", before.Read()}, machine, "h", now.problems);
    TextSink sink;
    EXPECT_EQ(PrintCheck({report, machine, &comparison}, {}, sink), c.status);
    EXPECT_TRUE(sink.text.starts_with(std::string("KRAID ") + c.start)) << sink.text;
  }
}

}  // namespace
