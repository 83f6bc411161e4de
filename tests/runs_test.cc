// How the command runs tools: what is remembered, shared, bounded, and what is a problem of it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <thread>

#include "hmz/exception.h"
#include "inventory/runs/pseudonyms.h"
#include "inventory/runs/run_problems.h"
#include "inventory/runs/sanitize.h"
#include "inventory/runs/tool_runs.h"
#include "inventory/runs/trust.h"
#include "schema/published_texts.h"
#include "standin/host_services.h"
#include "tests/machine_files.h"

namespace {

using std::chrono::milliseconds;
using Texts = std::vector<std::string>;

constexpr char kPlace[] = "/bin/sh";  // a file that is there, for tools that are

standin::ProcessResult Exited(int status, const std::string& output,
                              const std::string& error = "") {
  standin::ProcessResult result;
  result.exit_status = status;
  result.output = output;
  result.error_output = error;
  result.error_bytes = error.size();
  return result;
}

standin::ProcessResult Failed(standin::ProcessEnd end, const std::string& reason) {
  standin::ProcessResult result;
  result.end = end;
  result.failure = std::string(kPlace) + ": " + reason;
  return result;
}

class Runs : public testing::Test {
 protected:
  /// The answer to each run; the default is a tool without controllers.
  std::function<standin::ProcessResult(const std::string& word, int number)> answer =
      [](const std::string&, int number) {
        return Exited(1, "Controller " + std::to_string(number) + " is not present.\n");
      };

  ToolRuns Make(const RunBounds& bounds = {}, Sharing sharing = Sharing::kOn) {
    return {
        bounds,
        sharing,
        {},
        [this](const std::string&, const Texts& arguments, const standin::ProcessLimits& limits) {
          limits_seen.push_back(limits);
          runs.push_back(arguments[0] + " " + arguments[1]);
          return answer(arguments[0], std::stoi(arguments[1]));
        }};
  }

  /// What a request for "WORD NUMBER" gives: the output, or the reason of the failure.
  static std::string Ask(ToolRuns& tools, const std::string& word, int number) {
    try {
      return tools.Run(kPlace, {word, std::to_string(number), "al"});
    } catch (const NKVXHMZ20::THMZException& error) {
      return error.what();
    }
  }

  /// Asks as a collector does, and says what is a problem of it.
  Texts Problems(ToolRuns& tools) {
    for (int number = 1; number <= 8; ++number) {
      for (const char* word : {"getconfig", "getstatus"}) Ask(tools, word, number);
    }
    Texts texts;
    for (const Problem& problem : FindRunProblems(tools.GetRecords())) {
      texts.push_back(std::string(NameOf(problem.kind)) + "|" + problem.command + "|" +
                      std::to_string(problem.controller) + "|" + std::to_string(problem.count) +
                      (problem.is_blind ? "|blind|" : "|") + problem.what + "|" + problem.why);
    }
    return texts;
  }

