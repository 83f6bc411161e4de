#include "standin/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

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

ProcessLimits ShortTime() { return {.time = 400ms, .grace = 500ms}; }

/// Runs `run` in a forked host, whose state `set_up` may spoil, and hands its result over.
ProcessResult InForkedHost(const std::function<void()>& set_up,
                           const std::function<ProcessResult()>& run) {
  struct Shared {
    bool done;
    int exit_status;
    char texts[3][8192];
  };
  // Shared memory, as some of these hosts have no descriptor to spare.
  void* memory =
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  auto* shared = static_cast<Shared*>(memory);
  const pid_t host = fork();
  if (host == 0) {
    set_up();
    const ProcessResult result = run();
    shared->exit_status = result.exit_status;
    result.output.copy(shared->texts[0], sizeof(shared->texts[0]) - 1);
    result.error_output.copy(shared->texts[1], sizeof(shared->texts[1]) - 1);
    result.failure.copy(shared->texts[2], sizeof(shared->texts[2]) - 1);
    shared->done = true;
    _exit(0);
  }
  int status = 0;
  EXPECT_EQ(host, waitpid(host, &status, 0));
  EXPECT_TRUE(shared->done) << "the forked host died, status " << status;
  ProcessResult result{shared->texts[0], shared->texts[1], shared->exit_status, shared->texts[2]};
  munmap(memory, sizeof(Shared));
  return result;
}

/// True when all of the group whose number `output` begins with ends in `time`. What outlives its
/// leader is this program's to reap, as ProcessTest makes it the adopter of orphans.
bool GroupEnds(const std::string& output, std::chrono::milliseconds time) {
  const pid_t group = std::stoi(output);
  for (const auto deadline = Clock::now() + time;;) {
    const pid_t reaped = waitpid(-group, nullptr, WNOHANG);
    if (reaped < 0) return errno == ECHILD && kill(-group, 0) != 0;
    if (reaped == 0 && Clock::now() >= deadline) return false;
    if (reaped == 0) std::this_thread::sleep_for(5ms);
  }
}

