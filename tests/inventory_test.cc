// The command as a user runs it: the real plug-in, loaded from its file, and real child processes.
// What needs no whole run stands in command_test and output_file_test.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "tests/machine_files.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

// For shell scripts: the paths of this machine may hold anything but a quote.
// The sources, and the tests' own folders, may be anybody's.
constexpr char kCommand[] = "'" KRAID_BUILD_DIR "/bin/kraid-inventory' --trust-tools";
constexpr char kDemo[] = "'" KRAID_SOURCE_DIR "/demo'";
constexpr char kControllers[] = "KVXSG_krSCSIProtocolController";

void WriteFile(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

/// The document as it is on every machine: without the name of this one.
Json Anywhere(std::string text) {
  const std::string host = Json::parse(text)["host"].dump();
  for (auto at = text.find(host); at != std::string::npos; at = text.find(host, at + 6)) {
    text.replace(at, host.size(), "\"HOST\"");
  }
  return Json::parse(text);
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

  /// A kelvcmd that answers as the sample machine's, but for some command lines.
  void ReplaceRuns(const std::vector<std::pair<std::string, std::string>>& scripts) const {
    std::string tool = "#!/bin/sh\ncase $* in\n";
    for (const auto& [command_line, script] : scripts) {
      tool.append("'").append(command_line).append("')\n").append(script).append("\n;;\n");
    }
    WriteFile(folder_ / "kraid/kelvcmd",
              tool + "*) exec " + kDemo + "/kraid/kelvcmd \"$@\" ;;\nesac\n");
    fs::permissions(folder_ / "kraid/kelvcmd", fs::perms::all);
  }

  /// What is there that the test did not begin with.
  std::set<std::string> FilesMade() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names.insert(entry.path().filename().string());
    }
    for (const char* own : {"script", "out", "err", "kraid"}) names.erase(own);
    return names;
  }

  fs::path folder_;
};

TEST_F(Inventory, OfAMachineWithoutToolsIsEmptyAndFine) {
  if (fs::exists("/usr/KelvMgr")) GTEST_SKIP() << "this machine has a RAID manager";
  const Outcome outcome = Run("--format json --log log");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  Json document = Anywhere(outcome.out);
  for (const char* varying : {"generator", "collected_at", "duration_seconds"}) {
    document.erase(varying);
  }
  CompareExpected("no_tools/inventory.json", document.dump(1) + "\n");
  CompareExpected("no_tools/log.txt", ReadFile(folder_ / "log"));
}

TEST_F(Inventory, SaysWhatHasChangedSinceADocument) {
  ReplaceRuns({});
  ASSERT_EQ(Run("--format json --output before.json").status, 0);
  const Outcome same = Run("--brief --compare before.json");
  EXPECT_NE(same.out.find("\nChanges since 20"), std::string::npos) << same.out;
  EXPECT_TRUE(same.out.ends_with(": none\n")) << same.out;

  ReplaceRuns({{"getconfig 1 al", "echo Controller 1 is not present.; exit 1"}});
  const Outcome gone = Run("--check --expect before.json");
  EXPECT_EQ(gone.status, 2);
  EXPECT_NE(gone.out.find("; controller 1 (archive): is gone (kelvcmd 1), with 4 logical drives "),
            std::string::npos)
      << gone.out;

  // What cannot be read is refused before a tool runs.
  ReplaceRuns({{"getconfig 1 al", "touch was_run"}});
  EXPECT_EQ(Run("--root kraid --compare absent").status, 1);
  const Outcome refused = Run("--check --expect absent");
  EXPECT_EQ(refused.status, 3);
  EXPECT_TRUE(refused.out.starts_with("KRAID UNKNOWN - ")) << refused.out;
  EXPECT_EQ(FilesMade(), std::set<std::string>{"before.json"});
}

