// The parts of the command that need no whole run of it.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <map>
#include <new>
#include <tuple>

#include "hmz/exception.h"
#include "inventory/command/class_list.h"
#include "inventory/command/collection.h"
#include "inventory/command/collection_lock.h"
#include "inventory/command/log_file.h"
#include "inventory/command/messages.h"
#include "inventory/command/options.h"
#include "inventory/command/progress_line.h"
#include "inventory/machine/read_machine.h"
#include "inventory/machine/unread_lines.h"
#include "inventory/print/check_line.h"
#include "inventory/print/mof_printer.h"
#include "inventory/runs/run_problems.h"
#include "inventory/runs/tool_runs.h"
#include "standin/host_services.h"
#include "standin/schema.h"
#include "tests/machine_files.h"

namespace {

using Texts = std::vector<std::string>;

TEST(LogFile, HasOneLineForEachMessage) {
  const std::string path = testing::TempDir() + "kraid-log-" + std::to_string(getpid());
  std::ofstream(path) << "longer than what is going to stand there";
  chmod(path.c_str(), 04755);
  LogFile log(FindPlace(path));
  log.Write(3, "first\\line\nsecond\ttab");
  log.Write(-1, "");
  EXPECT_EQ(ReadFile(path), "3\tfirst\\\\line\\nsecond\ttab\n-1\t\n");
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0755));
  std::filesystem::remove(path);
  EXPECT_EQ(log.GetError(), "");
}

/// The real plug-in on the sample machine, some of whose runs go another way.
class SampleCollection : public testing::Test {
 protected:
  /// `change` may change what a run of a command line comes to.
  Report Do(const std::function<void(const std::string& command_line,
                                     standin::ProcessResult& result)>& change,
            Sharing sharing = Sharing::kOn) {
    runs_ = 0;
    ToolRuns tools({}, sharing, {},
                   [&](const std::string& program, const Texts& arguments, const auto&) {
                     ++runs_;
                     std::string command_line = program;
                     for (const std::string& argument : arguments) command_line += " " + argument;
                     const auto found = outputs_.find(command_line);
                     standin::ProcessResult result;
                     result.output = found == outputs_.end() ? "not present\n" : found->second;
                     change(command_line, result);
                     return result;
                   });
    standin::HostServices services = standin::Services();
    services.spawn_process = [&tools](const auto& program, const auto& arguments) {
      return tools.Run(program, arguments);
    };
    const standin::ScopedServices in_force(services);
    options_.as_host = sharing == Sharing::kOff;
    options_.plugin = KRAID_BUILD_DIR "/lib/libkraid.pi.so";
    options_.classes.clear();
    for (const auto& known : standin::Schema()) options_.classes.emplace_back(known.name);
    collection_ = Collect(options_, tools);
    failures_.clear();
    for (const Problem& failure : collection_.failures) {
      failures_.append(NameOf(failure.kind)).append(failure.is_blind ? "!" : "");
      failures_.append(" ").append(failure.what).append(": ").append(failure.why);
    }
    return {"h",
            0,
            FindRunProblems(tools.GetRecords()),
            *collection_.repository,
            0,
            tools.GetRecords(),
            tools.GetRequests()};
  }

  /// Tool and number of each controller; of those of whose output none was made behind a "!".
  static std::string Tools(const Report& report) {
    const Machine machine = ReadMachine(report);
    std::string tools;
    for (const Controller& controller : machine.controllers)
      tools += (controller.tool ? controller.tool->Describe() : "") + ";";
    for (const ToolNumber& tool : machine.unpublished) tools += "!" + tool.Describe();
    return tools;
  }

  std::map<std::string, std::string> outputs_ = ToolOutputs("sample");
  Options options_;
  Collection collection_;
  std::string failures_;  // of it
  int runs_ = 0;
};