std::size_t OpenDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// No test may leave a process behind, not even a grandchild.
class ProcessTest : public testing::Test {
 protected:
  ProcessTest() { prctl(PR_SET_CHILD_SUBREAPER, 1); }
  ~ProcessTest() override {
    const auto deadline = Clock::now() + 10s;
    for (pid_t reaped = 0; reaped >= 0 && Clock::now() < deadline;) {
      reaped = waitpid(-1, nullptr, WNOHANG);
      if (reaped == 0) std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
  }
};

TEST_F(ProcessTest, ArgumentsArriveUnchanged) {
  const std::vector<std::string> odd = {"; exit 9", "$(id)", "`id`", " a  b ", "\"'\\",   "\n",
                                        "",         "*",     "~",    "-n",     "\xff\xfe"};
  std::vector<std::string> arguments = {"-c", R"(printf '[%s]' "$0" "$@")", "zero"};
  std::string expected = "[zero]";
  for (const std::string& argument : odd) {
    arguments.push_back(argument);
    expected += "[" + argument + "]";
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
    setenv("LC_ALLOY", "kept", 1);
  };
  const struct {
    std::string program;
    std::vector<std::string> arguments;
    std::string output;
  } cases[] = {
      {"/bin/ls", {"/proc/self/fd"}, "0\n1\n2\n3\n"},  // 3 is the directory that it reads.
      {"/usr/bin/env", {}, "LC_ALLOY=kept\nLC_ALL=C\n"},
      {"/bin/grep",
       {"-E", "Sig(Blk|Ign)", "/proc/self/status"},
       "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n"},
      {"/bin/cat", {}, ""},
      {"/bin/sh",
       {"-c", R"(set -- $(cat /proc/$$/stat); [ "$5" = $$ ] && echo leader)"},
       "leader\n"},
  };
  for (const auto& c : cases) {
    const ProcessResult result =
        InForkedHost(spoil, [&] { return RunProcess(c.program, c.arguments, {.time = 10s}); });
    EXPECT_EQ(c.output, result.output) << c.program;
    EXPECT_EQ("", result.failure + result.error_output) << c.program;
  }
  const auto no_environment = [] { return RunProcess("/usr/bin/env", {}, {}); };
  EXPECT_EQ("LC_ALL=C\n", InForkedHost([] { clearenv(); }, no_environment).output);
}

TEST_F(ProcessTest, HostMayLackStandardDescriptors) {
  for (int closed = 1; closed < 8; ++closed) {
    const auto close_some = [&] {
      for (int fd = 0; fd < 3; ++fd) {
        if ((closed >> fd & 1) != 0) close(fd);
      }
    };
    const ProcessResult result = InForkedHost(
        close_some, [] { return Sh("cat; echo out; echo error >&2; exit 4", {.time = 10s}); });
    EXPECT_EQ("out\n", result.output) << closed;
    EXPECT_EQ("error\n", result.error_output) << closed;
    EXPECT_EQ(4, result.exit_status) << closed;
    EXPECT_EQ("", result.failure) << closed;
  }
}

TEST_F(ProcessTest, BytesPassUnchanged) {
  const struct {
    const char* script;
    std::string output;
  } cases[] = {
      {"", ""},
      {"printf 'a\\r\\nb'", "a\r\nb"},
      {"printf '\\000x\\000\\000'", std::string("\0x\0\0", 4)},
      {"printf '\\377\\303\\050\\n\\n'", "\xff\xc3(\n\n"},
      {"head -c 67108864 /dev/zero", std::string(64 * kMib, '\0')},
      // Neither stream may block the other.
      {"head -c 1048576 /dev/zero; head -c 1048576 /dev/zero >&2", std::string(kMib, '\0')},
      {"head -c 1048576 /dev/zero >&2; head -c 1048576 /dev/zero", std::string(kMib, '\0')},
  };
  for (const auto& c : cases) {
    const ProcessResult result = Sh(c.script);
    EXPECT_EQ(c.output.size(), result.output.size()) << c.script;
    EXPECT_TRUE(c.output == result.output) << c.script;
    EXPECT_EQ("", result.failure) << c.script;
  }
}

TEST_F(ProcessTest, ErrorOutputKeepsItsEnds) {
  const struct {
    int middle_bytes;
    std::string note;
  } cases[] = {
      {32768 - 9, ""},
      {32768 - 8, "\n[... 1 bytes left out ...]\n"},
      {5000000, "\n[... 4967241 bytes left out ...]\n"},
  };
  for (const auto& c : cases) {
    const std::string middle = std::to_string(c.middle_bytes);
    const ProcessResult result =
        Sh("exec >&2; printf FIRST; head -c " + middle + " /dev/zero; printf LAST; kill -9 $$");
    const std::string half(16384, '\0');
    EXPECT_TRUE("FIRST" + half.substr(5) + c.note + half.substr(4) + "LAST" == result.error_output)
        << c.middle_bytes << ", size " << result.error_output.size();
    EXPECT_EQ("/bin/sh: was ended by signal 9 (Killed)", result.failure);
    EXPECT_EQ("", result.output);
  }
}

TEST_F(ProcessTest, OutputLimitStopsTheChild) {
  const struct {
    std::size_t limit;
    const char* script;
    const char* failure;
  } cases[] = {
      {5, "printf 12345", ""},
      {5, "printf 123456", "/bin/sh: was stopped after 5 bytes of output, the limit of one run"},
      {1024, "exec yes", "/bin/sh: was stopped after 1 KiB of output, the limit of one run"},
      {kMib, "trap '' TERM; yes",
       "/bin/sh: was stopped after 1 MiB of output, the limit of one run"},
  };
  for (const auto& c : cases) {
    const auto start = Clock::now();
    const ProcessResult result = Sh(c.script, {.output_bytes = c.limit, .grace = 200ms});
    EXPECT_EQ(c.failure, result.failure);
    EXPECT_LE(result.output.size(), c.limit);
    EXPECT_LE(result.output.capacity(), std::max<std::size_t>(64, 3 * c.limit));
    EXPECT_LT(Clock::now() - start, 20s);
  }
}

TEST_F(ProcessTest, TimeLimitEndsTheWholeGroup) {
  const struct {
    const char* script;
    const char* error_output;
  } cases[] = {
      {"sleep 60", ""},
      {"trap '' TERM; while :; do sleep 1; done", ""},
      {"kill -STOP $$", ""},
      {"trap 'echo bye >&2; exit 3' TERM; kill -STOP $$; sleep 0.1", "bye\n"},
      {"exec >&- 2>&-; sleep 60", ""},
      {"sleep 60 & exec sleep 60", ""},
      {"(trap '' TERM; exec sleep 60) & exec sleep 60", ""},
  };
  for (const auto& c : cases) {
    const auto start = Clock::now();
    const std::clock_t cpu_start = std::clock();
    const ProcessResult result = Sh("echo $$; " + std::string(c.script), ShortTime());
    EXPECT_EQ("/bin/sh: was stopped after 400 ms, the time limit of one run", result.failure);
    EXPECT_EQ(c.error_output, result.error_output) << c.script;
    EXPECT_EQ(0, result.exit_status) << c.script;
    EXPECT_LT(std::clock() - cpu_start, CLOCKS_PER_SEC / 10) << "it waits in a busy loop";
    EXPECT_GE(Clock::now() - start, 400ms);
    EXPECT_LT(Clock::now() - start, 20s) << c.script;
    EXPECT_TRUE(GroupEnds(result.output, 10s)) << c.script;
  }
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
    KillRunningProcess();  // There is none.
    EXPECT_FALSE(GroupEnds(result.output, 50ms));
    kill(-std::stoi(result.output), SIGKILL);
  }
}

