// The command as a user runs it: the real plug-in, loaded from its file, and real child processes.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/machine_files.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

// For shell scripts: the paths of this machine may hold anything but a quote.
constexpr char kCommand[] = "'" KRAID_BUILD_DIR "/bin/kraid-inventory'";
constexpr char kDemo[] = "'" KRAID_SOURCE_DIR "/demo'";
constexpr char kControllers[] = "KVXSG_krSCSIProtocolController";

void WriteFile(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

struct Outcome {
  int status;  // of the shell: 128 + N for an end by signal N
  std::string out;
  std::string err;
};

class Inventory : public testing::Test {
 protected:
  Inventory() {
    std::string pattern = testing::TempDir() + "kraid-XXXXXX";
    folder_ = mkdtemp(pattern.data());
  }
  ~Inventory() override { fs::remove_all(folder_); }

  /// Runs a shell script in the test's folder.
  Outcome Shell(const std::string& script) const {
    WriteFile(folder_ / "script", script);
    const int status =
        std::system(("cd '" + folder_.string() + "' && sh script >out 2>err").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            ReadFile(folder_ / "out"), ReadFile(folder_ / "err")};
  }

  Outcome Run(const std::string& arguments) const {
    return Shell(std::string(kCommand) + " " + arguments);
  }
  Outcome RunJson(const std::string& arguments) const { return Run("--format json " + arguments); }

  /// A kelvcmd that answers as the sample machine's, but for one command line.
  void ReplaceTool(const std::string& command_line, const std::string& script) const {
    WriteFile(folder_ / "kraid/kelvcmd", "#!/bin/sh\nif [ \"$*\" = '" + command_line +
                                             "' ]; then\n" + script + "\nelse exec " + kDemo +
                                             "/kraid/kelvcmd \"$@\"\nfi\n");
    fs::permissions(folder_ / "kraid/kelvcmd", fs::perms::all);
  }

  std::vector<std::string> FilesLeft() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      const std::string name = entry.path().filename();
      if (name != "script" && name != "out" && name != "err" && name != "kraid") {
        names.push_back(name);
      }
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  fs::path folder_;
};

TEST_F(Inventory, OfAMachineWithoutToolsIsEmptyAndFine) {
  if (fs::exists("/usr/KelvMgr")) GTEST_SKIP() << "this machine has a RAID manager";
  const auto start = std::chrono::steady_clock::now();
  const Outcome outcome = RunJson("--log log");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  const Json document = Json::parse(outcome.out);
  EXPECT_EQ(document["exit_status"], 0);
  EXPECT_TRUE(document["instances"].empty());
  std::string problems;
  for (const Json& problem : document["problems"]) {
    problems +=
        problem["what"].get<std::string>() + ": " + problem["why"].get<std::string>() + "\n";
  }
  EXPECT_EQ(
      problems,
      "./kraid/kelvcmd: 72 of 72 runs failed: cannot be started: No such file or directory\n"
      "./kraid/hrconf: 24 of 24 runs failed: cannot be started: No such file or directory\n"
      "./kraid/arcconf: 16 of 16 runs failed: cannot be started: No such file or directory\n");

  using Commands = std::vector<std::pair<const char*, const char*>>;
  std::string expected;
  const auto log_runs = [&expected](const std::string& path, const char* run, const char* abort,
                                    const Commands& commands) {
    for (int number = 1; number <= 8; ++number) {
      for (const auto& [word, option] : commands) {
        expected += std::string("3\t") + run + " Controller# :" + std::to_string(number) +
                    " opt1: " + word + " opt2: " + option + "\n3\t" + abort + ": " + path +
                    ": cannot be started: No such file or directory\n";
      }
    }
  };
  const auto log_tool = [&](const char* path, const char* run, const char* abort,
                            const Commands& commands) {
    log_runs(path, run, abort, commands);
    log_runs(path, run, abort, {{"getconfig", "al"}});
  };
  log_tool("./kraid/kelvcmd", " KELVCMD is using Spawnprocess.", "Kelvcmd aborted",
           {{"getconfig", "al"},
            {"getstatus", "device"},
            {"getbst", "device"},
            {"getevent", "device"},
            {"getevent", "ddd"},
            {"getevent", "soft"},
            {"getevent", "hard"},
            {"getsubstat", "device"}});
  log_tool("./kraid/hrconf", " HRCCONF  using Spawnprocess.", "hrconf aborted",
           {{"getconfig", "al"}, {"getstatus", "device"}});
  log_tool("./kraid/arcconf", " ARCCONF  using Spawnprocess.", "ArcConf Aborted",
           {{"getconfig", "al"}});
  EXPECT_EQ(ReadFile(folder_ / "log"), expected +
                                           "3\tKraidRawDataVector is empty: inside KrPlugin\n"
                                           "3\tRaidMgrLog does not exist: inside KrPlugin\n");
}

/// The document of the sample machine as it is everywhere: without the machine's name.
Json Anywhere(const Outcome& outcome) {
  std::string text = outcome.out;
  const std::string host = Json::parse(text)["host"].dump();
  for (auto at = text.find(host); at != std::string::npos; at = text.find(host, at + 6)) {
    text.replace(at, host.size(), "\"HOST\"");
  }
  return Json::parse(text);
}

TEST_F(Inventory, OfTheSampleMachineIsAsItWas) {
  const Outcome outcome = RunJson(std::string("--root ") + kDemo);
  EXPECT_EQ(outcome.status, 0);
  const Json document = Anywhere(outcome);
  EXPECT_EQ(document["problems"].dump(), "[]");
  // What the tools print stands in the sample machine already; the manager's log has a test of its
  // own, where it can be shown.
  std::string text;
  int raw_outputs = 0;
  for (Json instance : document["instances"]) {
    const std::string name = instance["class"];
    if (name == "KVXSG_krRawData") {
      ++raw_outputs;
    } else if (name != "KVXSG_LogRecord_RAIDMgrEvent") {
      if (instance["properties"].contains("StatisticTime")) {
        instance["properties"]["StatisticTime"] = "NOW";
      }
      text += instance.dump(1) + "\n";
    }
  }
  EXPECT_GE(raw_outputs, 64 + 16 + 8);
  CompareExpected("sample/inventory.json", text);
}

TEST_F(Inventory, AssociatesWhatWasCommittedBefore) {
  const auto count = [this](const std::string& arguments) {
    const Json document =
        Json::parse(RunJson("--root " + std::string(kDemo) + " " + arguments).out);
    std::map<std::string, int> counts;
    for (const Json& instance : document["instances"]) {
      ++counts[instance["class"].get<std::string>()];
    }
    return counts["KVXSG_krProtocolControllerForUnit"];
  };
  const std::string association = "KVXSG_krProtocolControllerForUnit ";
  const std::string ends = std::string("KVXSG_krLogicalDisk ") + kControllers + " ";
  EXPECT_EQ(count(association + ends), 0);
  EXPECT_EQ(count(ends + association), 12);
  EXPECT_EQ(count("--passes 2 " + association + ends), 12);
  EXPECT_EQ(count("--passes 2 " + ends + association), 12 + 24);  // every disk is there twice
}

TEST_F(Inventory, LosesNoMoreThanTheRunOfAToolThatMisbehaves) {
  const struct {
    const char* limit_s;  // for all runs: short only where the limit is what ends one
    const char* script;
    const char* problem;  // "" when the output is taken as it is
  } cases[] = {
      {"1.5", "exec sleep 60", "was stopped after 1500 ms"},
      {"1.5", "trap '' TERM; while :; do sleep 0.1; done", "was stopped after 1500 ms"},
      {"60", "exec yes", "was stopped after 64 MiB of output"},
      {"60", "kill -SEGV $$", "was ended by signal 11"},
      {"60", R"(printf '\377\000\n\001')", ""},
      {"60", "sleep 30 & exit 9", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    ReplaceTool("getbst 1 device", c.script);
    const Outcome outcome =
        RunJson(std::string("--tool-timeout ") + c.limit_s + " " + kControllers);
    EXPECT_EQ(outcome.status, 0);
    const Json document = Json::parse(outcome.out);
    EXPECT_EQ(document["instances"].size(), 2U);
    const std::string problems = document["problems"].dump();
    if (*c.problem == '\0') {
      EXPECT_EQ(problems.find("kelvcmd"), std::string::npos) << problems;
    } else {
      EXPECT_NE(problems.find(std::string("2 of 83 runs failed: ") + c.problem), std::string::npos)
          << problems;
    }
  }
}

TEST_F(Inventory, NamesTheRunWhoseOutputEndsTooEarly) {
  // All that read on to an end marker; "getstatus" is searched for labels only.
  const std::pair<const char*, const char*> truncated[] = {
      {"getconfig 1 al", "Controller information\\nPhysical device information\\nrule\\n"},
      {"getbst 1 device", "Get bad stripe information\\nLogical drive 1 - 17 stripes\\n"},
      {"getevent 1 device", "Device event table:\\nrule\\nhead\\n| 1 |\\n"},
      {"getevent 1 ddd", "+---\\n"},
      {"getevent 1 soft", "Controller Soft Event Log\\n1\\n"},
      {"getevent 1 hard", "Controller Hard Event Log\\n1\\n"},
      {"getsubstat 1 device", "A:1 C:0\\n"},
  };
  for (const auto& [run, text] : truncated) {
    const std::string command = run;
    ReplaceTool(command, std::string("printf '") + text + "'");
    const Outcome outcome = RunJson(std::string("--passes 2 ") + kControllers);
    EXPECT_EQ(outcome.status, 1) << command;
    EXPECT_TRUE(outcome.err.starts_with("kraid-inventory: ./kraid/kelvcmd " + command +
                                        ": its output ends too early"))
        << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    const Json document = Json::parse(outcome.out);
    EXPECT_EQ(document["exit_status"], 1);
    EXPECT_EQ(document["problems"].back()["what"], "./kraid/kelvcmd " + command);
  }
}

TEST_F(Inventory, TellsWhatAPluginThrewAndPrintsWhatItCommitted) {
  const struct {
    const char* classes;
    const char* message;
  } cases[] = {
      {"A", "collection: it failed before any tool ran: no tool?[2J ran\n"},
      {"A B", "class B: publishing it failed: first line?second line\n"},
      {"A int", "class int: publishing it failed: an unknown exception\n"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = RunJson("--plugin '" KRAID_BUILD_DIR "/tests/libodd.pi.so' --log log " +
                                    std::string(c.classes));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.ends_with(std::string("?\nkraid-inventory: ") + c.message));
    EXPECT_EQ(Json::parse(outcome.out)["instances"].size(), 1U);
    EXPECT_EQ(ReadFile(folder_ / "log"), "7\tInit\\nwith \\\\\n7\tDeInit\n7\tPrepareForUnload\n");
  }
  // The second pass starts anew: what the first one published is not what failed.
  const Outcome twice = RunJson("--plugin '" KRAID_BUILD_DIR "/tests/libodd.pi.so' --passes 2 A B");
  EXPECT_EQ(Json::parse(twice.out)["problems"].size(), 1U);
  EXPECT_EQ(Json::parse(twice.out)["instances"].size(), 2U);
}

TEST_F(Inventory, GoesOnToTheNextPassAfterAFailure) {
  // The capturing run is fine, the parsing run of the first pass is not, the next ones are.
  ReplaceTool("getconfig 2 al",
              "n=$(cat count 2>/dev/null); echo x$n >count\n"
              "case $n in x) printf 'Controller information\\nPhysical device information\\n' ;;\n"
              "*) exec " +
                  std::string(kDemo) + "/kraid/kelvcmd \"$@\" ;; esac");
  const Outcome outcome = RunJson(std::string("--passes 3 ") + kControllers);
  EXPECT_EQ(outcome.status, 1);
  const Json document = Json::parse(outcome.out);
  EXPECT_EQ(document["instances"].size(), 4U);  // two controllers in each pass that went well
}

TEST_F(Inventory, TakesClassesInTheirOrderWithRepeatsAndUnknownNames) {
  const Outcome outcome = RunJson(std::string("--root ") + kDemo + " " + kControllers +
                                  " Unknown KVXSG_krRawData " + kControllers);
  ASSERT_EQ(outcome.status, 0);
  std::string classes;
  const Json document = Json::parse(outcome.out);
  for (const Json& instance : document["instances"]) {
    if (instance["class"] == kControllers) {
      classes += "C";
    } else if (!classes.ends_with("r")) {
      classes += "r";
    }
  }
  EXPECT_EQ(classes, "CCCCrCCCC");
}

TEST_F(Inventory, RefusesWrongCommandLines) {
  WriteFile(folder_ / "file", "no plug-in");
  for (const char* arguments :
       {"--bogus", "--format xml", "--color red", "--list A", "--list --format json",
        "--root absent", "--plugin absent", "--passes 0", "--passes x", "--tool-timeout 0",
        "--tool-timeout -1", "--tool-timeout nan", "--tool-timeout 1s", "--output ''",
        "--log x --output ./x", "--output", "--root file"}) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_TRUE(outcome.err.starts_with("kraid-inventory: ")) << arguments;
  }
  EXPECT_EQ(Run("--help").status, 0);
  EXPECT_EQ(Run("--version").out, "kraid-inventory " KRAID_VERSION "\n");
}

TEST_F(Inventory, AnswersAMonitoringSystemInOneLineWhateverHappens) {
  const struct {
    std::string arguments;
    int status;
    const char* start;
  } cases[] = {
      {std::string("--check --root ") + kDemo, 2, "KRAID CRITICAL - 3 critical, 5 warnings: contr"},
      {"--check", 3, "KRAID UNKNOWN - no controller was found | controllers=0;;;0 logical_drives"},
      {"--check --plugin /dev/null", 3, "KRAID UNKNOWN - plug-in /dev/null: cannot be loaded"},
      {"--check --plugin script", 3, "KRAID UNKNOWN - plug-in "},
      {"--check --output absent/file", 3, "KRAID UNKNOWN - cannot write "},
      {"--check --format json", 3, "KRAID UNKNOWN - "},
      {"--bogus --check", 3, "KRAID UNKNOWN - "},
      {"--check KVXSG_krDiskDrive", 3, "KRAID UNKNOWN - "},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Run(c.arguments);
    EXPECT_EQ(outcome.status, c.status) << c.arguments;
    EXPECT_TRUE(outcome.out.starts_with(c.start)) << outcome.out;
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1) << outcome.out;
  }
  // A collection that breaks off does not pass for a healthy machine.
  ReplaceTool("getbst 1 device", "printf 'Get bad stripe information\\nLogical drive 1 - 1\\n'");
  EXPECT_EQ(Run("--check").status, 3);
}