  Texts runs;
  std::vector<standin::ProcessLimits> limits_seen;
};

TEST_F(Runs, AreRememberedAndSharedInOneCollection) {
  answer = [](const std::string& word, int) { return Exited(3, word + "\n", "first\nlast \n\n"); };
  ToolRuns tools = Make();
  for (const int number : {1, 1, 2}) EXPECT_EQ(Ask(tools, "a", number), "a\n");
  EXPECT_EQ(runs, (Texts{"a 1", "a 2"}));
  ASSERT_EQ(tools.GetRecords().size(), 2U);
  const RunRecord& record = tools.GetRecords()[1];
  EXPECT_EQ(record.CommandLine() + "|" + record.Tool() + "|" + record.Command(),
            "/bin/sh a 2 al|sh|a al");
  EXPECT_EQ(record.Controller(), 2);
  EXPECT_EQ(record.exit_status, 3);
  EXPECT_EQ(record.output_bytes + 100 * record.error_bytes, 2U + 1300U);
  EXPECT_EQ(record.last_error_line, "last");
  EXPECT_EQ(tools.GetRequests().size(), 3U);
  EXPECT_EQ(tools.GetRequests()[1].record, 0U);

  runs.clear();
  ToolRuns unshared = Make({}, Sharing::kOff);
  EXPECT_EQ(Ask(unshared, "a", 1) + Ask(unshared, "a", 1), "a\na\n");
  EXPECT_EQ(runs, (Texts{"a 1", "a 1"}));
}

TEST_F(Runs, RefuseWhatThePluginThrewOverAndNothingElse) {
  answer = [](const std::string& word, int) { return Exited(0, word); };
  ToolRuns tools = Make();
  EXPECT_FALSE(tools.RefuseLatestRequest("nothing was asked"));
  tools.BeginAttempt();
  Ask(tools, "a", 1);
  Ask(tools, "a", 1);
  EXPECT_TRUE(tools.RefuseLatestRequest("too short"));
  tools.BeginAttempt();
  EXPECT_EQ(Ask(tools, "a", 1), "a");  // the first request still gets the text
  EXPECT_EQ(Ask(tools, "a", 1), "/bin/sh: printed what cannot be read");
  EXPECT_EQ(Ask(tools, "a", 1), "a");
  EXPECT_EQ(tools.GetRequests()[1].is_refused, true);
  EXPECT_EQ(runs.size(), 1U);
  tools.BeginAttempt();
  Ask(tools, "a", 1);
  Ask(tools, "a", 1);
  EXPECT_EQ(tools.GetRecords()[0].why_unreadable, "too short");
  EXPECT_FALSE(tools.RefuseLatestRequest("again"));  // nothing new is learnt: it is not to blame
  EXPECT_EQ(tools.GetRecords()[0].why_unreadable, "");
}

TEST_F(Runs, OfAToolThatHangsAreFewAndNamed) {
  answer = [](const std::string&, int) {
    return Failed(standin::ProcessEnd::kTimedOut, "was stopped");
  };
  ToolRuns tools = Make();
  const std::string stopped = "|1|blind|/bin/sh getconfig ";
  const std::string why = "was not run: the tool had hung ";
  EXPECT_EQ(Problems(tools),
            (Texts{"run_timed_out|getconfig al|1" + stopped + "1 al|was stopped",
                   "run_not_asked|getstatus al|0|2|/bin/sh, 2 runs|" + why + "over this controller",
                   "run_timed_out|getconfig al|2" + stopped + "2 al|was stopped",
                   "run_timed_out|getconfig al|3" + stopped + "3 al|was stopped",
                   "run_not_asked||0|11|blind|/bin/sh, 11 runs|" + why + "3 times"}));
  EXPECT_EQ(runs, (Texts{"getconfig 1", "getconfig 2", "getconfig 3"}));

  // Nor is one that cannot be killed asked again, whatever it was stopped for.
  runs.clear();
  answer = [](const std::string&, int) {
    standin::ProcessResult result = Failed(standin::ProcessEnd::kOutputLimit, "was stopped");
    result.has_outlived_killing = true;
    return result;
  };
  ToolRuns immortal = Make();
  Ask(immortal, "a", 1);
  EXPECT_EQ(Ask(immortal, "b", 1), "/bin/sh: " + why + "over this controller");
  EXPECT_EQ(runs, (Texts{"a 1"}));
}

TEST_F(Runs, AsRootAreOfToolsThatOnlyRootCouldHavePutThere) {
  std::string folder = "/run/kraid-XXXXXX";  // which nobody else can write to, on most machines
  if (geteuid() != 0 || mkdtemp(folder.data()) == nullptr) GTEST_SKIP() << "not as root";
  const auto here = [&folder](std::string text) {
    for (auto at = text.find('F'); at != std::string::npos; at = text.find('F', at)) {
      text.replace(at, 1, folder);
      at += folder.size();  // which may hold the letter
    }
    return text;
  };
  for (const auto& row : Rows("tool_places.txt")) {
    SCOPED_TRACE(row[0]);
    const std::string& tool = row.at(1);
    const std::string why = here(row.at(2));
    const std::string set_up =
        "rm -rf F/*; mkdir -m 755 F/d; chmod 755 F; "
        "cp /bin/true F/tool; cp /bin/true F/d/tool; ";
    ASSERT_EQ(std::system(here(set_up + row[0]).c_str()), 0);
    RunBounds bounds;
    bounds.trusts_tools = false;
    ToolRuns tools = Make(bounds);
    runs.clear();
    std::string failure;
    try {
      tools.Run(std::string(folder).append("/").append(tool), {"getconfig", "1", "al"});
    } catch (const NKVXHMZ20::THMZException& error) {
      failure = error.what();
    }
    EXPECT_EQ(failure.empty(), why.empty()) << failure;
    EXPECT_EQ(runs.size(), why.empty() ? 1U : 0U);
    if (why.empty()) continue;
    const bool is_absent = why.starts_with("cannot");
    EXPECT_NE(failure.find(is_absent ? why : "could have put it there: " + why + "; --trust"),
              std::string::npos)
        << failure;
    const std::vector<Problem> problems = FindRunProblems(tools.GetRecords());
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].kind, is_absent ? ProblemKind::kToolAbsent : ProblemKind::kToolUntrusted);
    EXPECT_EQ(problems[0].is_blind, !is_absent);
  }
  std::filesystem::remove_all(folder);
}

