#include "standin/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>
#include <tuple>

#include "tests/machine_files.h"

namespace {

using standin::KillRunningProcess;
using standin::ProcessLimits;
using standin::ProcessResult;
using standin::RunProcess;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::size_t kMib = std::size_t{1} << 20;

ProcessResult Sh(const std::string& script, const ProcessLimits& limits = {}) {
  return RunProcess("/bin/sh", {"-c", script}, limits);
}

/// Output, error output, exit status and failure, a "|" behind each.
std::string Text(const ProcessResult& result) {
  return result.output + "|" + result.error_output + "|" + std::to_string(result.exit_status) +
         "|" + result.failure + "|";
}

auto OpenDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::distance(begin(all), end(all));
}

/// No test may leave a process behind, not even a grandchild: orphans become this program's.
class ProcessTest : public testing::Test {
 protected:
  ProcessTest() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::string pattern = testing::TempDir() + "kraid-XXXXXX";
    folder_ = mkdtemp(pattern.data());
  }
  ~ProcessTest() override {
    std::filesystem::remove_all(folder_);
    const auto deadline = Clock::now() + 10s;
    for (pid_t reaped = 0; reaped >= 0 && Clock::now() < deadline;) {
      reaped = waitpid(-1, nullptr, WNOHANG);
      if (reaped == 0) std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
  }

  /// The Text of a run in a forked host, whose state `set_up` may spoil.
  std::string InForkedHost(const std::function<void()>& set_up,
                           const std::function<ProcessResult()>& run) const {
    const std::filesystem::path file = folder_ / "result";
    const pid_t host = fork();
    if (host == 0) {
      set_up();
      std::ofstream(file) << Text(run());
      _exit(0);
    }
    EXPECT_EQ(host, waitpid(host, nullptr, 0));
    return ReadFile(file);
  }

  std::filesystem::path folder_;
};

TEST_F(ProcessTest, ArgumentsArriveUnchanged) {
  std::vector<std::string> arguments = {"-c", R"(printf '[%s]' "$0" "$@")", "zero"};
  std::string expected = "[zero]";
  for (const char* argument :
       {"; exit 9", "$(id)", "`id`", " a  b ", "\"'\\", "\n", "", "*", "~", "-n", "\xff\xfe"}) {
    arguments.emplace_back(argument);
    expected.append("[").append(argument).append("]");
  }
  EXPECT_EQ(expected, RunProcess("/bin/sh", arguments, {}).output);
}

TEST_F(ProcessTest, ChildInheritsOnlyWhatItShould) {
  const auto spoil = [] {
    const rlimit descriptors{4096, 4096};
    setrlimit(RLIMIT_NOFILE, &descriptors);
    for (const int fd : {3, 100, 4000}) {
      if (dup2(STDERR_FILENO, fd) != fd) _exit(1);
    }
    signal(SIGPIPE, SIG_IGN);
    signal(SIGRTMAX, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    clearenv();
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    setenv("LD_PRELOAD", "/dev/null", 1);
    setenv("IFS", "x", 1);
    setenv("HOME", "/elsewhere", 1);
    setenv("PATH", "/elsewhere", 1);
    setenv("TZ", "Europe/Berlin", 1);
  };
  const auto look = [] {
    return Sh(R"(ls /proc/self/fd  # and the directory itself, 3
                 tr '\0' '\n' </proc/$$/environ | sed 's,^HOME=/.*,HOME,'
                 grep -E 'Sig(Blk|Ign)' /proc/self/status
                 cat
                 set -- $(cat /proc/$$/stat)
                 [ "$5" = $$ ] && [ "$6" = $$ ] && echo leader
                 (: </dev/tty) 2>/dev/null || echo no terminal)",
              {.time = 10s});
  };
  EXPECT_EQ(
      "0\n1\n2\n3\nPATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin\nHOME\n"
      "LANG=C\nLC_ALL=C\nTZ=Europe/Berlin\n"
      "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\nleader\nno terminal\n||0||",
      InForkedHost(spoil, look));
}

TEST_F(ProcessTest, HostMayLackStandardDescriptorsAndIgnoreChildren) {
  for (int closed = 1; closed < 8; ++closed) {
    const auto close_some = [&] {
      for (int fd = 0; fd < 3; ++fd) {
        if ((closed >> fd & 1) != 0) close(fd);
      }
    };
    const auto run = [] { return Sh("cat; echo out; echo error >&2; exit 4", {.time = 10s}); };
    EXPECT_EQ("out\n|error\n|4||", InForkedHost(close_some, run)) << closed;
  }
  const auto ignore = [] { signal(SIGCHLD, SIG_IGN); };
  EXPECT_EQ(
      "||0|/bin/sh: ended, but its exit status is lost: No child processes (the host must neither "
      "ignore SIGCHLD nor wait for children it did not start)|",
      InForkedHost(ignore, [] { return Sh("exit 3", {.time = 10s}); }));
  EXPECT_EQ("||0|/bin/sh: was stopped after 300 ms, the time limit of one run|",
            InForkedHost(ignore, [] { return Sh("sleep 60", {.time = 300ms}); }));
}