TEST_F(Inventory, KeepsToTheWidthAndTheCharactersThatThereAre) {
  const std::string run = std::string(kCommand) + " --root " + kDemo;
  std::string narrow;
  for (const char* classes : {kControllers, ""}) {
    for (const std::size_t width : {40U, 60U}) {
      std::string command = "COLUMNS=" + std::to_string(width);
      command.append(" LC_ALL=C ").append(run).append(" ").append(classes);
      narrow = Shell(command).out;
      std::istringstream lines(narrow);
      for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), width) << line;
        EXPECT_TRUE(
            std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; }));
      }
      EXPECT_EQ(Shell(command).out, narrow);
    }
  }
  const std::string wide = Shell("COLUMNS=200 LC_ALL=C.UTF-8 " + run).out;
  EXPECT_NE(wide.find("\n  └─ "), std::string::npos) << wide;
  // Nothing is lost in a narrow one.
  const auto words = [](const std::string& text) {
    std::istringstream in(text);
    return std::multiset<std::string>{std::istream_iterator<std::string>(in), {}};
  };
  const std::multiset<std::string> in_wide = words(wide);
  const std::multiset<std::string> in_narrow = words(narrow);
  for (const std::string& word : in_wide) {
    if (word.find('\xe2') != std::string::npos) continue;  // the lines of a tree
    EXPECT_GE(in_narrow.count(word), in_wide.count(word)) << word;
  }
}