TEST_F(Runs, AreOfTheFileThatWasLookedAt) {
  const TrustedFile file("/bin/true");
  if (!file.WhyNot().empty()) GTEST_SKIP() << file.WhyNot();
  EXPECT_GE(file.GetDescriptor(), 0);
  EXPECT_EQ(TrustedFile("/usr/bin/ldd").GetDescriptor(), -1);  // its interpreter reads the path
  RunBounds bounds;
  bounds.trusts_tools = false;
  Make(bounds).Run("/bin/true", {"a", "1", "al"});
  EXPECT_GE(limits_seen.at(0).executable, 0);
}

TEST_F(Runs, AreBoundedTogether) {
  RunBounds bounds;
  bounds.collection = milliseconds(200);
  bounds.run.time = milliseconds(150);
  answer = [](const std::string&, int) {
    std::this_thread::sleep_for(milliseconds(70));
    return Exited(0, "x");
  };
  ToolRuns tools = Make(bounds);
  for (int number = 1; number <= 8; ++number) Ask(tools, "a", number);
  EXPECT_LE(runs.size(), 3U);
  EXPECT_EQ(limits_seen[0].time, milliseconds(150));
  EXPECT_LT(limits_seen[1].time, milliseconds(150));
  EXPECT_EQ(Ask(tools, "b", 1),
            "/bin/sh: was not run: the time limit of the whole collection, 200 ms, was over");

  answer = [](const std::string&, int) {
    std::this_thread::sleep_for(milliseconds(70));
    standin::ProcessResult suspended = Exited(0, "x");
    suspended.suspended = milliseconds(70);
    return suspended;
  };
  ToolRuns unhurried = Make(bounds);
  for (int number = 1; number <= 4; ++number) EXPECT_EQ(Ask(unhurried, "a", number), "x");

  runs.clear();
  limits_seen.clear();
  answer = [](const std::string&, int number) {
    return number == 1 ? Exited(0, std::string(60, 'x'))
                       : Failed(standin::ProcessEnd::kOutputLimit, "was stopped after 40 bytes");
  };
  RunBounds small;
  small.output_bytes = 100;
  ToolRuns few = Make(small);
  Ask(few, "a", 1);
  EXPECT_TRUE(Ask(few, "a", 2).starts_with("/bin/sh: was stopped: the outputs of all runs had"));
  EXPECT_EQ(limits_seen[1].output_bytes, 40U);
  EXPECT_TRUE(Ask(few, "a", 3).starts_with("/bin/sh: was not run: the outputs before it"));
  EXPECT_EQ(Ask(few, "a", 1).size(), 60U);  // what is remembered stays
}

