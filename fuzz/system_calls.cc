#include "fuzz/system_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

// Rows of {name, result type, what the call gives back when it fails, error, parameters,
// arguments}. The error is one that this call can really have: a child that is ours can always be
// waited for, so there it is an interruption.
#define CALLS(ROW)                                                                                \
  ROW(pipe2, int, -1, EMFILE, (int ends[2], int flags), (ends, flags))                            \
  ROW(posix_spawn, int, EAGAIN, EAGAIN,                                                           \
      (pid_t * pid, const char* path, const posix_spawn_file_actions_t* actions,                  \
       const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment),    \
      (pid, path, actions, attributes, arguments, environment))                                   \
  ROW(pidfd_open, int, -1, EMFILE, (pid_t pid, unsigned flags), (pid, flags))                     \
  ROW(poll, int, -1, ENOMEM, (pollfd * files, nfds_t count, int time), (files, count, time))      \
  ROW(read, ssize_t, -1, EIO, (int file, void* to, size_t size), (file, to, size))                \
  ROW(pread, ssize_t, -1, EIO, (int file, void* to, size_t size, off_t at), (file, to, size, at)) \
  ROW(write, ssize_t, -1, ENOSPC, (int file, const void* from, size_t size), (file, from, size))  \
  ROW(waitid, int, -1, EINTR, (idtype_t type, id_t id, siginfo_t * info, int options),            \
      (type, id, info, options))                                                                  \
  ROW(waitpid, pid_t, -1, EINTR, (pid_t pid, int* status, int options), (pid, status, options))   \
  ROW(fopen, FILE*, nullptr, EMFILE, (const char* path, const char* mode), (path, mode))          \
  ROW(fdopen, FILE*, nullptr, ENOMEM, (int file, const char* mode), (file, mode))                 \
  ROW(fwrite, size_t, 0, ENOSPC, (const void* from, size_t size, size_t count, FILE* file),       \
      (from, size, count, file))                                                                  \
  ROW(fflush, int, EOF, ENOSPC, (FILE * file), (file))                                            \
  ROW(ftruncate, int, -1, EIO, (int file, off_t size), (file, size))                              \
  ROW(fchown, int, -1, EPERM, (int file, uid_t user, gid_t group), (file, user, group))           \
  ROW(fchmod, int, -1, EPERM, (int file, mode_t mode), (file, mode))                              \
  ROW(fstat, int, -1, EIO, (int file, struct stat* status), (file, status))                       \
  ROW(rename, int, -1, EACCES, (const char* from, const char* to), (from, to))                    \
  ROW(renameat, int, -1, EACCES, (int there, const char* from, int here, const char* to),         \
      (there, from, here, to))                                                                    \
  ROW(renameat2, int, -1, EINVAL,                                                                 \
      (int there, const char* from, int here, const char* to, unsigned flags),                    \
      (there, from, here, to, flags))                                                             \
  ROW(readlink, ssize_t, -1, EACCES, (const char* path, char* to, size_t size), (path, to, size)) \
  ROW(readlinkat, ssize_t, -1, EIO, (int folder, const char* path, char* to, size_t size),        \
      (folder, path, to, size))                                                                   \
  ROW(fstatfs, int, -1, EIO, (int file, struct statfs* status), (file, status))                   \
  ROW(statx, int, -1, ENOSYS,                                                                     \
      (int folder, const char* path, int flags, unsigned mask, struct statx* status),             \
      (folder, path, flags, mask, status))                                                        \
  ROW(stat, int, -1, EACCES, (const char* path, struct stat* status), (path, status))             \
  ROW(kill, int, -1, EPERM, (pid_t pid, int number), (pid, number))                               \
  ROW(chdir, int, -1, EACCES, (const char* path), (path))                                         \
  ROW(mkdtemp, char*, nullptr, EACCES, (char* path), (path))                                      \
  ROW(mkdir, int, -1, ENOSPC, (const char* path, mode_t mode), (path, mode))                      \
  ROW(flock, int, -1, ENOLCK, (int file, int operation), (file, operation))                       \
  ROW(getcwd, char*, nullptr, ENOENT, (char* to, size_t size), (to, size))

// Those with a last argument that is not always there.
#define OPENING_CALLS(ROW)                                                                        \
  ROW(open, EMFILE, (const char* path, int flags, ...), flags, path, flags)                       \
  ROW(openat, EMFILE, (int folder, const char* path, int flags, ...), flags, folder, path, flags) \
  ROW(fcntl, EMFILE, (int file, int command, ...), command, file, command)                        \
  ROW(ioctl, ENOTTY, (int file, unsigned long request, ...), request, file, request)

namespace {

const char* failing = "";
int left = 0;
bool has_failed = false;
pid_t whose = 0;

bool IsToFail(const char* name, int error) {
  if (left == 0 || std::string_view(name) != failing || getpid() != whose || --left > 0) {
    return false;
  }
  has_failed = true;
  errno = error;
  return true;
}

template <class Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define UNPACK(...) __VA_ARGS__
#define DEFINE(name, result, failure, error, parameters, arguments)                \
  extern "C" __attribute__((visibility("default"))) result name parameters {       \
    static auto* const real = Real<result parameters>(#name);                      \
    return IsToFail(#name, error) ? static_cast<result>(failure) : real arguments; \
  }
#define DEFINE_OPENING(name, error, parameters, last, ...)                \
  extern "C" __attribute__((visibility("default"))) int name parameters { \
    static auto* const real = Real<int parameters>(#name);                \
    va_list more;                                                         \
    va_start(more, last);                                                 \
    void* const argument = va_arg(more, void*);                           \
    va_end(more);                                                         \
    return IsToFail(#name, error) ? -1 : real(__VA_ARGS__, argument);     \
  }
CALLS(DEFINE)
// Not passed on: they take their time, and nothing here has to outlive a power failure.
#define DEFINE_IDLE(name)                                                    \
  extern "C" __attribute__((visibility("default"))) int name(int /*file*/) { \
    return IsToFail(#name, EIO) ? -1 : 0;                                    \
  }
DEFINE_IDLE(fsync)
DEFINE_IDLE(syncfs)
OPENING_CALLS(DEFINE_OPENING)

std::vector<std::string> SystemCalls() {
#define NAME(name, ...) #name,
  return {CALLS(NAME) OPENING_CALLS(NAME) "fsync", "syncfs"};
}

void FailCall(const std::string& name, int nth) {
  static const std::vector<std::string> names = SystemCalls();
  failing = std::find(names.begin(), names.end(), name)->c_str();
  has_failed = false;
  whose = getpid();
  left = nth;
}

bool StopFailing() {
  left = 0;
  return has_failed;
}
