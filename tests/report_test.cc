// What people and monitoring systems are told of a machine.

#include <gtest/gtest.h>

#include <cstdlib>

#include "inventory/machine/read_machine.h"
#include "inventory/print/check_line.h"
#include "inventory/print/flow.h"
#include "inventory/print/text_report.h"
#include "tests/odd_machine.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

const Problem kAbsent = {"arcconf", "not there", ProblemKind::kToolAbsent};
const Problem kFailed = {"hrconf", "crashed"};
const Problem kUseless = {"hrconf", "all failed", ProblemKind::kToolFailed, "hrconf", "", 0,
                          0,        true};
const Problem kThrew = {"kelvcmd", "too short", ProblemKind::kPluginFailed};

/// A controller with one device in this state; null: none.
void CommitDevice(standin::Repository& repository, const char* state) {
  if (state == nullptr) return;
  Commit(repository, "KVXSG_krSCSIProtocolController", {{"ControllerNum", "1"}});
  Commit(repository, "KVXSG_krDiskDrive",
         {{"ControllerNum", "1"}, {"Channel", "1"}, {"ScsiId", "0"}, {"State", state}});
}

std::string Text(Report report, const Display& display, const char* root = "/r",
                 bool is_brief = false) {
  report.root = root;
  ViewOptions options;
  options.display = display;
  options.is_brief = is_brief;
  return Print(PrintText, report, options);
}

std::string CheckLine(const Report& report) { return Print(PrintCheck, report); }

TEST(TextReport, ShowsTheSampleMachineInAnyWidth) {
  const auto repository = PublishSampleMachine();
  const Report report{
      "harbor1", 0, {{"./kraid/absent", "", ProblemKind::kToolAbsent}}, *repository};
  CompareExpected("sample/report_60.txt", Text(report, {60, false, false}));
  CompareExpected("sample/report_200.txt", Text(report, {200, true, true}));
  CompareExpected("sample/check.txt", CheckLine(report));
  CompareExpected("sample/brief_200.txt", Text(report, {200, true, true}, "", true));
  // A terminal of as many lines as the report has still shows its beginning while it is printed.
  const std::string whole = Text(report, {});
  const auto lines = static_cast<std::size_t>(std::count(whole.begin(), whole.end(), '\n'));
  EXPECT_EQ(Text(report, {Display::kUnlimited, false, false, lines + 1}), whole);
  EXPECT_EQ(Text(report, {Display::kUnlimited, false, false, lines}),
            whole + "\n8 need attention, see the top or --brief\n");
}

TEST(TextReport, HidesNothingOfAnOddMachine) {
  standin::Repository repository;
  CommitOddMachine(repository);
  const Report report{"h\n", 0, {kFailed, kThrew}, repository};
  CompareExpected("odd_values/report.txt", Text(report, {}));
  CompareExpected("odd_values/report_40.txt", Text(report, {40, true, true}));
  CompareExpected("odd_values/report_75.txt", Text(report, {75, false, true}));
  CompareExpected("odd_values/check.txt", CheckLine(report));
}

TEST(TextReport, SaysFirstHowItIs) {
  const struct {
    const char* state;
    std::vector<Problem> problems;
    const char* text;
  } cases[] = {
      {"Online", {kAbsent}, "1 device;\x1b[0m \x1b[32mnothing needs attention\x1b[0m\n\nNot inst"},
      {"Online", {kFailed}, " \x1b[33mnothing needs attention; not all was collected\x1b[0m\n\n"},
      {"Strange", {}, " \x1b[33m1 needs attention\x1b[0m\n\n\x1b[33mWARNING   \x1b[0mcontroller"},
      {"Defunct", {kFailed}, " \x1b[1;31m1 needs attention; not all was collected\x1b[0m\n\n"},
      {nullptr, {}, " \x1b[33mno controller was found\x1b[0m\n\nThe tools kelvcmd, hrconf and "},
      {nullptr, {kAbsent, kAbsent}, "\nNot installed in /r : arcconf, arcconf\n\nThe tools "},
      {nullptr, {}, " looked for in /r /kraid; "},
  };
  for (const auto& c : cases) {
    standin::Repository repository;
    CommitDevice(repository, c.state);
    const std::string text =
        Text({"h", 0, c.problems, repository}, {Display::kUnlimited, true, false}, "/r\n");
    EXPECT_NE(text.find(c.text), std::string::npos) << text;
  }
}

