#ifndef STANDIN_CHILD_START_H_
#define STANDIN_CHILD_START_H_

#include <sys/types.h>

#include <atomic>
#include <string>
#include <vector>

#include "standin/descriptor.h"

namespace standin {

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
