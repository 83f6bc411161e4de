#include "standin/process.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "standin/awake_clock.h"
#include "standin/child_start.h"

// This header of the C library does not declare its functions for C++ in every version.
extern "C" {
#include <sys/pidfd.h>
}

namespace standin {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kReadBytes = std::size_t{16} << 10;
constexpr std::size_t kPipeBytes = std::size_t{64} << 10;
constexpr std::size_t kErrorEndBytes = std::size_t{16} << 10;
/// How often a child without a process descriptor is looked at.
constexpr milliseconds kPollSlice{5};
/// Keeps sums of times within their type.
constexpr milliseconds kLongestTime = std::chrono::hours{24 * 365};
/// A killed child that has not ended by then hangs inside the kernel, or is not ours to kill.
constexpr milliseconds kKillTime = std::chrono::seconds{1};

/// The leader of the session of the run in progress, or 0.
std::atomic<pid_t> running_leader{0};
static_assert(std::atomic<pid_t>::is_always_lock_free, "read by signal handlers");

std::mutex one_run_at_a_time;
/// Children that outlived being killed, to be reaped later. Guarded by `one_run_at_a_time`.
std::vector<pid_t> abandoned;

template <class Call>
auto Resume(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

std::string ErrorText(int error) {
  // Unlike strerror, the same in every locale.
  const char* text = strerrordesc_np(error);
  return text != nullptr ? text : "error " + std::to_string(error);
}

/// Keeps the beginning and the end of a text in bounded memory.
class TextEnds {
 public:
  void Append(const char* data, std::size_t size) {
    const std::size_t for_head = std::min(size, kErrorEndBytes - head_.size());
    head_.append(data, for_head);
    tail_.append(data + for_head, size - for_head);
    // Cut seldom: each cut moves what is kept.
    if (tail_.size() > 4 * kErrorEndBytes) CutTail();
  }

  std::string Take() {
    CutTail();
    if (left_out_ != 0) head_ += "\n[... " + std::to_string(left_out_) + " bytes left out ...]\n";
    return std::move(head_) + tail_;
  }

 private:
  void CutTail() {
    if (tail_.size() <= kErrorEndBytes) return;
    const std::size_t surplus = tail_.size() - kErrorEndBytes;
    tail_.erase(0, surplus);
    left_out_ += surplus;
  }

  std::string head_;
  std::string tail_;
  std::size_t left_out_ = 0;
};

std::string StartFailure(const std::string& program, int error) {
  const char* hint = "";
  if (error == EACCES) hint = " (is it executable?)";
  if (error == ENOEXEC) hint = " (is it built for this system, or a script without #! line?)";
  if (error == ETXTBSY) hint = " (is it still being written?)";
  if (error == EAGAIN) hint = " (too many processes)";
  if (error == ENOENT && access(program.c_str(), F_OK) == 0) {
    hint = " (it is there: is its interpreter or /dev/null missing?)";
  }
  return "cannot be started: " + ErrorText(error) + hint;
}

std::string SizeText(std::size_t bytes) {
  constexpr std::size_t kKib = std::size_t{1} << 10;
  constexpr std::size_t kMib = std::size_t{1} << 20;
  if (bytes >= kMib && bytes % kMib == 0) return std::to_string(bytes / kMib) + " MiB";
  if (bytes >= kKib && bytes % kKib == 0) return std::to_string(bytes / kKib) + " KiB";
  return std::to_string(bytes) + " bytes";
}

std::string TimeText(milliseconds time) {
  if (time.count() % 1000 == 0) return std::to_string(time.count() / 1000) + " s";
  return std::to_string(time.count()) + " ms";
}

std::string SignalText(int number) {
  const char* text = sigdescr_np(number);
  return std::to_string(number) + (text != nullptr ? " (" + std::string(text) + ")" : "");
}

enum class ChildState { kRunning, kEnded, kLost };

/// Does not reap. kLost: no such child of ours any more, so its number may be somebody else's.
ChildState LookAt(pid_t pid) {
  siginfo_t info{};
  if (Resume([&] {
        return waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT);
      }) != 0) {
    return ChildState::kLost;
  }
  return info.si_pid == 0 ? ChildState::kRunning : ChildState::kEnded;
}

/// The leader by its own number as well, wherever it may have gone.
void SignalGroup(pid_t leader, int number) {
  if (LookAt(leader) == ChildState::kLost) return;
  kill(-leader, number);
  kill(leader, number);
}

/// One run, from its start to the reaping of its child.
class Run {
 public:
  Run(const std::string& program, const ProcessLimits& limits, ProcessResult& result)
      : program_(program), limits_(limits), result_(result) {}
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  /// A child is left only when memory ran out in the middle of the run.
  ~Run() {
    if (child_.pid == 0) return;
    SignalGroup(child_.pid, SIGKILL);
    running_leader = 0;
    Resume([&] { return waitpid(child_.pid, nullptr, 0); });
  }

