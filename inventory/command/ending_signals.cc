#include "inventory/command/ending_signals.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "inventory/runs/left_processes.h"

namespace {

// All that would end this program otherwise, unless it is a fault of its own.
const std::vector<int>& EndingSignals() {
  static const std::vector<int> all = [] {
    std::vector<int> numbers = {SIGHUP,  SIGINT,  SIGQUIT,   SIGTERM, SIGALRM, SIGXCPU,  SIGUSR1,
                                SIGUSR2, SIGPROF, SIGVTALRM, SIGPOLL, SIGPWR,  SIGSTKFLT};
    for (int number = SIGRTMIN; number <= SIGRTMAX; ++number) numbers.push_back(number);
    return numbers;
  }();
  return all;
}

// For the signal handler: it changes only while that is kept from running.
char last_words[4096];
std::size_t last_words_size = 0;

void EndBySignal(int number) {
  KillAllProcesses();
  UnfinishedFile::EndAll();
  // Only where it does not wait for a reader: nothing may keep this program from ending.
  pollfd output = {STDOUT_FILENO, POLLOUT, 0};
  if (last_words_size > 0 && poll(&output, 1, 0) > 0) {
    [[maybe_unused]] const ssize_t written = write(STDOUT_FILENO, last_words, last_words_size);
  }
  signal(number, SIG_DFL);
  raise(number);  // so that the caller sees how this program ended
}

sigset_t EndingSet() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : EndingSignals()) sigaddset(&set, number);
  return set;
}

/// Keeps the ending signals waiting while an unfinished file comes or goes.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    const sigset_t blocked = EndingSet();
    sigprocmask(SIG_BLOCK, &blocked, &before_);
  }
  ~SignalsBlocked() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

void CleanUpOnSignals() {
  struct sigaction action {};
  action.sa_handler = EndBySignal;
  action.sa_mask = EndingSet();
  for (const int number : EndingSignals()) {
    struct sigaction before {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
  }
}

void SayWhenASignalEnds(const std::string& text) {
  const SignalsBlocked blocked;
  last_words_size = text.copy(last_words, sizeof last_words);
}

// The list and the names in it, which the signal handler reads, change only while it is kept from
// running.
UnfinishedFile* UnfinishedFile::first_ = nullptr;

UnfinishedFile::~UnfinishedFile() {
  if (name_.empty() || last_name_.empty() || !MoveTo(last_name_)) Remove();
}

void UnfinishedFile::Remove() {
  if (name_.empty()) return;
  const SignalsBlocked blocked;
  unlinkat(folder_, name_.c_str(), 0);
  Forget();
}

int UnfinishedFile::Create(int folder) {
  const SignalsBlocked blocked;
  folder_ = folder;
  int descriptor = -1;
  do {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) < 0) break;
    name_ = ".kraid-" + std::to_string(number);
    descriptor = openat(folder_, name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  } while (descriptor < 0 && errno == EEXIST);
  if (descriptor < 0) {
    name_.clear();
  } else {
    next_ = first_;
    first_ = this;
  }
  return descriptor;
}

bool UnfinishedFile::MoveTo(const std::string& name) {
  const SignalsBlocked blocked;
  if (renameat(folder_, name_.c_str(), folder_, name.c_str()) != 0) return false;
  Forget();
  return true;
}

void UnfinishedFile::MoveAtTheEnd(const std::string& name) {
  const SignalsBlocked blocked;
  last_name_ = name;
}

void UnfinishedFile::EndAll() noexcept {
  for (const UnfinishedFile* file = first_; file != nullptr; file = file->next_) {
    const char* const name = file->name_.c_str();
    const bool is_moved = !file->last_name_.empty() && renameat(file->folder_, name, file->folder_,
                                                                file->last_name_.c_str()) == 0;
    if (!is_moved) unlinkat(file->folder_, name, 0);
  }
}

void UnfinishedFile::Forget() {
  UnfinishedFile** link = &first_;
  while (*link != this) link = &(*link)->next_;
  *link = next_;
  name_.clear();
}