TEST_F(ProcessTest, EndOfTheRunIsTold) {
  const struct {
    const char* script;
    int exit_status;
    const char* failure;
  } cases[] = {
      {"exit 0", 0, ""},
      {"exit 127", 127, ""},
      {"exit 255", 255, ""},
      {"exec >&- 2>&-; sleep 0.1; exit 5", 5, ""},
      {"kill -SEGV $$", 0, "/bin/sh: was ended by signal 11 (Segmentation fault)"},
      {"kill -40 $$", 0, "/bin/sh: was ended by signal 40"},
  };
  for (const auto& c : cases) {
    const ProcessResult result = Sh(c.script);
    EXPECT_EQ(c.exit_status, result.exit_status) << c.script;
    EXPECT_EQ(c.failure, result.failure) << c.script;
  }
}

TEST_F(ProcessTest, StartFailuresHaveTheirOwnReasons) {
  std::string directory = testing::TempDir() + "process_test_XXXXXX";
  ASSERT_NE(nullptr, mkdtemp(directory.data()));
  const auto write = [&](const char* name, const char* content, mode_t mode) {
    std::string path = directory + "/" + name;
    std::ofstream(path) << content;
    chmod(path.c_str(), mode);
    return path;
  };
  const std::string busy = directory + "/busy";
  std::filesystem::copy_file("/bin/true", busy);
  const std::ofstream writer(busy, std::ios::app);
  const struct {
    std::string program;
    std::string failure;
  } cases[] = {
      {"./no/such", "No such file or directory"},
      {"sh", "No such file or directory"},
      {write("plain", "", 0644), "Permission denied (is it executable?)"},
      {directory, "Permission denied (is it executable?)"},
      {write("text", "echo x\n", 0755),
       "Exec format error (is it built for this system, or a script without #! line?)"},
      {write("script", "#!/no/such\n", 0755),
       "No such file or directory (it is there: is its interpreter or /dev/null missing?)"},
      {busy, "Text file busy (is it still being written?)"},
  };
  const std::size_t descriptors = OpenDescriptors();
  for (const auto& c : cases) {
    const ProcessResult result = RunProcess(c.program, {"secret"}, {});
    EXPECT_EQ(c.program + ": cannot be started: " + c.failure, result.failure);
  }
  EXPECT_EQ("/bin/sh: cannot be started: its path or an argument contains a NUL byte",
            Sh(std::string("exit 0\0", 7)).failure);
  EXPECT_EQ(descriptors, OpenDescriptors());
  std::filesystem::remove_all(directory);
}

void AllowNoDescriptors() {
  const rlimit limit{3, 3};
  setrlimit(RLIMIT_NOFILE, &limit);
}

void AllowNoProcesses() {
  const rlimit limit{0, 0};
  setrlimit(RLIMIT_NPROC, &limit);
  if (geteuid() == 0 && setuid(65534) != 0) _exit(1);  // The limit does not bind root.
}

void IgnoreChildren() { signal(SIGCHLD, SIG_IGN); }

template <int kSystemCall>
void Forbid() {
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, 0),  // The number of the system call.
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kSystemCall, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{static_cast<unsigned short>(std::size(filter)), filter};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    _exit(1);
  }
}