TEST_F(SampleCollection, LosesOneControllerAtMostWhereverAnOutputIsCut) {
  std::size_t cuts = 0;
  std::size_t unreadable = 0;
  for (const auto& [cut_line, whole] : outputs_) {
    if (cut_line.find("kelvcmd") == std::string::npos ||
        cut_line.find(" 2 ") == std::string::npos) {
      continue;
    }
    for (std::size_t end = 0; end != std::string::npos; end = whole.find('\n', end + 1)) {
      SCOPED_TRACE(cut_line + " " + std::to_string(end));
      const Report report = Do([&, &line = cut_line](const auto& run, auto& result) {
        if (run == line) result.output.resize(end + 1);
      });
      EXPECT_EQ(failures_, "");
      EXPECT_EQ(runs_, 88);  // none for another attempt
      const std::string tools = Tools(report);
      if (tools != "kelvcmd 1;kelvcmd 2;hrconf 1;arcconf 1;") {
        EXPECT_TRUE(tools.starts_with("kelvcmd 1;hrconf 1;arcconf 1;")) << tools;
        EXPECT_FALSE(report.problems.empty());  // what is lost is told of
      }
      for (const Problem& problem : report.problems) {
        EXPECT_EQ(problem.what, cut_line);
        if (problem.kind == ProblemKind::kOutputUnreadable) ++unreadable;
      }
      ++cuts;
    }
  }
  EXPECT_GT(cuts, 190U);
  EXPECT_GT(unreadable, 100U);
}

TEST_F(SampleCollection, KnowsWhoseAControllerIsThoughARepeatedRunFails) {
  int times = 0;
  const Report report = Do(
      [&times](const auto& run, auto& result) {
        if (run == "./kraid/hrconf getconfig 1 al" && ++times == 2) {
          result.end = standin::ProcessEnd::kSignalled;
          result.failure = "./kraid/hrconf: was ended by signal 9";
        }
      },
      Sharing::kOff);
  EXPECT_EQ(Tools(report), "kelvcmd 1;kelvcmd 2;arcconf 1;!hrconf 1");
  EXPECT_EQ(ReadMachine(report).controllers.back().battery.state.text, "Charging");
  EXPECT_EQ(runs_, 64 + 8 + 7 + 4 + 16 + 8 + 8 + 8);
}

TEST_F(SampleCollection, LosesTheManagersLogAloneWhenReadingItFails) {
  standin::HostServices services = standin::Services();
  services.file_exists = [](const std::string&) { return true; };
  services.open_file = [](const std::string&) { return std::fopen("/dev/null", "r"); };
  services.capture_file = [](const std::string&) -> std::string { throw std::bad_alloc(); };
  const standin::ScopedServices in_force(services);
  const auto unchanged = [](const auto&, const auto&) {};
  const std::string why = " /usr/KelvMgr/KelvEvtA.log: reading it failed: std::bad_alloc";
  const Report salvaged = Do(unchanged);
  EXPECT_EQ(failures_, "log_unreadable" + why);
  EXPECT_TRUE(salvaged.problems.empty());
  EXPECT_EQ(Tools(salvaged), "kelvcmd 1;kelvcmd 2;hrconf 1;arcconf 1;");
  EXPECT_EQ(runs_, 88);
  Do(unchanged, Sharing::kOff);
  EXPECT_EQ(failures_, "plugin_failed!" + why);
}

TEST_F(SampleCollection, KeepsWhatWasPublishedBeforeTheRepositoryWasFull) {
  options_.max_instances = 100;  // in each pass
  options_.passes = 3;
  const Report report = Do([](const auto&, const auto&) {});
  EXPECT_EQ(failures_,
            "repository_full! class KVXSG_krProtocolControllerForPhysicalDisk: publishing it ended "
            "early: the repository is full: it holds 300 instances; the classes behind it are "
            "missing, --max-instances allows more");
  EXPECT_EQ(report.repository.GetCommitted().size(), 300U);
}

TEST_F(SampleCollection, MissesLabelsThatHealthDependsOn) {
  outputs_["./kraid/kelvcmd getconfig 1 al"].replace(
      outputs_["./kraid/kelvcmd getconfig 1 al"].find("PFA (Yes/No)"), 12, "Pfa (yes/no)");
  const Report report = Do([](const auto&, const auto&) {});
  const Machine machine = ReadMachine(report);
  std::string findings;
  for (const Finding& finding : machine.findings) findings += finding.What() + ";";
  EXPECT_NE(findings.find(";no PFA is reported, unlike of other drives;"), std::string::npos)
      << findings;
  const std::vector<Problem> unread = FindUnreadLines(report, machine);
  ASSERT_EQ(unread.size(), 4U);
  // "No" stands in many a property: it is the missing label that shows.
  EXPECT_EQ(unread[0].why,
            "2 lines of it show up in nothing that was published: Additional information");
}

TEST(CollectionLock, IsHeldByOneAtATime) {
  const std::string root = testing::TempDir();
  const auto take = [&root](CollectionLock& lock, const char* suffix) {
    std::optional limit = std::chrono::milliseconds(100);
    return lock.Take(root + suffix, limit, [](const std::string&) {});
  };
  {
    CollectionLock first;
    CollectionLock second;
    CollectionLock elsewhere;
    EXPECT_EQ(take(first, ""), "");
    EXPECT_TRUE(
        take(second, "/./")
            .starts_with("another collection here, of process " + std::to_string(getpid()) + " ("));
    EXPECT_EQ(take(elsewhere, "/.."), "");
  }
  CollectionLock again;
  EXPECT_EQ(take(again, ""), "");
}