TEST(Check, JudgesTheMachineAndTheCollection) {
  const struct {
    const char* state;
    std::vector<Problem> problems;
    int status;
    const char* start;
  } cases[] = {
      {nullptr, {kAbsent}, 3, "UNKNOWN - no controller was found | controllers=0;;;0 logical_dri"},
      {nullptr, {kFailed}, 3, "UNKNOWN - no controller was found; 0 critical, 1 warning: hrconf:"},
      {nullptr, {kThrew}, 3, "UNKNOWN - kelvcmd: too short; no controller was found | controllers"},
      {"Online", {kAbsent}, 0, "OK - 1 controller, 0 logical drives, 1 device, all fine | contr"},
      {"Online", {kFailed}, 1, "WARNING - 0 critical, 1 warning: hrconf: crashed | controllers=1"},
      {"Online", {kUseless}, 3, "UNKNOWN - 0 critical, 1 warning: hrconf: all failed | contro"},
      {"Online", {kThrew}, 3, "UNKNOWN - kelvcmd: too short | controllers=1"},
      {"a|b", {}, 1, "WARNING - 0 critical, 1 warning: controller 1, device 1,0: a/b | contro"},
      {"a", {kFailed, kUseless}, 3, "UNKNOWN - 0 critical, 3 warnings: hrconf: all failed; contr"},
      {"Defunct", {kUseless, kFailed}, 2, "CRITICAL - 1 critical, 2 warnings: controller 1, "},
      {"Defunct", {kThrew}, 3, "UNKNOWN - kelvcmd: too short; 1 critical, 0 warnings: contr"},
  };
  for (const auto& c : cases) {
    standin::Repository repository;
    CommitDevice(repository, c.state);
    TextSink sink;
    const Report report = {"h", 0, c.problems, repository};
    EXPECT_EQ(PrintCheck({report, ReadMachine(report)}, {}, sink), c.status);
    const std::string& line = sink.text;
    EXPECT_TRUE(line.starts_with(std::string("KRAID ") + c.start)) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_EQ(std::count(line.begin(), line.end(), '|'), 1) << line;
  }
  EXPECT_EQ(UnknownCheckLine("a|b\nc"), "KRAID UNKNOWN - a/b c\n");
}

TEST(Check, NamesAsMuchAsALineCanHold) {
  const auto repeated = [](int count, const char* text) {
    std::string all;
    while (count-- > 0) all += text;
    return all;
  };
  const standin::Repository nothing;
  std::vector<Problem> problems(9, {"tool", repeated(300, "-")});
  problems.push_back({"\x80" + repeated(100, "├"), "", ProblemKind::kPluginFailed});
  const std::string finding = "tool: " + repeated(194, "-") + "...; ";
  const std::string line = CheckLine({"h", 0, problems, nothing});
  EXPECT_EQ(line.substr(0, line.find('|')),
            "KRAID UNKNOWN - \uFFFD" + repeated(65, "├") + "...; no controller was found; " +
                "0 critical, 9 warnings: " + repeated(8, finding.c_str()) + "and 1 more ");
}

TEST(TextWriter, BreaksLinesAtTheWidth) {
  const struct {
    const char* start;
    const char* text;
    const char* expected;
  } cases[] = {
      {"start: ", "one two three four five", "start: one two three\n  four five\n"},
      {"start: ", "eleven four", "start: eleven four\n"},
      {"start: ", "\xc3\xa4\xc3\xb6\xc3\xbc three four",
       "start: \xc3\xa4\xc3\xb6\xc3\xbc three\n  four\n"},
      {"start: ", "0123456789abcdefghijklmnop", "start: 0123456789abc\n  defghijklmnop\n"},
      {"0123456789", "0123456789abcdefghijklmnop", "01234567890123456789\n  abcdefghijklmnop\n"},
      {"01234567890", "0123456789abcdefghi", "01234567890\n  0123456789abcdefgh\n  i\n"},
      {"start: ", "", "start:\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Printed([&](Sink& output) {
                TextWriter({20, false, true}, output).FlowWords({{c.start}}, "  ", c.text);
              }),
              c.expected);
  }
}

TEST(Display, TakesItsWidthAndCharactersFromTheEnvironment) {
  const std::pair<const char*, std::size_t> widths[] = {
      {"80", 80},
      {"39", 40},
      {"41", 41},
      {"0", Display::kUnlimited},
      {"", Display::kUnlimited},
      {"80x", Display::kUnlimited},
      {"-80", Display::kUnlimited},
      {"99999999999999999999999", Display::kUnlimited},
  };
  for (const auto& [columns, width] : widths) {
    setenv("COLUMNS", columns, 1);
    EXPECT_EQ(FindDisplay(Color::kNever, true).width, width) << columns;
  }
  unsetenv("COLUMNS");
  for (const char* locale : {"C.UTF-8", "C"}) {
    setenv("LC_ALL", locale, 1);
    const Display display = FindDisplay(Color::kAlways, true);
    EXPECT_EQ(display.utf8, locale != std::string("C"));
    EXPECT_TRUE(display.color);
    EXPECT_FALSE(FindDisplay(Color::kAuto, true).color);
  }
}

}  // namespace
