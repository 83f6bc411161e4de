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

std::string Text(const Report& report, const Display& display, bool is_brief = false) {
  ViewOptions options;
  options.display = display;
  options.is_brief = is_brief;
  return Print(PrintText, report, options);
}

std::string CheckLine(const Report& report) { return Print(PrintCheck, report); }

TEST(TextReport, ShowsTheSampleMachineInAnyWidth) {
  const auto repository = PublishSampleMachine();
  Report report{"harbor1", 0, {{"./kraid/absent", "", ProblemKind::kToolAbsent}}, *repository};
  report.root = "/r";
  CompareExpected("sample/report_60.txt", Text(report, {60, false, false}));
  CompareExpected("sample/report_200.txt", Text(report, {200, true, true}));
  CompareExpected("sample/check.txt", CheckLine(report));
  CompareExpected("sample/brief_200.txt", Text(report, {200, true, true}, true));
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
  const Problem threw = {"kelvcmd", "too short", ProblemKind::kPluginFailed};
  const Report report{"h\n", 0, {{"hrconf", "crashed"}, threw}, repository};
  CompareExpected("odd_values/report.txt", Text(report, {}));
  CompareExpected("odd_values/report_40.txt", Text(report, {40, true, true}));
  CompareExpected("odd_values/report_75.txt", Text(report, {75, false, true}));
  CompareExpected("odd_values/check.txt", CheckLine(report));
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