TEST_F(Runs, StopWhenNobodyWaitsForThem) {
  RunObserver observer;
  std::string why;
  observer.why_stop = [&why] { return why; };
  ToolRuns tools({}, Sharing::kOn, observer,
                 [](const std::string&, const Texts&, const standin::ProcessLimits&) {
                   return Exited(0, "x");
                 });
  EXPECT_EQ(Ask(tools, "a", 1), "x");
  why = "the reader has gone";
  EXPECT_EQ(Ask(tools, "a", 2), "/bin/sh: was not run: the reader has gone");
}

// Lines of a case: controller numbers and command, "*" for any; how a run ends, or its exit status;
// its output; its error output. The first one that fits is the answer.
TEST_F(Runs, TellAToolThatRefusesFromOneWithoutControllers) {
  CompareCases("tools/problems.txt", [this](const Texts& lines) {
    std::vector<Texts> rows;
    for (const std::string& line : lines) rows.push_back(CellsOf(line, "|"));
    answer = [&rows](const std::string& word, int number) {
      const auto row = std::ranges::find_if(rows, [&](const Texts& cells) {
        const bool has_number = cells.at(0).find(std::to_string(number)) != std::string::npos;
        return (has_number || cells[0] == "*") && (cells.at(1) == word || cells[1] == "*");
      });
      const std::string end = row->at(2);
      if (end == "killed") return Failed(standin::ProcessEnd::kSignalled, "was ended");
      if (end == "floods") return Failed(standin::ProcessEnd::kOutputLimit, "was stopped");
      return Exited(std::stoi(end), row->at(3), row->at(4));
    };
    ToolRuns tools = Make();
    std::string problems;
    for (const std::string& problem : Problems(tools)) problems += "  " + problem + "\n";
    return problems + "  =>\n";
  });
}

/// Each character as its kind.
std::string ShapeOf(std::string text) {
  for (char& c : text) {
    if (c >= '0' && c <= '9') c = '0';
    if (c >= 'a' && c <= 'z') c = 'a';
    if (c >= 'A' && c <= 'Z') c = 'A';
  }
  return text;
}

TEST(Recorder, KeepsThatOfAFileOnlyTheEndWasRead) {
  Recorder recorder;
  std::string told;
  standin::HostServices host = standin::Services();
  host.capture_file = [](const std::string& path) {
    standin::Services().file_cut({path, 3, 9});
    return "end";
  };
  host.open_file = [](const std::string&) { return std::fopen("/dev/null", "r"); };
  host.file_cut = [&told](const standin::FileCut& cut) { told += DescribeCut(cut).why + ";"; };
  const standin::ScopedServices real(host);
  {
    const standin::ScopedServices watched(recorder.Watch(host));
    EXPECT_EQ(standin::Services().capture_file("/log"), "end");
  }
  Recording recording;
  recording.files = recorder.GetFiles();
  const standin::HostServices replayed = ReplayServices(recording);
  EXPECT_EQ(replayed.capture_file("/log"), "end");
  std::fclose(replayed.open_file("/log"));
  EXPECT_EQ(replayed.capture_file("/other"), "");
  const std::string why = "only its newest 3 bytes of 9 were read;";
  EXPECT_EQ(told, why + why + why);
  EXPECT_EQ(recording.files[0].file_bytes, 9U);
}