TEST(ClassList, FindsTheNearestName) {
  const std::pair<const char*, const char*> cases[] = {
      {"KVXSG_krDiskDrive", "KVXSG_krDiskDrive"},  {"krdiskdrive", "KVXSG_krDiskDrive"},
      {"KVXSG_krDiskDrives", "KVXSG_krDiskDrive"}, {"DiskGroup", "KVXSG_DiskGroup"},
      {"softevent", "KVXSG_LogRecord_SoftEvent"},  {"KVXSG_RawData", "KVXSG_krRawData"},
  };
  for (const auto& [name, nearest] : cases) EXPECT_EQ(NearestClass(name), nearest);
}

TEST(Collection, TellsWhatThrewAndWhere) {
  const struct {
    Texts classes;
    int passes;
    std::string outcome;  // instances, the first of the latest pass, what the plug-in logs
    std::string failure;  // the only one
  } cases[] = {
      {{"fine", "B", "C"}, 2, "2 1 +BCBC-.", ""},
      {{"once", "B"}, 2, "1 0 +B-.", ""},
      {{"lines"}, 1, "1 0 +-.", "collection: it failed before any tool ran: two\nlines"},
      {{"first"}, 3, "3 2 +-.", "collection: it failed before any tool ran: two\nlines"},
      {{"later", "B"}, 2, "2 1 +B-.", "collection: it failed before any tool ran: later"},
      {{"int", "B", "C"}, 1, "1 0 +BC-.", "class C: publishing it failed: an unknown exception"},
      {{"lines", "B"}, 2, "2 1 +BB-.", "class B: publishing it failed: two\nlines"},
      {{"run lines"}, 1, "1 0 +-.", "/bin/echo 1 al: the collection failed during this run or af"},
      {{"read run lines"}, 1, "1 0 +-.", "/bin/echo 1 al: the collection failed during this run "},
      {{"read lines"}, 1, "1 0 +-.", "/log: reading it failed: two\nlines"},
      {{"run vector"}, 1, "1 0 +-.", "/bin/echo 1 al: its output ends too early: lines that have"},
      {{"run short"}, 1, "1 0 +-.", "/bin/echo 1 al: its output holds a line that is too short t"},
      {{}, 1, "0 0 ", "plug-in /dev/null: cannot be loaded: "},
  };
  std::string log;
  for (const auto& c : cases) {
    ToolRuns tools({}, Sharing::kOff);
    log.clear();
    standin::HostServices services = standin::Services();
    services.spawn_process = [&tools](const auto& program, const auto& arguments) {
      return tools.Run(program, arguments);
    };
    services.log = [&log](int, const auto& text) { log += text; };
    const standin::ScopedServices in_force(services);
    Options options;
    options.plugin = c.classes.empty() ? "/dev/null" : KRAID_BUILD_DIR "/tests/libodd.pi.so";
    options.classes = c.classes;
    options.passes = c.passes;
    options.as_host = true;
    const Collection collection = Collect(options, tools);
    EXPECT_EQ(std::to_string(collection.repository->GetCommitted().size()) + " " +
                  std::to_string(collection.latest_pass) + " " + log,
              c.outcome);
    std::string failures;
    for (const Problem& failure : collection.failures) {
      EXPECT_EQ(failure.kind, ProblemKind::kPluginFailed);
      failures += failure.what + ": " + failure.why;
    }
    EXPECT_TRUE(c.failure.empty() ? failures.empty() : failures.starts_with(c.failure)) << failures;
  }
  standin::Services().log(3, "not in force any more");
  EXPECT_EQ(log, "");
}

/// What comes of a command line, whose words stand one blank apart.
struct Parsed {
  explicit Parsed(const std::string& line) {
    Texts words = {"program"};
    for (const char c : line.empty() ? "" : " " + line)
      c == ' ' ? words.emplace_back() : words.back() += c;
    std::vector<const char*> arguments;
    for (const std::string& word : words) arguments.push_back(word.c_str());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    options = ParseOptions(static_cast<int>(words.size()), arguments.data(), exit_status);
    err = testing::internal::GetCapturedStderr();
    out = testing::internal::GetCapturedStdout();
  }
  int exit_status = -1;
  std::optional<Options> options;
  std::string out;
  std::string err;
};