TEST_F(Inventory, OfTheSampleMachineIsAsItWas) {
  // A caller may have them ignored; the ends of the tools are to be seen all the same.
  const Outcome outcome = Shell(std::string("env --ignore-signal=CHLD ") + kCommand +
                                " --format json --verbose --root " + kDemo);
  EXPECT_EQ(outcome.status, 0);
  // Each command runs once, though it is asked for twice.
  const std::string said =
      "kraid-inventory: standard error of ./kraid/kelvcmd getevent 2 device:\n" +
      ReadFile(MachineFolder("sample") / "kraid/kelvcmd.d/2/getevent-device.err");
  EXPECT_EQ(outcome.err, said);
  const Json document = Anywhere(outcome.out);
  EXPECT_EQ(document["problems"].size(), 4U);  // for each controller, the lines that nobody reads
  for (const Json& problem : document["problems"]) {
    EXPECT_EQ(problem["kind"], "lines_not_understood") << problem;
  }
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

TEST_F(Inventory, ShowsThePageOfTheSampleMachine) {
  const Outcome outcome = Run(std::string("--format html --replay ") + kDemo);
  EXPECT_EQ(outcome.status, 0);
  // Style and script are files of their own.
  CompareExpected("sample/page.html", outcome.out.substr(outcome.out.find("<body")));
}

TEST_F(Inventory, TakesClassesInTheirOrderWithRepeatsAndUnknownNames) {
  // The association finds nothing at first, and then what the first pass committed before it.
  const Outcome outcome = Run(std::string("--format json --passes 2 --root ") + kDemo +
                              " KVXSG_krProtocolControllerForUnit KVXSG_krLogicalDisk Unknown " +
                              kControllers + " KVXSG_krLogicalDisk");
  std::string initials;
  const Json document = Json::parse(outcome.out);
  for (const Json& instance : document["instances"]) {
    initials += instance["class"].get<std::string>()[8];
  }
  const std::string disks(12, 'L');
  EXPECT_EQ(initials, disks + "SSSS" + disks + std::string(24, 'P') + disks + "SSSS" + disks);
}

TEST_F(Inventory, LosesNoMoreThanTheRunsOfAToolThatMisbehave) {
  ReplaceRuns({{"getbst 1 device", "exec sleep 60"},
               {"getstatus 1 device", "kill -SEGV $$"},
               {"getevent 1 soft", R"(printf '\377\000\n\001')"},
               {"getevent 1 hard", "sleep 30 & exit 9"}});
  const Outcome outcome = Run(std::string("--tool-timeout 1 --format json ") + kControllers);
  EXPECT_EQ(outcome.status, 0);
  const Json document = Json::parse(outcome.out);
  EXPECT_EQ(document["instances"].size(), 2U);
  std::string problems;
  for (const Json& problem : document["problems"]) {
    problems += problem["kind"].get<std::string>() + " " + problem["what"].get<std::string>() +
                ": " + problem["why"].get<std::string>() + "\n";
  }
  EXPECT_TRUE(problems.starts_with(
      "run_failed ./kraid/kelvcmd getstatus 1 device: was ended by signal 11 (Segmentation fault)\n"
      "run_timed_out ./kraid/kelvcmd getbst 1 device: was stopped after 1 s, the time limit of one "
      "run\n"
      "run_not_asked ./kraid/kelvcmd, 5 runs: was not run: the tool had hung over this "
      "controller\n"))
      << problems;
  EXPECT_EQ(document["runs"].size(), 7U);
}

TEST_F(Inventory, NamesTheRunWhoseOutputEndsTooEarly) {
  ReplaceRuns({{"getevent 1 hard", "echo 'Controller Hard Event Log'; echo 1"}});
  const Outcome outcome = Run(std::string("--format json --passes 2 ") + kControllers);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(outcome.err.starts_with(
      "kraid-inventory: ./kraid/kelvcmd getevent 1 hard: its output ends too early"))
      << outcome.err;
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  const Json document = Json::parse(outcome.out);
  EXPECT_EQ(document["exit_status"], 1);
  EXPECT_EQ(document["problems"][0]["kind"], "output_unreadable");
  EXPECT_EQ(document["problems"][0]["what"], "./kraid/kelvcmd getevent 1 hard");
  EXPECT_EQ(document["instances"].size(), 4U);  // two controllers in each pass
  const Json as_host = Json::parse(Run(std::string("--as-host --format json ") + kControllers).out);
  EXPECT_EQ(as_host["exit_status"], 1);
  EXPECT_EQ(as_host["instances"].size(), 0U);
  const std::string on_terminal = std::string("script -qec \"") + kCommand + "\" /dev/null";
  EXPECT_NE(Shell("TERM=xterm " + on_terminal).out.find("\r\x1b[Kkraid-inventory: ./kraid/kelv"),
            std::string::npos);
  // A collection that breaks off does not pass for a healthy machine.
  EXPECT_EQ(Run("--check --as-host").status, 3);
}

TEST_F(Inventory, TellsAMachineThatItCannotSeeFromOneThatIsFine) {
  const struct {
    const char* tool;  // all of it, behind "#!/bin/sh"
    const char* arguments;
    int status;
    const char* start;
  } cases[] = {
      {"echo Permission denied >&2; exit 1", "", 3,
       "KRAID UNKNOWN - no controller was found; 0 critical, 1 warning: ./kraid/kelvcmd: refused: "
       "it "
       "ended with status 1 for every controller number: Permission denied (does it need root?)"},
      {"echo 'libraid.so.5: cannot open shared object file' >&2; exit 127", "", 3,
       "KRAID UNKNOWN - no controller was found; 0 critical, 1 warning: ./kraid/kelvcmd: refused: "
       "it "
       "ended with status 127"},
      {"echo No such controller; exit 1", "", 3, "KRAID UNKNOWN - no controller was found |"},
      {"sleep 9", "--tool-timeout 0.2", 3,
       "KRAID UNKNOWN - no controller was found; 0 critical, 5 warnings: ./kraid/kelvcmd getconfig "
       "1 al: was stopped after 200 ms"},
      {"sleep 9", "--timeout 0.3", 3,
       "KRAID UNKNOWN - no controller was found; 0 critical, 2 warnings: ./kraid/kelvcmd getconfig "
       "1 al: was stopped: the time limit of the whole collection, 300 ms, was over;"},
  };
  for (const auto& c : cases) {
    WriteFile(folder_ / "kraid/kelvcmd", std::string("#!/bin/sh\n") + c.tool + "\n");
    fs::permissions(folder_ / "kraid/kelvcmd", fs::perms::all);
    const Outcome outcome = Run(std::string("--check ") + c.arguments);
    EXPECT_EQ(outcome.status, c.status) << c.tool;
    EXPECT_TRUE(outcome.out.starts_with(c.start)) << outcome.out;
  }
}

TEST_F(Inventory, LeavesNothingBehindWhenASignalEndsIt) {
  // The tool says where it runs, in the shell and in children of it; all have to go.
  ReplaceRuns({{"getconfig 1 al",
                "sleep 61 & child=$!; setsid sleep 62 & echo $$ $child $! >running; wait"}});
  WriteFile(folder_ / "result", "before");
  for (const char* name : {"HUP", "INT", "TERM", "ALRM", "XCPU", "USR1", "USR2", "PROF", "RTMIN"}) {
    // Blocked by whoever started it: it is to end all the same. Dead is also what nobody has
    // reaped.
    const Outcome outcome = Shell(
        "env --block-signal=TERM --default-signal=INT " + std::string(kCommand) +
        " --check --output result & command=$!\n"
        "i=0; while [ ! -s running ] && [ $((i += 1)) -lt 200 ]; do sleep 0.05; done\nkill -" +
        name +
        " $command; wait $command; kill -l $?\n"
        "for pid in $(cat running); do grep -qs '^State:.[^ZX]' /proc/$pid/status && echo alive\n"
        "done; rm running\n");
    EXPECT_EQ(outcome.out,
              std::string("KRAID UNKNOWN - a signal ended the check before it had an answer\n") +
                  name + "\n");
    EXPECT_EQ(ReadFile(folder_ / "result"), "before");
    EXPECT_EQ(FilesMade(), std::set<std::string>{"result"});
  }
}

TEST_F(Inventory, StillAnswersWhereItsSurroundingsAreGone) {
  // Its working folder, and the room for its output.
  const Outcome gone = Shell("mkdir gone; cd gone; rmdir ../gone; " + std::string(kCommand));
  EXPECT_NE(gone.out.find("The tools kelvcmd, hrconf and arcconf are looked for in kraid below the "
                          "working folder, which is gone;"),
            std::string::npos)
      << gone.out;
  const Outcome large = Shell("ulimit -f 1; " + std::string(kCommand) +
                              " --format json --output new --root " + kDemo);
  EXPECT_EQ(large.status, 3);
  EXPECT_TRUE(large.err.ends_with("/new: File too large\n")) << large.err;
  const std::string check =
      Shell("(ulimit -f 0; " + std::string(kCommand) + " --check --output new) 2>&1 | cat").out;
  EXPECT_TRUE(check.starts_with("KRAID UNKNOWN - cannot write ")) << check;
  EXPECT_EQ(FilesMade(), std::set<std::string>());
}

TEST_F(Inventory, EndsWhatAToolLeavesBehindInOtherSessions) {
  // One goes when it is asked to, one has to be killed, one is the child of a session of its own.
  ReplaceRuns({{"getconfig 1 al", R"(
      setsid sleep 61 & echo $! >pids
      setsid sh -c 'trap "" TERM; echo $$ >>pids; sleep 62; sleep 63' &
      timeout 64 sleep 65 & echo $! >>pids
      while [ $(wc -l <pids) -lt 3 ]; do sleep 0.01; done; sleep 0.1; exit 1)"}});
  const std::string look =
      "; for pid in $(cat pids); do grep -qs '^State:.[^ZX]' /proc/$pid/status && echo alive; done";
  const Outcome outcome = Run("--format json --no-instances --verbose" + look + "; rm pids");
  const Json runs = Json::parse(outcome.out)["runs"];
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(runs[0]["left_behind"], (Json{"sleep", "sh", "timeout"}));
  EXPECT_TRUE(
      outcome.err.starts_with("kraid-inventory: ended what ./kraid/kelvcmd getconfig 1 al "
                              "had left behind: sleep, sh, timeout\n"))
      << outcome.err;

  // What its caller had started before it is none of the tool's.
  ReplaceRuns({{"getconfig 1 al", "sleep 0.5; exit 1"}});
  WriteFile(folder_ / "caller", "(sleep 0.2; setsid sleep 66 & echo $! >pids) & exec " +
                                    std::string(kCommand) + " --output report");
  EXPECT_EQ(Shell("sh caller" + look + "; kill $(cat pids)").out, "alive\n");
}

TEST_F(Inventory, AsRootRunsNothingThatOthersCouldHavePutThere) {
  if (geteuid() != 0) GTEST_SKIP() << "not as root";
  ReplaceRuns({{"getconfig 1 al", "touch was_run"}});
  fs::permissions(folder_, fs::perms::all);
  const std::string distrusting = "'" KRAID_BUILD_DIR "/bin/kraid-inventory' --check ";
  for (const char* arguments : {"", "--as-host", "--plugin kraid/kelvcmd"}) {
    const Outcome outcome = Shell(distrusting + arguments);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.out.find("as others than root could have put it there: /"), std::string::npos)
        << outcome.out;
  }
  EXPECT_EQ(FilesMade(), std::set<std::string>());
}

TEST_F(Inventory, WaitsForAnotherCollectionOfTheSameMachine) {
  ReplaceRuns({{"getconfig 1 al", "echo >running; sleep 1; exit 1"}});
  const Outcome outcome = Shell(std::string(kCommand) +
                                " --output first &\n"
                                "while [ ! -e running ]; do sleep 0.05; done\n" +
                                kCommand + " --check --timeout 0.2; echo $?\n" + kCommand +
                                " --no-lock --output second; echo $?; wait\n");
  EXPECT_TRUE(outcome.out.starts_with("KRAID UNKNOWN - another collection here, of process "))
      << outcome.out;
  EXPECT_TRUE(
      outcome.out.ends_with("(kraid-inventory), goes on: it was waited for in vain\n3\n0\n"))
      << outcome.out;
}

TEST_F(Inventory, AnswersAMonitoringSystemInOneLineWhateverHappens) {
  const struct {
    std::string arguments;
    int status;
    const char* start;
  } cases[] = {
      {std::string("--check --passes 2 --root ") + kDemo, 2,
       "KRAID CRITICAL - 3 critical, 5 warnings: contr"},
      {"--check", 3, "KRAID UNKNOWN - no controller was found | controllers=0;;;0 logical_drives"},
      {"--check --plugin script", 3, "KRAID UNKNOWN - plug-in "},
      {"--check --output absent/file", 3, "KRAID UNKNOWN - cannot write "},
      {"--check --log absent/file", 3, "KRAID UNKNOWN - cannot write "},
      {"--bogus --check", 3, "KRAID UNKNOWN - "},
      {"--check --check=x", 3, "KRAID UNKNOWN - "},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Run(c.arguments);
    EXPECT_EQ(outcome.status, c.status) << c.arguments;
    EXPECT_TRUE(outcome.out.starts_with(c.start)) << outcome.out;
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1) << outcome.out;
  }
  EXPECT_EQ(Run("--bogus").status, 2);
  EXPECT_EQ(FilesMade(), std::set<std::string>());
}

TEST_F(Inventory, TakesMemoryInProportionToAnOutput) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer takes memory of its own";
#endif
  const auto most_used = [] {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;  // in KiB, of the largest process so far
  };
  // Nothing of it may become large here, as a child begins with the size of this process.
  const auto show = [this](const char* view) {
    const Outcome outcome =
        Shell(std::string("COLUMNS=80 timeout 60 ") + kCommand + " " + view + " >/dev/null");
    EXPECT_LT(outcome.status, 4) << outcome.err;
  };
  constexpr const char* kViews[] = {"--verbose",    "--format html",        "--format json",
                                    "--format mof", "--format openmetrics", "KVXSG_krRawData"};
  ReplaceRuns({});
  for (const char* view : kViews) show(view);
  const long base = most_used();
  constexpr std::size_t kSize = std::size_t{1} << 20;
  for (const auto& [command, text] : {std::pair("getstatus 1 device", "\n"),
                                      {"getstatus 1 device", " "},
                                      {"getstatus 1 device", "x"},
                                      {"getconfig 1 al", "\n"}}) {
    std::string output = "Controller information\n";
    output.resize(kSize, *text);
    WriteFile(folder_ / "output", output + "\nPhysical device information\n");
    ReplaceRuns({{command, "cat output"}});
    for (const char* view : kViews) {
      show(view);
      ASSERT_LE(most_used(), base + 4 * static_cast<long>(kSize >> 10)) << command << view << text;
    }
  }
}