TEST_F(Inventory, ColoursATerminalUnlessItIsToldNotTo) {
  const std::string run = std::string(kCommand) + " --root " + kDemo;
  const auto colours = [this](const std::string& environment, const std::string& command) {
    return Shell(environment + " " + command).out.find("\x1b[1;31mCRITICAL") != std::string::npos;
  };
  const auto on_terminal = [](const std::string& command) {
    return "script -qec \"" + command + "\" /dev/null";
  };
  EXPECT_FALSE(colours("TERM=xterm", run));
  EXPECT_TRUE(colours("TERM=xterm", run + " --color always"));
  EXPECT_TRUE(colours("env -u NO_COLOR TERM=xterm", on_terminal(run)));
  EXPECT_FALSE(colours("NO_COLOR=1 TERM=xterm", on_terminal(run)));
  EXPECT_FALSE(colours("env -u NO_COLOR TERM=dumb", on_terminal(run)));
  EXPECT_FALSE(colours("env -u NO_COLOR TERM=xterm", on_terminal(run + " --color never")));
  EXPECT_FALSE(colours("TERM=xterm", on_terminal(run + " --output file") + "; cat file"));
}

TEST_F(Inventory, HelpsWithTheNamesOfClasses) {
  const Outcome list = Run("--list");
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(std::count(list.out.begin(), list.out.end(), '\n'), 28);
  const Outcome outcome = Run(std::string("--root ") + kDemo + " krdiskgroup KVXSG_krDiskGroup");
  EXPECT_EQ(outcome.err,
            "kraid-inventory: the schema has no class krdiskgroup; did you mean "
            "KVXSG_krDiskGroup?\n");
  EXPECT_TRUE(
      outcome.out.starts_with("KVXSG_krDiskGroup\n"
                              "  CollectionID   KelvaRAID1ArrayA\n"
                              "  Array          A\n"
                              "  ControllerNum  1\n"
                              "  StripeOrder    1,0 1,1\n\n"))
      << outcome.out;
}