TEST_F(ProcessTest, BytesAndEndOfARunArriveUnchanged) {
  const std::string mib(kMib, '\0');
  const std::string end(16384, '\0');  // what is kept of standard error, twice
  const auto noisy = [](std::size_t middle_bytes) {
    return "exec >&2; printf FIRST; head -c " + std::to_string(middle_bytes) +
           " /dev/zero; printf LAST; kill -9 $$";
  };
  const auto killed = [&end](const std::string& note) {
    return "|FIRST" + end.substr(5) + note + end.substr(4) +
           "LAST|0|/bin/sh: was ended by signal 9 (Killed)|";
  };
  const std::string both = mib + "|" + end + "\n[... 1015808 bytes left out ...]\n" + end + "|0||";
  const std::pair<std::string, std::string> cases[] = {
      {"printf 'a\\r\\nb'", "a\r\nb||0||"},
      {"printf '\\000x\\377\\303\\050\\000\\n'", std::string("\0x\xff\xc3(\0\n", 7) + "||0||"},
      {"head -c 67108864 /dev/zero", std::string(64 * kMib, '\0') + "||0||"},
      // Neither stream may block the other.
      {"head -c 1048576 /dev/zero; head -c 1048576 /dev/zero >&2", both},
      {"head -c 1048576 /dev/zero >&2; head -c 1048576 /dev/zero", both},
      // Standard error keeps its ends.
      {noisy(32768 - 9), killed("")},
      {noisy(32768 - 8), killed("\n[... 1 bytes left out ...]\n")},
      {noisy(5000000), killed("\n[... 4967241 bytes left out ...]\n")},
      {"exit 255", "||255||"},
      {"exec >&- 2>&-; sleep 0.1; exit 5", "||5||"},
      {"kill -SEGV $$", "||0|/bin/sh: was ended by signal 11 (Segmentation fault)|"},
      {"kill -40 $$", "||0|/bin/sh: was ended by signal 40|"},
  };
  for (const auto& [script, expected] : cases) {
    const std::string text = Text(Sh(script));
    EXPECT_TRUE(expected == text) << script << ", " << text.size() << ": " << text.substr(0, 200);
  }
}

TEST_F(ProcessTest, LimitsEndTheWholeGroup) {
  constexpr ProcessLimits kShort{.time = 400ms, .grace = 500ms};
  const std::string time = "400 ms, the time limit of one run";
  const std::string output = " of output, the limit of one run";
  const std::tuple<const char*, ProcessLimits, std::string, const char*> cases[] = {
      {"printf 123456", {.output_bytes = 5}, "5 bytes" + output, ""},
      {"exec yes", {.output_bytes = 1024}, "1 KiB" + output, ""},
      {"trap '' TERM; yes", {.output_bytes = kMib, .grace = 200ms}, "1 MiB" + output, ""},
      {"sleep 60", {.time = 1s}, "1 s, the time limit of one run", ""},
      {"trap '' TERM; while :; do sleep 1; done", kShort, time, ""},
      {"trap 'echo bye >&2; exit 3' TERM; kill -STOP $$; sleep 0.1", kShort, time, "bye\n"},
      {"exec >&- 2>&-; sleep 60", kShort, time, ""},
      {"dd if=/dev/zero bs=16384 count=1 2>&-; exec sleep 60", kShort, time, ""},  // one full read
      {"(trap '' TERM; exec sleep 60) & exec sleep 60", kShort, time, ""},
      // It moves to the host's process group, if it can.
      {"exec perl -e 'setpgrp(0, getpgrp(getppid)); sleep 60'", kShort, time, ""},
  };
  for (const auto& [script, limits, reason, error_output] : cases) {
    SCOPED_TRACE(script);
    const auto start = Clock::now();
    const std::clock_t cpu_start = std::clock();
    const ProcessResult result = Sh(script, limits);
    EXPECT_EQ("/bin/sh: was stopped after " + reason, result.failure);
    EXPECT_EQ(error_output, result.error_output);
    EXPECT_EQ(0, result.exit_status);
    EXPECT_LE(result.output.capacity(), std::max<std::size_t>(64, 3 * limits.output_bytes));
    EXPECT_LT(Clock::now() - start, 20s);
    if (limits.time <= 1s) {
      EXPECT_GE(Clock::now() - start, limits.time);
      EXPECT_LT(std::clock() - cpu_start, CLOCKS_PER_SEC / 10) << "it waits in a busy loop";
    }
  }
  EXPECT_EQ("12345||0||", Text(Sh("printf 12345", {.output_bytes = 5})));
}

