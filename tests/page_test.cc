// The page, as text; tests/browser looks at it in a browser.

#include <gtest/gtest.h>

#include "inventory/print/html/html_page.h"
#include "inventory/print/html/html_writer.h"
#include "tests/odd_machine.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

TEST(HtmlWriter, TakesTheMeaningFromEveryText) {
  const std::pair<std::string, std::string> cases[] = {
      {"<script>alert(1)</script>", "&lt;script&gt;alert(1)&lt;/script&gt;"},
      {"a\" onclick=\"b' & c", "a&quot; onclick=&quot;b' &amp; c"},
      {"]]></style>-->{}", "]]&gt;&lt;/style&gt;--&gt;{}"},
      {"&lt;", "&amp;lt;"},
      {"\u202Ea\u0085\x1B[31m\x07\x7F", "&lt;U+202E&gt;a&lt;U+0085&gt;?[31m??"},
      {"gr\xFC\xC3\xBC\n\t", "gr\uFFFD\u00FC?\t"},
      {std::string(70'000, '<') + "\xC3\xBC", ""},
  };
  for (auto [text, expected] : cases) {
    if (expected.empty()) {
      for (int i = 0; i < 70'000; ++i) expected += "&lt;";
      expected += "\u00FC";
    }
    EXPECT_EQ(Printed([text = text](Sink& sink) { HtmlWriter{sink}("<a id=\"{}\">{}", text, 7); }),
              "<a id=\"" + expected + "\">7");
  }
}

TEST(HtmlWriter, KeepsTheLinesOfAnOutputAndCutsBetweenThem) {
  EXPECT_EQ(Printed([](Sink& sink) { HtmlWriter(sink).Lines("\n a\r\n\n<b\r\rc"); }),
            "\n a\n\n&lt;b??c");
  const std::tuple<const char*, std::size_t, std::size_t> cases[] = {
      {"ab\ncd\n", 6, 6},
      {"ab\ncd\n", 5, 3},
      {"ab\ncd", 5, 5},
      {"ab\ncd\n", 2, 0},
      {"<\n<\n", 9, 2},
      {"\u0085\u0085\u0085\n", 28, 4},
      {"aaa\u00e4aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", 28, 3},
  };
  for (const auto& [text, most, fitting] : cases) EXPECT_EQ(FittingLength(text, most), fitting);
}

RunRecord MakeRun(const char* command, RunEnd end, int status, const std::string& output) {
  RunRecord run;
  run.program = "./kraid/hrconf";
  run.arguments = {command, "1", "al"};
  run.started = {2005, 3, 15, 4, 0, static_cast<unsigned short>(status), 0, -300};
  run.duration = std::chrono::milliseconds(1500);
  run.end = end;
  run.exit_status = status;
  run.output_bytes = output.size();
  run.output = std::make_shared<std::string>(output);
  return run;
}

TEST(Page, HidesNothingOfAnOddMachine) {
  standin::Repository repository;
  CommitOddMachine(repository);
  Report report{
      "h\n", 0, {{"hrconf", "crashed"}, {"arcconf", "", ProblemKind::kToolAbsent}}, repository};
  report.problems.push_back({"x", "1 line", ProblemKind::kLinesNotUnderstood});
  report.runs = {MakeRun("getconfig", RunEnd::kExited, 0, "<one>\n"),
                 MakeRun("getstatus", RunEnd::kTimedOut, 2, ""),
                 MakeRun("getlong", RunEnd::kExited, 4, "first\n" + std::string(200'000, 'x')),
                 MakeRun("getagain", RunEnd::kExited, 6, "<one>\n")};
  report.runs[1].error_output = "cannot <open>\n";
  report.runs[2].why_unreadable = "too short";
  report.runs[3].left_behind = {"sleep"};
  const Machine machine = ReadMachine(report);
  Comparison comparison;
  comparison.since = "2005-03-14T04:00:05-05:00";
  using Place = std::optional<Subject>;
  for (const auto& [code, place, where] :
       {std::tuple(ChangeCode::kNew, Place(machine.findings.back().subject), "a<b"),
        {ChangeCode::kGone, Place(Subject{}), "controller 9"},
        {ChangeCode::kStateChanged, Place(), ""}}) {
    comparison.changes.push_back(
        {code, place, code == ChangeCode::kGone, where, "other", {}, {}, {}, {}});
  }
  comparison.not_compared = {"controller 3"};
  const std::string page = Printed([&](Sink& output) {
    PrintHtml({report, machine, &comparison}, {}, output);
  });
  // Style and script are files of their own.
  CompareExpected("odd_values/page.html", page.substr(page.find("<body")));
}

TEST(Page, GivesTheOutputsTheRoomThatIsLeft) {
  const standin::Repository nothing;
  Report report{"h", 0, {}, nothing};
  for (const char letter : {'a', '<'}) {
    std::string lines;
    for (int i = 0; i < 20'000; ++i) lines += std::string(40, letter) + "\n";
    report.runs.push_back(MakeRun("getlong", RunEnd::kExited, 0, lines));
  }
  report.runs.push_back(MakeRun("getshort", RunEnd::kExited, 0, "short and whole\n"));
  const std::string page = Print(PrintHtml, report);
  EXPECT_LE(page.size(), 60'000U);
  EXPECT_GE(page.size(), 58'000U);
  EXPECT_NE(page.find("\nshort and whole\n</pre>"), std::string::npos);
}

TEST(Page, ShowsTheNewestOfALongLogInOrder) {
  standin::Repository repository;
  for (int i = 0; i < 250; ++i) {
    Commit(repository, "KVXSG_LogRecord_RAIDMgrEvent",
           {{"Message", "entry " + std::to_string(i) + "." + std::string(100, 'x')}});
  }
  Report report{"h", 0, {}, repository};
  std::string lines;
  for (int i = 0; i < 5'000; ++i) lines += "a line of an output\n";
  report.runs = {MakeRun("getlong", RunEnd::kExited, 0, lines)};
  const Machine machine = ReadMachine(report, kPageLogEntries);
  ASSERT_EQ(machine.manager_log.last.size(), kPageLogEntries);
  EXPECT_EQ(machine.manager_log.last.front().message, "entry 200." + std::string(100, 'x'));
  const std::string page = Printed([&](Sink& output) { PrintHtml({report, machine}, {}, output); });
  EXPECT_LE(page.size(), 60'000U);
  EXPECT_NE(page.find("<title>h, RAID: No controller was found</title>"), std::string::npos);
  EXPECT_NE(page.find("250 entries, the last 50"), std::string::npos);
  EXPECT_LT(page.find("entry 248."), page.find("entry 249."));
  EXPECT_EQ(page.find("entry 199."), std::string::npos);
}

}  // namespace
