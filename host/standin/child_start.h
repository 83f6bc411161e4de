#ifndef STANDIN_CHILD_START_H_
#define STANDIN_CHILD_START_H_

#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <vector>

namespace standin {

/// An open file of this process's own.
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

/// A child at its start.
struct Child {
  pid_t pid = 0;
  Descriptor output;        ///< What it writes to standard output; reading does not wait.
  Descriptor error_output;  ///< And to standard error.
};

/// Starts a child as RunProcess describes it; `executable` is a descriptor, or -1. `running` gets
/// its number while signals are blocked: a handler finds either no child yet or one whose number is
/// known. Returns an error number, 0 for success.
int StartChild(const std::string& program, int executable,
               const std::vector<std::string>& arguments, std::atomic<pid_t>& running,
               Child& child);

}  // namespace standin

#endif  // STANDIN_CHILD_START_H_