TEST_F(Inventory, ShowsProgressAndColoursWhereATerminalHasThem) {
  const std::string run =
      std::string("stty cols 38; ") + kCommand + " --root " + kDemo + " " + kControllers;
  const std::string heading = std::string(kControllers) + "\r\n";
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"NO_COLOR=1 TERM=xterm", "run 88: ./kraid/arcconf getconfig 8 a\r", "\r\x1b[K" + heading},
      {"env -u NO_COLOR TERM=xterm", "\r\x1b[K\x1b[1m", heading.substr(0, 5)},
      {"env -u NO_COLOR TERM=dumb", "", heading},
  };
  for (const auto& [environment, progress, answer] : cases) {
    const std::string seen =
        Shell(std::string(environment) + " script -qec \"" + run + "\" /dev/null").out;
    EXPECT_NE(seen.find(progress), std::string::npos) << seen;
    EXPECT_EQ(*progress == '\0', seen.starts_with(answer)) << seen;
    EXPECT_NE(seen.find(answer), std::string::npos) << seen;
  }
}

TEST_F(Inventory, WritesItsOutputWholeOrNotAtAll) {
  EXPECT_EQ(Run("--root / --output new").status, 0);  // a path of where it was started
  EXPECT_NE(ReadFile(folder_ / "new"), "");
  EXPECT_EQ(FilesMade(), std::set<std::string>{"new"});
  const std::pair<const char*, const char*> failures[] = {
      {"--log /dev/full", "No space left on device"},
      {">/dev/full", "No space left on device"},
      {">&-", "Bad file descriptor"},
      {"--log log >&-", "Bad file descriptor"},
      {"--output /dev/stdout >&-", "Bad file descriptor"},
      {"--output same --log ./same", "--log and --output name the same file"},
  };
  for (const auto& [arguments, message] : failures) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 3) << arguments;
    EXPECT_NE(outcome.err.find(message), std::string::npos) << outcome.err;
  }
  EXPECT_TRUE(ReadFile(folder_ / "log").starts_with("3\t"));  // and no document in it
  const std::string gone = std::string("mkdir gone; cd gone; rmdir ../gone; ") + kCommand;
  EXPECT_EQ(Shell(gone + " --root / --output x; echo $?").out, "2\n");
  EXPECT_EQ(Shell(gone + " --output '" + (folder_ / "new").string() + "'; echo $?").out, "0\n");
  EXPECT_EQ(Shell(std::string("{ ") + kCommand + " --format json --root " + kDemo +
                  "; echo $? >&2; } | head -c 1")
                .err,
            "3\n");
}

TEST_F(Inventory, OfTheSampleMachineHoldsItsManagersEvents) {
  const std::string with = "'" KRAID_SOURCE_DIR "/scripts/with-sample-machine.sh' ";
  const Outcome outcome = Shell(with + kCommand + " --format json --passes 3 --root " + kDemo +
                                " KVXSG_LogRecord_RAIDMgrEvent");
  if (outcome.err.find("no private mounts") != std::string::npos) GTEST_SKIP() << outcome.err;
  EXPECT_FALSE(fs::exists("/usr/KelvMgr"));
  std::string text;
  const Json document = Anywhere(outcome.out);
  for (const Json& instance : document["instances"]) {
    Json event = instance["properties"];
    const std::string message = event["Message"];
    if (message.starts_with("SpawnedProcess") || message == "No RAID Manager log entries.") {
      event["MessageTimestamp"] = "NOW";
    }
    text += event.dump() + "\n";
  }
  CompareExpected("sample/manager_events.txt", text);
}

}  // namespace
