#include "standin/process.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <spawn.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <utility>

// This header of the C library does not declare its functions for C++ in every version.
extern "C" {
#include <sys/pidfd.h>
}

namespace standin {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kReadBytes = std::size_t{16} << 10;
constexpr std::size_t kPipeBytes = std::size_t{64} << 10;
constexpr std::size_t kErrorEndBytes = std::size_t{16} << 10;
/// How often a child without a process descriptor is looked at.
constexpr milliseconds kPollSlice{5};
/// Keeps sums of times and poll's timeout within their types.
constexpr milliseconds kLongestTime = std::chrono::hours{24 * 365};
constexpr milliseconds kLongestPoll = std::chrono::hours{1};
/// A killed child that has not ended by then hangs inside the kernel, or is not ours to kill.
constexpr milliseconds kKillTime = std::chrono::seconds{1};

/// The process group of the run in progress, or 0.
std::atomic<pid_t> running_group{0};
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

class Descriptor {
 public:
  Descriptor() = default;
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Reset(); }

  int Get() const { return fd_; }
  bool IsOpen() const { return fd_ >= 0; }
  void Reset(int fd = -1) {
    if (IsOpen()) close(fd_);  // Never retried: Linux frees the descriptor even when interrupted.
    fd_ = fd;
  }

 private:
  int fd_ = -1;
};

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

/// The functions that return an int return an error number, 0 for success.
int OpenPipe(Descriptor& read_end, Descriptor& write_end) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return errno;
  read_end.Reset(ends[0]);
  write_end.Reset(ends[1]);
  for (Descriptor* end : {&read_end, &write_end}) {
    // A host without standard descriptors gets these numbers, which the child needs for its own.
    if (end->Get() > STDERR_FILENO) continue;
    const int moved = fcntl(end->Get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (moved < 0) return errno;
    end->Reset(moved);
  }
  // Of our end only: the child's end must block.
  return fcntl(read_end.Get(), F_SETFL, O_NONBLOCK) < 0 ? errno : 0;
}

/// What the child shall find at its start.
class ChildSetup {
 public:
  ChildSetup() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
  }
  ChildSetup(const ChildSetup&) = delete;
  ChildSetup& operator=(const ChildSetup&) = delete;
  ~ChildSetup() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }

  int Prepare(int output, int error_output) {
    sigset_t all;
    sigset_t none;
    // Not sigfillset: it spares the C library's own two signals, which would stay ignored.
    memset(&all, 0xff, sizeof(all));
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setpgroup(&attributes_, 0);
    int error = posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    if (error == 0) {
      error = posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    if (error == 0) error = posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    if (error == 0) {
      error = posix_spawn_file_actions_adddup2(&actions_, error_output, STDERR_FILENO);
    }
    if (error == 0) {
      error = posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    }
    return error;
  }

  /// A handler that calls KillRunningProcess finds either no child yet or one whose group is known.
  int Start(const std::string& program, char* const* arguments, char* const* environment,
            pid_t& pid) const {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const int error =
        posix_spawn(&pid, program.c_str(), &actions_, &attributes_, arguments, environment);
    if (error == 0) {
      running_group = pid;
    } else {
      pid = 0;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return error;
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

std::vector<char*> ChildArguments(const std::string& program,
                                  const std::vector<std::string>& arguments) {
  std::vector<char*> result;
  result.reserve(arguments.size() + 2);
  // posix_spawn takes pointers to non-const for the sake of old C; it changes nothing.
  result.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& argument : arguments) {
    result.push_back(const_cast<char*>(argument.c_str()));
  }
  result.push_back(nullptr);
  return result;
}

/// The host's environment with LC_ALL=C: translated texts and decimal commas cannot be parsed.
std::vector<char*> ChildEnvironment() {
  static char c_locale[] = "LC_ALL=C";
  std::vector<char*> result;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (strncmp(*entry, "LC_ALL=", 7) != 0) result.push_back(*entry);
  }
  result.push_back(c_locale);
  result.push_back(nullptr);
  return result;
}

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

void SignalGroup(pid_t leader, int number) {
  if (LookAt(leader) != ChildState::kLost) kill(-leader, number);
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
    if (pid_ == 0) return;
    SignalGroup(pid_, SIGKILL);
    running_group = 0;
    Resume([&] { return waitpid(pid_, nullptr, 0); });
  }

  bool Start(const std::vector<std::string>& arguments);
  void Finish();

 private:
  void Fail(ProcessEnd end, const std::string& reason) {
    if (!result_.failure.empty()) return;
    result_.end = end;
    result_.failure = program_ + ": " + reason;
  }
  bool AwaitEnd(Clock::time_point deadline);
  bool Stop();
  void Drain();
  void ReadAvailable(Descriptor& stream);
  std::size_t Read(Descriptor& stream);
  void Keep(const Descriptor& stream, const char* data, std::size_t size);
  void Reap();

  const std::string& program_;
  const ProcessLimits& limits_;
  ProcessResult& result_;
  Clock::time_point start_;
  pid_t pid_ = 0;
  Descriptor output_;
  Descriptor error_output_;
  Descriptor process_;
  TextEnds error_text_;
};

