#include "standin/child_start.h"

#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <pwd.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <string_view>

namespace standin {
namespace {

/// The functions that return an int return an error number, 0 for success.
int OpenPipe(Descriptor& read_end, Descriptor& write_end) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return errno;
  read_end = Descriptor(ends[0]);
  write_end = Descriptor(ends[1]);
  for (Descriptor* end : {&read_end, &write_end}) {
    // A host without standard descriptors gets these numbers, which the child needs for its own.
    if (end->Get() > STDERR_FILENO) continue;
    const int moved = fcntl(end->Get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (moved < 0) return errno;
    *end = Descriptor(moved);
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
    // A session of its own has no terminal to ask on, and cannot move to the host's process group.
    int error = posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
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

  int Start(const std::string& path, char* const* arguments, char* const* environment,
            pid_t& pid) const {
    return posix_spawn(&pid, path.c_str(), &actions_, &attributes_, arguments, environment);
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

/// Texts as a null-terminated array of pointers. posix_spawn takes pointers to non-const for the
/// sake of old C; it changes nothing.
std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
  result.push_back(nullptr);
  return result;
}

/// The user's home directory as the system knows it.
std::string HomeDirectory() {
  passwd entry{};
  passwd* found = nullptr;
  char texts[4096];
  const bool is_known =
      getpwuid_r(geteuid(), &entry, texts, sizeof texts, &found) == 0 && found != nullptr;
  return is_known ? entry.pw_dir : "/";
}

/// A zone by its name. A path could be any file.
bool IsZoneName(std::string_view zone) {
  return !zone.empty() && zone[0] != ':' && zone[0] != '/' &&
         zone.find("..") == std::string_view::npos;
}

/// Nothing of the host's but its time zone, as the times that a tool prints stand beside the
/// host's. Translated texts and decimal commas cannot be parsed.
std::vector<std::string> ChildEnvironment() {
  static const std::string home = "HOME=" + HomeDirectory();
  std::vector<std::string> environment = {
      "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", home, "LANG=C",
      "LC_ALL=C"};
  const char* zone = getenv("TZ");
  if (zone != nullptr && IsZoneName(zone)) environment.push_back(std::string("TZ=") + zone);
  return environment;
}

/// A path of this process's open file; "" for none, and where /proc does not tell. In the child the
/// descriptor is shut by the time it is executed; this process's own is there until then.
std::string OpenedPath(int descriptor) {
  // As the mounted /proc has it, which may be that of other process numbers.
  char number[32];
  const ssize_t size = readlink("/proc/self", number, sizeof number);
  if (descriptor < 0 || size <= 0 || static_cast<std::size_t>(size) >= sizeof number) return "";
  return "/proc/" + std::string(number, static_cast<std::size_t>(size)) + "/fd/" +
         std::to_string(descriptor);
}

}  // namespace

int StartChild(const std::string& program, int executable,
               const std::vector<std::string>& arguments, std::atomic<pid_t>& running,
               Child& child) {
  Descriptor child_output;
  Descriptor child_error_output;
  ChildSetup setup;
  int error = OpenPipe(child.output, child_output);
  if (error == 0) error = OpenPipe(child.error_output, child_error_output);
  if (error == 0) error = setup.Prepare(child_output.Get(), child_error_output.Get());
  if (error != 0) return error;

  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const std::vector<char*> word_pointers = Pointers(words);
  const std::vector<std::string> environment = ChildEnvironment();
  const std::vector<char*> environment_pointers = Pointers(environment);
  const std::string opened = OpenedPath(executable);

  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const auto start = [&](const std::string& path) {
    return setup.Start(path, word_pointers.data(), environment_pointers.data(), child.pid);
  };
  error = start(opened.empty() ? program : opened);
  if (error == 0) {
    running = child.pid;
  } else {
    child.pid = 0;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return error;
}

}  // namespace standin