TEST_F(Inventory, ReportsAPluginThatCannotBeLoaded) {
  WriteFile(folder_ / "file", "no plug-in");
  const Outcome outcome = RunJson("--plugin file");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("cannot be loaded"), std::string::npos);
  EXPECT_EQ(Json::parse(outcome.out)["exit_status"], 1);
}

TEST_F(Inventory, WritesItsOutputWholeOrNotAtAll) {
  WriteFile(folder_ / "old", "before");
  fs::permissions(folder_ / "old", fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("old", folder_ / "link");
  EXPECT_EQ(RunJson("--output link").status, 0);
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_EQ(fs::status(folder_ / "old").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(Json::parse(ReadFile(folder_ / "old"))["exit_status"], 0);
  EXPECT_EQ(Run("--root / --output new").status, 0);  // a path of where it was started
  EXPECT_EQ(FilesLeft(), (std::vector<std::string>{"link", "new", "old"}));

  const struct {
    std::string arguments;
    const char* message;
  } failures[] = {
      {"--output absent/file", "No such file or directory"},
      {"--output /dev/full", "No space left on device"},
      {"--log absent/file", "No such file or directory"},
      {"--log /dev/full", "No space left on device"},
      {">/dev/full", "No space left on device"},
      {">&-", "Bad file descriptor"},
      {"--log log >&-", "Bad file descriptor"},
      {"--output loop", "Too many levels of symbolic links"},
  };
  fs::create_symlink("loop", folder_ / "loop");
  for (const auto& failure : failures) {
    const Outcome outcome = Run(failure.arguments);
    EXPECT_EQ(outcome.status, 3) << failure.arguments;
    EXPECT_NE(outcome.err.find(failure.message), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(Shell(std::string("{ ") + kCommand + " --format json --root " + kDemo +
                  "; echo $? >&2; } | head -c 1")
                .err,
            "3\n");
  EXPECT_TRUE(ReadFile(folder_ / "log").starts_with("3\t"));  // and no document in it
  EXPECT_EQ(FilesLeft(), (std::vector<std::string>{"link", "log", "loop", "new", "old"}));
  fs::create_symlink("later", folder_ / "ahead");
  EXPECT_EQ(Run("--output ahead").status, 0);
  EXPECT_TRUE(fs::is_symlink(folder_ / "ahead") && fs::is_regular_file(folder_ / "later"));
}

TEST_F(Inventory, WorksWithSignalsThatItsCallerIgnoresOrBlocks) {
  const Outcome outcome = Shell(std::string("env --ignore-signal=CHLD --block-signal=TERM ") +
                                kCommand + " --format json --root " + kDemo + " " + kControllers);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(Json::parse(outcome.out)["instances"].size(), 4U);
}

TEST_F(Inventory, LeavesNothingBehindWhenASignalEndsIt) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    // The tool says where it runs, in the shell and in a child of it; both have to go.
    ReplaceTool("getconfig 1 al", "sleep 61 & echo $$ $! >running; wait");
    WriteFile(folder_ / "result", "before");
    const Outcome outcome = Shell(
        // A shell starts background programs with SIGINT ignored, which a program is to respect.
        std::string("env --default-signal=INT ") + kCommand +
        " --output result & command=$!\n"
        "i=0; while [ ! -s running ] && [ $((i += 1)) -lt 200 ]; do sleep 0.05; done\n"
        "kill -" +
        std::to_string(number) +
        " $command; wait $command; echo $?; sleep 0.2\n"
        // Dead is also what nobody has reaped yet.
        "for pid in $(cat running); do grep -q '^State:.[^ZX]' /proc/$pid/status && echo alive\n"
        "done; rm running\n");
    EXPECT_EQ(outcome.out, std::to_string(128 + number) + "\n") << outcome.err;
    EXPECT_EQ(ReadFile(folder_ / "result"), "before");
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"result"});
  }
}