bool Run::Start(const std::vector<std::string>& arguments) {
  const auto has_nul = [](const std::string& s) { return s.find('\0') != std::string::npos; };
  if (has_nul(program_) || std::any_of(arguments.begin(), arguments.end(), has_nul)) {
    Fail(ProcessEnd::kNotStarted, "cannot be started: its path or an argument contains a NUL byte");
    return false;
  }
  Descriptor child_output;
  Descriptor child_error_output;
  ChildSetup setup;
  int error = OpenPipe(output_, child_output);
  if (error == 0) error = OpenPipe(error_output_, child_error_output);
  if (error == 0) error = setup.Prepare(child_output.Get(), child_error_output.Get());
  if (error == 0) {
    const std::vector<char*> argument_pointers = ChildArguments(program_, arguments);
    const std::vector<char*> environment = ChildEnvironment();
    start_ = Clock::now();
    error = setup.Start(program_, argument_pointers.data(), environment.data(), pid_);
  }
  if (error != 0) {
    Fail(ProcessEnd::kNotStarted, StartFailure(program_, error));
    return false;
  }
  // Not permitted everywhere: AwaitEnd does without.
  process_.Reset(pidfd_open(pid_, 0));
  return true;
}

void Run::Finish() {
  const milliseconds time = std::min(limits_.time, kLongestTime);
  bool ended = AwaitEnd(start_ + time);
  if (ended) {
    Drain();
  } else {
    Fail(ProcessEnd::kTimedOut,
         "was stopped after " + TimeText(limits_.time) + ", the time limit of one run");
    ended = Stop();
  }
  result_.error_output = error_text_.Take();
  if (ended) {
    Reap();
    return;
  }
  result_.failure += "; it does not react and may still be running";
  abandoned.push_back(pid_);
  running_group = 0;
  pid_ = 0;
}

/// Takes what the child prints until it has ended: true. False at the deadline, or at a failure.
bool Run::AwaitEnd(Clock::time_point deadline) {
  const bool stopping = !result_.failure.empty();
  while (true) {
    pollfd watched[] = {
        {output_.Get(), POLLIN, 0}, {error_output_.Get(), POLLIN, 0}, {process_.Get(), POLLIN, 0}};
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    const milliseconds wait =
        std::clamp(left, milliseconds{0}, process_.IsOpen() ? kLongestPoll : kPollSlice);
    if (poll(watched, std::size(watched), static_cast<int>(wait.count())) < 0 && errno != EINTR) {
      Fail(ProcessEnd::kLost, "was stopped, as it cannot be watched: " + ErrorText(errno));
    }
    if (watched[0].revents != 0) ReadAvailable(output_);
    if (watched[1].revents != 0) ReadAvailable(error_output_);
    if (process_.IsOpen() ? watched[2].revents != 0 : LookAt(pid_) != ChildState::kRunning) {
      return true;
    }
    if (!stopping && !result_.failure.empty()) return false;
    if (Clock::now() >= deadline) return false;
  }
}

/// Ends the child's whole group. The leader is not reaped before, as it keeps the group's number
/// ours. False when the leader goes on all the same.
bool Run::Stop() {
  SignalGroup(pid_, SIGTERM);
  SignalGroup(pid_, SIGCONT);
  AwaitEnd(Clock::now() + std::min(limits_.grace, kLongestTime));
  SignalGroup(pid_, SIGKILL);
  const bool ended = AwaitEnd(Clock::now() + kKillTime);
  Drain();
  return ended;
}

/// Takes what the pipes hold at this moment. All that the child wrote is there; to wait for the
/// end of the stream would be to wait for whoever else inherited it.
void Run::Drain() {
  for (Descriptor* stream : {&output_, &error_output_}) {
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
  stream.Reset();
  return 0;
}

void Run::Keep(const Descriptor& stream, const char* data, std::size_t size) {
  if (&stream == &error_output_) {
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
  running_group = 0;
  const pid_t pid = std::exchange(pid_, 0);
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
  const pid_t group = running_group;
  if (group > 0) SignalGroup(group, SIGKILL);
  errno = saved_errno;
}

}  // namespace standin