TEST(Options, RefuseWhatIsWrong) {
  for (const auto& row : Rows("wrong_options.txt")) {
    const std::string& line = row[0];
    const Parsed parsed(line);
    const bool is_check = line.find("--check") != std::string::npos;
    EXPECT_EQ(parsed.exit_status, is_check ? 3 : 2) << line;
    EXPECT_FALSE(parsed.options) << line;
    EXPECT_TRUE(parsed.out.starts_with(is_check ? "KRAID UNKNOWN - " : "")) << parsed.out;
    EXPECT_EQ(std::count(parsed.out.begin(), parsed.out.end(), '\n'), is_check ? 1 : 0) << line;
    EXPECT_TRUE(parsed.err.starts_with("kraid-inventory: ")) << parsed.err;
    EXPECT_TRUE(parsed.err.ends_with("\nTry 'kraid-inventory --help' for the options.\n"));
  }
}

TEST(Options, SayWhatIsAskedFor) {
  const Parsed nothing("");
  EXPECT_EQ(nothing.err, "");
  EXPECT_TRUE(nothing.options->all_classes);
  EXPECT_EQ(nothing.options->classes.size(), 28U);
  EXPECT_EQ(nothing.options->plugin, KRAID_BUILD_DIR "/lib/kraid-inventory/libkraid.pi.so");
  EXPECT_EQ(nothing.options->tool_timeout, std::chrono::seconds(60));
  EXPECT_EQ(Parsed("--compare /x/../y").options->earlier, "/x/../y");  // "x" may be a link
  EXPECT_EQ(Parsed("--check --expect /y").options->earlier, "/y");
  EXPECT_EQ(Parsed("--check").options->view, PrintCheck);

  const Parsed much(
      "--root / --plugin /dev/../dev/null --format mof --color never --output /x/./y --log /z "
      "--passes 3 --tool-timeout 1.5 --verbose KVXSG_krDiskDrive krRAWdata KVXSG_krDiskDrive");
  EXPECT_EQ(much.err,
            "kraid-inventory: the schema has no class krRAWdata; did you mean KVXSG_krRawData?\n");
  const Options& options = *much.options;
  EXPECT_EQ(options.classes, (Texts{"KVXSG_krDiskDrive", "krRAWdata", "KVXSG_krDiskDrive"}));
  EXPECT_EQ((Texts{options.root, options.plugin, options.output, options.log}),
            (Texts{"/", "/dev/../dev/null", "/x/./y", "/z"}));
  EXPECT_EQ(std::tuple(options.all_classes, options.view, options.color, options.passes,
                       options.tool_timeout.count(), options.verbose),
            std::tuple(false, &PrintMof, Color::kNever, 3, 1500, true));
  for (const char* line : {"--version", "--help", "--list"}) {
    EXPECT_EQ(Parsed(line).exit_status, 0);
    EXPECT_FALSE(Parsed(line).options);
  }
}

TEST(Messages, LetNoCodesReachTheTerminal) {
  const std::string odd = "a\x1b[2J\n\xc2\x9b\xff\xc3\xbc";
  const std::string fine = "a?[2J?<U+009B>\xef\xbf\xbd\xc3\xbc";
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  EXPECT_EQ(Refuse(odd, true, 2), 3);
  RunRecord run;
  run.program = "./tool";
  run.arguments = {odd};
  run.error_output = odd;
  ShowRun(run);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "kraid-inventory: " + fine + "\nkraid-inventory: standard error of ./tool " + fine +
                ":\na?[2J\n<U+009B>\xef\xbf\xbd\xc3\xbc\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "KRAID UNKNOWN - a?[2J <U+009B>\xef\xbf\xbd\xc3\xbc\n");
  for (const char* start : {"", "--", "--format ", "--root "}) {
    const std::string err = Parsed(start + odd).err;
    EXPECT_NE(err.find(fine), std::string::npos) << err;
  }
}

TEST(ProgressLine, HoldsAsMuchAsFits) {
  const std::pair<const char*, const char*> cases[] = {
      {"12345678", "12345678"},
      {"1234567890", "123456789"},
      {"1234567\xc3\xbcx", "1234567\xc3\xbc"},
      {"12345678\xc3\xbc", "12345678"},
      {"a\x1b[2J\n\t\xc2\x9bx", "a?[2J  <U"},
  };
  for (const auto& [text, line] : cases) EXPECT_EQ(FittingLine(text, 9), line);
}

}  // namespace