TEST_F(Inventory, ShowsProgressOnATerminalOnly) {
  const std::string run = std::string(kCommand) + " --output result --root " + kDemo;
  EXPECT_EQ(Shell(run).err, "");
  const std::string seen = Shell("TERM=xterm script -qec \"" + run + "\" /dev/null").out;
  EXPECT_NE(seen.find("run 83: ./kraid/kelvcmd getconfig 8 al"), std::string::npos) << seen;
  EXPECT_TRUE(seen.ends_with("\r\x1b[K")) << seen;
}

TEST_F(Inventory, ShowsTheErrorOutputOfToolsOnRequest) {
  const std::string root = std::string("--output result --root ") + kDemo;
  const std::string shown = Run("--verbose " + root).err;
  EXPECT_NE(shown.find("standard error of ./kraid/kelvcmd getevent 2 device:\n"), std::string::npos)
      << shown;
}

TEST_F(Inventory, OfTheSampleMachineHoldsItsManagersEvents) {
  const std::string with = "'" KRAID_SOURCE_DIR "/scripts/with-sample-machine.sh' ";
  const Outcome outcome = Shell(with + kCommand + " --format json --passes 3 --root " + kDemo +
                                " KVXSG_LogRecord_RAIDMgrEvent");
  if (outcome.err.find("no private mounts") != std::string::npos) GTEST_SKIP() << outcome.err;
  EXPECT_FALSE(fs::exists("/usr/KelvMgr"));
  std::string text;
  const Json document = Anywhere(outcome);
  for (const Json& instance : document["instances"]) {
    Json event = instance["properties"];
    const std::string message = event["Message"];
    if (message.starts_with("SpawnedProcess") || message == "No RAID Manager log entries.") {
      event["MessageTimestamp"] = "NOW";
    }
    for (const char* name : {"MessageTimestamp", "Severity", "MachineName", "Message"}) {
      text += event[name].dump() + " ";
    }
    text += "\n";
  }
  CompareExpected("sample/manager_events.txt", text);
}

}  // namespace
