#include "inventory/command/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>

#include "standin/process.h"

namespace fs = std::filesystem;

namespace {

constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

// The unfinished file, for the signal handler; "" when there is none. It changes only while the
// ending signals are blocked.
char unfinished_file[PATH_MAX] = "";

void EndBySignal(int number) {
  standin::KillRunningProcess();
  if (unfinished_file[0] != '\0') unlink(unfinished_file);
  signal(number, SIG_DFL);
  raise(number);  // so that the caller sees how this program ended
}

sigset_t EndingSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : kEndingSignals) sigaddset(&set, number);
  return set;
}

/// Keeps the ending signals waiting while the unfinished file comes or goes.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    const sigset_t blocked = EndingSignals();
    sigprocmask(SIG_BLOCK, &blocked, &before_);
  }
  ~SignalsBlocked() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

/// The permissions of the file that is replaced, or those of any new file.
mode_t ModeOf(const fs::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

void CleanUpOnSignals() {
  struct sigaction action {};
  action.sa_handler = EndBySignal;
  action.sa_mask = EndingSignals();
  for (const int number : kEndingSignals) {
    struct sigaction before {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
  }
  // A reader that goes away is an error of writing, not the end of this program.
  signal(SIGPIPE, SIG_IGN);
}

OutputFile::OutputFile(const fs::path& path) {
  std::error_code ignored;
  if (path.empty()) {
    file_ = stdout;
  } else if (const fs::file_status status = fs::status(path, ignored);
             fs::exists(status) && !fs::is_regular_file(status)) {
    file_ = std::fopen(path.c_str(), "wbe");
    if (file_ == nullptr) Fail();
  } else {
    target_ = path;
    // A link stays one, also when what it points to is not there yet.
    for (int links = 0; fs::is_symlink(fs::symlink_status(target_, ignored)); ++links) {
      if (links == 40) {
        errno = ELOOP;
        Fail();
        return;
      }
      target_ = target_.parent_path() / fs::read_symlink(target_, ignored);
    }
    OpenTemporary();
  }
}

void OutputFile::OpenTemporary() {
  const std::string name = (target_.parent_path() / ".kraid-XXXXXX").string();
  if (name.size() >= sizeof unfinished_file) {
    errno = ENAMETOOLONG;
    return Fail();
  }
  const SignalsBlocked blocked;
  std::memcpy(unfinished_file, name.c_str(), name.size() + 1);
  const int descriptor = mkostemp(unfinished_file, O_CLOEXEC);
  if (descriptor < 0) {
    Fail();
    unfinished_file[0] = '\0';
    return;
  }
  fchmod(descriptor, ModeOf(target_));
  file_ = fdopen(descriptor, "wb");
  if (file_ == nullptr) {
    Fail();
    close(descriptor);
  }
}

OutputFile::~OutputFile() {
  if (file_ != nullptr && file_ != stdout) std::fclose(file_);
  if (target_.empty() || unfinished_file[0] == '\0') return;
  const SignalsBlocked blocked;
  unlink(unfinished_file);
  unfinished_file[0] = '\0';
}

void OutputFile::Write(std::string_view text) {
  if (error_.empty() && std::fwrite(text.data(), 1, text.size(), file_) != text.size()) Fail();
}

void OutputFile::Finish() {
  if (!error_.empty()) return;
  if (std::fflush(file_) != 0) return Fail();
  if (target_.empty()) return;
  if (fsync(fileno(file_)) != 0) return Fail();
  const SignalsBlocked blocked;
  if (std::rename(unfinished_file, target_.c_str()) != 0) return Fail();
  unfinished_file[0] = '\0';
}

void OutputFile::Fail() {
  broken_pipe_ = errno == EPIPE;
  error_ = std::strerror(errno);
}