  bool Start(const std::vector<std::string>& arguments);
  void Finish();

 private:
  void Fail(ProcessEnd end, const std::string& reason) {
    if (!result_.failure.empty()) return;
    result_.end = end;
    result_.failure = program_ + ": " + reason;
  }
  bool AwaitEnd(milliseconds time);
  bool Stop();
  void Drain();
  void ReadAvailable(Descriptor& stream);
  std::size_t Read(Descriptor& stream);
  void Keep(const Descriptor& stream, const char* data, std::size_t size);
  void Reap();

  const std::string& program_;
  const ProcessLimits& limits_;
  ProcessResult& result_;
  AwakeClock clock_;
  Child child_;
  Descriptor process_;
  TextEnds error_text_;
};

bool Run::Start(const std::vector<std::string>& arguments) {
  const auto has_nul = [](const std::string& s) { return s.find('\0') != std::string::npos; };
  if (has_nul(program_) || std::any_of(arguments.begin(), arguments.end(), has_nul)) {
    Fail(ProcessEnd::kNotStarted, "cannot be started: its path or an argument contains a NUL byte");
    return false;
  }
  if (const int error = StartChild(program_, limits_.executable, arguments, running_leader, child_);
      error != 0) {
    Fail(ProcessEnd::kNotStarted, StartFailure(program_, error));
    return false;
  }
  result_.pid = child_.pid;
  // Not permitted everywhere: AwaitEnd does without.
  process_ = Descriptor(pidfd_open(child_.pid, 0));
  return true;
}

void Run::Finish() {
  bool ended = AwaitEnd(limits_.time);
  if (ended) {
    Drain();
  } else {
    Fail(ProcessEnd::kTimedOut,
         "was stopped after " + TimeText(limits_.time) + ", the time limit of one run");
    ended = Stop();
  }
  result_.error_output = error_text_.Take();
  clock_.Now();  // so that it knows of a suspension in the last wait
  result_.suspended = std::chrono::duration_cast<milliseconds>(clock_.GetSuspended());
  if (ended) {
    Reap();
    return;
  }
  result_.failure += "; it does not react and may still be running";
  result_.has_outlived_killing = true;
  abandoned.push_back(child_.pid);
  running_leader = 0;
  child_.pid = 0;
}

/// Takes what the child prints until it has ended: true. False when the time is over, or at a
/// failure.
bool Run::AwaitEnd(milliseconds time) {
  const bool stopping = !result_.failure.empty();
  const auto deadline = clock_.Now() + std::min(time, kLongestTime);
  while (true) {
    pollfd watched[] = {{child_.output.Get(), POLLIN, 0},
                        {child_.error_output.Get(), POLLIN, 0},
                        {process_.Get(), POLLIN, 0}};
    const auto left = std::chrono::ceil<milliseconds>(deadline - clock_.Now());
    const milliseconds wait =
        std::clamp(left, milliseconds{0}, process_.IsOpen() ? AwakeClock::kHeartbeat : kPollSlice);
    if (poll(watched, std::size(watched), static_cast<int>(wait.count())) < 0 && errno != EINTR) {
      Fail(ProcessEnd::kLost, "was stopped, as it cannot be watched: " + ErrorText(errno));
      std::this_thread::sleep_for(kPollSlice);  // in the place of the wait, until it is ended
    }
    if (watched[0].revents != 0) ReadAvailable(child_.output);
    if (watched[1].revents != 0) ReadAvailable(child_.error_output);
    if (process_.IsOpen() ? watched[2].revents != 0 : LookAt(child_.pid) != ChildState::kRunning) {
      return true;
    }
    if (!stopping && !result_.failure.empty()) return false;
    if (clock_.Now() >= deadline) return false;
  }
}

/// Ends the child's whole group. The leader is not reaped before, as it keeps the group's number
/// ours. False when the leader goes on all the same.
bool Run::Stop() {
  SignalGroup(child_.pid, SIGTERM);
  SignalGroup(child_.pid, SIGCONT);
  AwaitEnd(limits_.grace);
  SignalGroup(child_.pid, SIGKILL);
  const bool ended = AwaitEnd(kKillTime);
  Drain();
  return ended;
}

/// Takes what the pipes hold at this moment. All that the child wrote is there; to wait for the
/// end of the stream would be to wait for whoever else inherited it.
void Run::Drain() {
  for (Descriptor* stream : {&child_.output, &child_.error_output}) {
    int held = 0;
    if (!stream->IsOpen() || ioctl(stream->Get(), FIONREAD, &held) != 0) continue;
    for (auto left = static_cast<std::size_t>(held); left > 0;) {
      const std::size_t taken = Read(*stream);
      if (taken == 0) break;
      left -= std::min(left, taken);
    }
  }
}

/// Takes what a full pipe holds, not what is written meanwhile: that would never end.
void Run::ReadAvailable(Descriptor& stream) {
  for (std::size_t taken = 0; taken < kPipeBytes;) {
    const std::size_t size = Read(stream);
    if (size < kReadBytes) return;
    taken += size;
  }
}

/// Returns the number of bytes taken; 0 when there are none now, or no more to come.
std::size_t Run::Read(Descriptor& stream) {
  char buffer[kReadBytes];
  const ssize_t size = Resume([&] { return read(stream.Get(), buffer, sizeof(buffer)); });
  if (size > 0) {
    Keep(stream, buffer, static_cast<std::size_t>(size));
    return static_cast<std::size_t>(size);
  }
  if (size < 0 && errno == EAGAIN) return 0;
  if (size < 0)
    Fail(ProcessEnd::kLost, "was stopped, as its output cannot be read: " + ErrorText(errno));
  stream = Descriptor();
  return 0;
}

void Run::Keep(const Descriptor& stream, const char* data, std::size_t size) {
  if (&stream == &child_.error_output) {
    error_text_.Append(data, size);
    result_.error_bytes += size;
    return;
  }
  const std::size_t room = limits_.output_bytes - result_.output.size();
  result_.output.append(data, std::min(size, room));
  if (size > room) {
    Fail(ProcessEnd::kOutputLimit, "was stopped after " + SizeText(limits_.output_bytes) +
                                       " of output, the limit of one run");
  }
}

void Run::Reap() {
  running_leader = 0;
  const pid_t pid = std::exchange(child_.pid, 0);
  int status = 0;
  if (Resume([&] { return waitpid(pid, &status, 0); }) < 0) {
    Fail(ProcessEnd::kLost,
         "ended, but its exit status is lost: " + ErrorText(errno) +
             " (the host must neither ignore SIGCHLD nor wait for children it did not start)");
  } else if (WIFSIGNALED(status)) {
    Fail(ProcessEnd::kSignalled, "was ended by signal " + SignalText(WTERMSIG(status)));
    if (result_.end == ProcessEnd::kSignalled) result_.signal = WTERMSIG(status);
  } else if (result_.failure.empty()) {
    result_.exit_status = WEXITSTATUS(status);
  }
}

}  // namespace

ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessLimits& limits) {
  const std::lock_guard<std::mutex> lock(one_run_at_a_time);
  abandoned.erase(std::remove_if(abandoned.begin(), abandoned.end(),
                                 [](pid_t pid) { return waitpid(pid, nullptr, WNOHANG) != 0; }),
                  abandoned.end());
  ProcessResult result;
  try {
    Run run(program, limits, result);
    if (run.Start(arguments)) run.Finish();
  } catch (const std::bad_alloc&) {
    result = {};
    result.end = ProcessEnd::kLost;
    result.failure = program + ": was stopped: " + ErrorText(ENOMEM);
  }
  return result;
}

void KillRunningProcess() noexcept {
  const int saved_errno = errno;
  const pid_t leader = running_leader;
  if (leader > 0) SignalGroup(leader, SIGKILL);
  errno = saved_errno;
}

}  // namespace standin