TEST(Pseudonyms, ArePermutationsOfTextsThatLookAlike) {
  const Pseudonyms pseudonyms("key");
  for (const char* alike : {"0", "a", "aA", "0a0", "A-0", "\xc3\xa4"}) {
    std::set<std::string> all;
    std::set<std::string> seen;
    for (int i = 0; i < 300; ++i) {
      std::string text = alike;
      for (std::size_t at = 0, rest = std::size_t(i); at < text.size(); ++at) {
        const unsigned size = text[at] == '0' ? 10 : text[at] == '-' ? 1 : text[at] < 0 ? 1 : 26;
        text[at] = static_cast<char>(text[at] + int(rest % size));
        rest /= size;
      }
      all.insert(text);
      const std::string pseudonym = pseudonyms.Of(text);
      EXPECT_EQ(ShapeOf(pseudonym).substr(0, 1), ShapeOf(text).substr(0, 1));
      EXPECT_EQ(pseudonym.size(), text.size());
      seen.insert(pseudonym);
    }
    EXPECT_EQ(seen.size(), all.size()) << alike;
  }
  const std::string wwn = pseudonyms.Of("50E81C0000041D20");
  EXPECT_EQ(wwn.find_first_not_of("0123456789ABCDEF"), std::string::npos) << wwn;
  EXPECT_NE(wwn, "50E81C0000041D20");
  EXPECT_EQ(pseudonyms.OfName("host1.site"),
            pseudonyms.OfName("host1") + "." + pseudonyms.OfName("site"));
  EXPECT_NE(Pseudonyms("").Of("AB12345678"), Pseudonyms("").Of("AB12345678"));
}

TEST(Sanitize, HidesValuesAndKeepsWhatTheToolsMean) {
  const Pseudonyms pseudonyms("key");
  const auto p = [&](const char* text) { return pseudonyms.Of(text); };
  Recording recording;
  recording.host = "srv1.site";
  RunRecord& run = recording.runs.emplace_back();
  run.reason = "srv1: Okay is not there";
  run.whole_error_output = std::make_shared<std::string>("Okay on srv1.site, AB1234.");
  const std::string device = "BRELLOW BX73W10 S1FM";
  run.whole_output = std::make_shared<std::string>(
      "Logical drive name : Okay\nStatus : Okay\n  Serial number: AB1234 \r\n"
      "Device ID : " +
      device +
      "3308812\nDevice ID : SPULWERKTL200 DAT         A07L\n"
      "serial# : Not available\nName : [vol7]\nsaid vol7, AB1234, XAB1234 AB12345\n 1 | Okay | "
      "srv1 said Okay\n"
      "Controller name: srv1\nPart number : " +
      "M3308812\nName of it : no newline");
  recording.files = {{"/log", "time\tWRN\tOkay\tOkay: drive M3308812\nno tabs, Okay\n"}};
  Sanitize("key", recording);
  const std::string okay = p("Okay");
  const std::string serial = p("3308812");
  EXPECT_EQ(recording.host, p("srv1") + "." + p("site"));
  EXPECT_EQ(run.reason, p("srv1") + ": " + okay + " is not there");
  EXPECT_EQ(*run.whole_error_output,
            okay + " on " + p("srv1") + "." + p("site") + ", " + p("AB1234") + ".");
  EXPECT_EQ(*run.whole_output,
            "Logical drive name : " + okay + "\nStatus : Okay\n  Serial number: " + p("AB1234") +
                " \r\nDevice ID : " + device + serial +
                "\nDevice ID : SPULWERKTL200 DAT         A07L\nserial# : Not available\nName : [" +
                p("vol7") + "]\nsaid " + p("vol7") + ", " + p("AB1234") +
                ", XAB1234 AB12345\n 1 | Okay | " + p("srv1") + " said " + okay +
                "\nController name: " + p("srv1") + "\nPart number : M" + serial +
                "\nName of it : " + pseudonyms.OfName("no newline"));
  EXPECT_EQ(*recording.files[0].text, "time\tWRN\t" + okay + "\t" + okay + ": drive M" + serial +
                                          "\nno tabs, " + okay + "\n");
}

}  // namespace