TEST_F(ProcessTest, WhatStaysBehindAChildIsLeftAlone) {
  for (const std::string left_behind : {"sleep 60", "yes >&2; sleep 60"}) {
    const auto start = Clock::now();
    const ProcessResult result =
        Sh("echo $$; (" + left_behind + ") & head -c 60000 /dev/zero; exit 3");
    EXPECT_LT(Clock::now() - start, 20s);
    EXPECT_EQ(60000 + result.output.find('\n') + 1, result.output.size());
    EXPECT_EQ(3, result.exit_status);
    EXPECT_EQ("", result.failure);
    KillRunningProcess();                                                // There is none.
    EXPECT_EQ(0, waitpid(-std::stoi(result.output), nullptr, WNOHANG));  // it is still there
    kill(-std::stoi(result.output), SIGKILL);
  }
}

TEST_F(ProcessTest, RunsTheFileThatIsOpenWhateverIsAtItsPath) {
  const int opened = open("/bin/echo", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ("a\n||0||", Text(RunProcess("/bin/false", {"a"}, {.executable = opened})));
  close(opened);
}

TEST_F(ProcessTest, TimeOfASuspendedHostDoesNotCount) {
  const auto suspended_soon = [] {
    if (fork() == 0) {
      usleep(200'000);
      kill(getppid(), SIGSTOP);
      usleep(2'000'000);
      kill(getppid(), SIGCONT);
      _exit(0);
    }
  };
  // The tool outlasts the suspension, or has ended meanwhile.
  for (const char* seconds : {"2.5", "1"}) {
    EXPECT_EQ("done\n2|0|0||", InForkedHost(suspended_soon, [seconds] {
                ProcessResult result =
                    Sh(std::string("sleep ") + seconds + "; echo done", {.time = 1500ms});
                result.error_output = std::to_string(result.suspended.count() > 1400 ? 0 : 1);
                result.output += "2";
                return result;
              }));
  }
}

TEST_F(ProcessTest, StartFailuresHaveTheirOwnReasons) {
  const auto write = [this](const char* name, const char* content, mode_t mode) {
    std::ofstream(folder_ / name) << content;
    chmod((folder_ / name).c_str(), mode);
    return (folder_ / name).string();
  };
  const std::pair<std::string, std::string> cases[] = {
      {"./no/such", "No such file or directory"},
      {"sh", "No such file or directory"},
      {std::string("/bin/true\0", 10), "its path or an argument contains a NUL byte"},
      {write("plain", "", 0644), "Permission denied (is it executable?)"},
      {write("text", "echo x\n", 0755),
       "Exec format error (is it built for this system, or a script without #! line?)"},
      {write("script", "#!/no/such\n", 0755),
       "No such file or directory (it is there: is its interpreter or /dev/null missing?)"},
  };
  const auto descriptors = OpenDescriptors();
  for (const auto& [program, failure] : cases) {
    EXPECT_EQ(std::string(program).append(": cannot be started: ").append(failure),
              RunProcess(program, {"secret"}, {}).failure);
  }
  EXPECT_EQ("/bin/sh: cannot be started: its path or an argument contains a NUL byte",
            Sh(std::string("exit 0\0", 7)).failure);
  EXPECT_EQ(descriptors, OpenDescriptors());
}

TEST_F(ProcessTest, InterruptedCallsAreResumed) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  const itimerval each_millisecond{{0, 1000}, {0, 1000}};
  setitimer(ITIMER_REAL, &each_millisecond, nullptr);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ("ab||3||", Text(Sh("printf a; sleep 0.05; printf b; exit 3")));
  }
  const itimerval never{};
  setitimer(ITIMER_REAL, &never, nullptr);
}

TEST_F(ProcessTest, ThreadsTakeTurns) {
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i] {
      const std::string own = std::to_string(i);
      for (int run = 0; run < 20; ++run) EXPECT_EQ(own + "||0||", Text(Sh("printf " + own)));
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST_F(ProcessTest, ManyRunsLeaveNothingBehind) {
  const pid_t other_child = fork();
  if (other_child == 0) _exit(7);
  const auto descriptors = OpenDescriptors();
  for (int i = 0; i < 1000; ++i) ASSERT_EQ("", RunProcess("/bin/true", {}, {}).failure);
  EXPECT_EQ(descriptors, OpenDescriptors());
  EXPECT_EQ(other_child, waitpid(-1, nullptr, 0));  // not taken away, and the only one
  EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
}

}  // namespace