TEST_F(ProcessTest, HostsThatMakeItHard) {
  const std::string stopped = "was stopped after 300 ms, the time limit of one run";
  const struct {
    void (*set_up)();
    std::chrono::milliseconds time;
    const char* script;
    int exit_status;
    std::string failure;
  } cases[] = {
      {AllowNoDescriptors, 10s, "exit 3", 0, "cannot be started: Too many open files"},
      {AllowNoProcesses, 10s, "exit 3", 0,
       "cannot be started: Resource temporarily unavailable (too many processes)"},
      {IgnoreChildren, 10s, "exit 3", 0,
       "ended, but its exit status is lost: No child processes (the host must neither ignore "
       "SIGCHLD nor wait for children it did not start)"},
      {IgnoreChildren, 300ms, "sleep 60", 0, stopped},
      {Forbid<SYS_pidfd_open>, 10s, "exec 2>&-; echo x; exec >&-; sleep 0.1; exit 3", 3, ""},
      {Forbid<SYS_pidfd_open>, 300ms, "sleep 60", 0, stopped},
      {Forbid<SYS_kill>, 300ms, "exec sleep 3", 0,
       stopped + "; it does not react and may still be running"},
  };
  for (const auto& c : cases) {
    const auto start = Clock::now();
    const ProcessResult result =
        InForkedHost(c.set_up, [&] { return Sh(c.script, {.time = c.time, .grace = 200ms}); });
    EXPECT_EQ(c.failure.empty() ? "" : "/bin/sh: " + c.failure, result.failure);
    EXPECT_EQ(c.exit_status, result.exit_status) << c.script;
    EXPECT_LT(Clock::now() - start, 8s) << c.script;
  }
}

void SetTimer(std::chrono::microseconds first, std::chrono::microseconds then,
              void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;  // Without SA_RESTART: calls are interrupted.
  sigaction(SIGALRM, &action, nullptr);
  const itimerval timer{{0, then.count()}, {0, first.count()}};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

TEST_F(ProcessTest, InterruptedCallsAreResumed) {
  SetTimer(1ms, 1ms, [](int) {});
  for (int i = 0; i < 20; ++i) {
    const ProcessResult result =
        Sh("printf a; head -c 1000000 /dev/zero >&2; sleep 0.01; printf b; exit 3");
    EXPECT_EQ("ab", result.output);
    EXPECT_EQ(3, result.exit_status);
    EXPECT_EQ("", result.failure);
  }
  SetTimer(0ms, 0ms, SIG_IGN);
}

TEST_F(ProcessTest, AHostThatLooksLateLosesNothing) {
  SetTimer(50ms, 0ms, [](int) { usleep(300'000); });
  const ProcessResult result =
      Sh("sleep 0.1; head -c 60000 /dev/zero; head -c 32768 /dev/zero >&2");
  SetTimer(0ms, 0ms, SIG_IGN);
  EXPECT_EQ(60000, result.output.size());
  EXPECT_EQ(32768, result.error_output.size());
  EXPECT_EQ("", result.failure);
}

TEST_F(ProcessTest, AHandlerCanEndTheRun) {
  KillRunningProcess();  // There is none yet.
  SetTimer(300ms, 0ms, [](int) { KillRunningProcess(); });
  const ProcessResult result = Sh("echo $$; trap '' TERM; sleep 60 & sleep 60", {.time = 30s});
  SetTimer(0ms, 0ms, SIG_IGN);
  EXPECT_EQ("/bin/sh: was ended by signal 9 (Killed)", result.failure);
  EXPECT_TRUE(GroupEnds(result.output, 10s));
}

TEST_F(ProcessTest, ManyRunsLeaveNothingBehind) {
  const pid_t other_child = fork();
  if (other_child == 0) _exit(7);
  const std::size_t descriptors = OpenDescriptors();
  for (int i = 0; i < 1000; ++i) ASSERT_EQ("", RunProcess("/bin/true", {}, {}).failure);
  EXPECT_EQ(descriptors, OpenDescriptors());
  int status = 0;
  EXPECT_EQ(other_child, waitpid(-1, &status, 0));
  EXPECT_EQ(7, WEXITSTATUS(status));
  EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
  EXPECT_EQ(ECHILD, errno);
}

}  // namespace
