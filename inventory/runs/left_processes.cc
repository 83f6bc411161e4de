#include "inventory/runs/left_processes.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <fstream>

#include "standin/descriptor.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kGrace{500};
constexpr milliseconds kKillTime{1000};
constexpr milliseconds kPollSlice{2};
/// More than a run leaves behind, unless it means to; the next look shows the others.
constexpr std::size_t kMostAtOnce = 512;

/// Numbers of processes, without memory from the heap: signal handlers read them, too.
struct Children {
  pid_t pids[kMostAtOnce];
  std::size_t count = 0;

  void Add(pid_t pid) {
    if (count < kMostAtOnce) pids[count++] = pid;
  }
  bool Holds(pid_t pid) const { return std::find(pids, pids + count, pid) != pids + count; }
};

bool inherits = false;
/// Those that could not be ended: they hang inside the kernel, and are no reason to wait again.
Children others;

/// The children of now, whether they go on or wait to be reaped, but for those that cannot be
/// ended. None where the kernel has no such list. Async-signal-safe.
void FindChildren(Children& found) {
  found.count = 0;
  const standin::Descriptor file(open("/proc/thread-self/children", O_RDONLY | O_CLOEXEC));
  if (!file.IsOpen()) return;
  char text[4096];
  pid_t pid = 0;
  for (ssize_t size = 0; (size = read(file.Get(), text, sizeof text)) > 0;) {
    for (ssize_t i = 0; i < size; ++i) {
      if (text[i] >= '0' && text[i] <= '9') {
        pid = pid * 10 + (text[i] - '0');
        continue;
      }
      if (pid > 0 && found.count < kMostAtOnce && !others.Holds(pid)) {
        found.pids[found.count++] = pid;
      }
      pid = 0;
    }
  }
}

void Sleep(milliseconds time) {
  const timespec left{time.count() / 1000, static_cast<long>(time.count() % 1000) * 1'000'000};
  nanosleep(&left, nullptr);
}

/// Sends each of them the signal, once, reaps those that end, and goes on for as long as there are
/// some and there is time: whose parent ends is a child of this process from then on.
/// Async-signal-safe.
bool EndChildren(int number, milliseconds time) noexcept {
  Children children;
  Children told;
  for (milliseconds waited{0}; waited <= time; waited += kPollSlice) {
    FindChildren(children);
    std::size_t left = 0;
    for (std::size_t i = 0; i < children.count; ++i) {
      const pid_t pid = children.pids[i];
      if (waitpid(pid, nullptr, WNOHANG) != 0) continue;
      ++left;
      if (told.Holds(pid)) continue;
      if (told.count == kMostAtOnce) told.count = 0;
      told.Add(pid);
      kill(pid, number);
      kill(pid, SIGCONT);
    }
    if (left == 0) return true;
    Sleep(kPollSlice);
  }
  return false;
}

std::string NameOf(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
  std::string name;
  std::getline(file, name);
  // One that was executed by a descriptor is called by its number.
  if (name.find_first_not_of("0123456789") == std::string::npos) {
    std::ifstream words("/proc/" + std::to_string(pid) + "/cmdline");
    std::getline(words, name, '\0');
    name.erase(0, name.rfind('/') + 1);
  }
  return name.empty() ? "process " + std::to_string(pid) : name;
}

/// A process that has ended and waits to be reaped was left by nobody.
bool HasEnded(pid_t pid) {
  siginfo_t info{};
  return waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         info.si_pid != 0;
}

}  // namespace

void InheritLeftProcesses() {
  Children found;
  FindChildren(found);
  // What children of before leave behind would come here, too, and cannot be told from a run's.
  inherits = found.count == 0 && prctl(PR_SET_CHILD_SUBREAPER, 1) == 0;
}

standin::ProcessResult RunAndEndAll(const std::string& program,
                                    const std::vector<std::string>& arguments,
                                    const standin::ProcessLimits& limits) {
  standin::ProcessResult result = standin::RunProcess(program, arguments, limits);
  if (!inherits) return result;
  // The run itself, where it goes on, is told already.
  if (result.has_outlived_killing) others.Add(result.pid);
  Children children;
  FindChildren(children);
  for (std::size_t i = 0; i < children.count; ++i) {
    if (!HasEnded(children.pids[i])) result.left_behind.push_back(NameOf(children.pids[i]));
  }
  if (children.count > 0 && !EndChildren(SIGTERM, kGrace) && !EndChildren(SIGKILL, kKillTime)) {
    FindChildren(children);
    for (std::size_t i = 0; i < children.count; ++i) {
      others.Add(children.pids[i]);
      result.left_behind.push_back(NameOf(children.pids[i]) + ", which goes on");
    }
  }
  return result;
}

void KillAllProcesses() noexcept {
  standin::KillRunningProcess();
  if (inherits) EndChildren(SIGKILL, kKillTime);
}
