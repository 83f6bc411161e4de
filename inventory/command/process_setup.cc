#include "inventory/command/process_setup.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace {

// Without one of the standard descriptors, the next file to be opened would take its place. The
// stand-ins fail on writing, as a closed descriptor does.
void FillStandardDescriptors() {
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDONLY);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
}

// With SIGCHLD ignored the ends of the tools would be lost, and with signals blocked nothing could
// end this program in time.
void ResetSignals() {
  signal(SIGCHLD, SIG_DFL);
  // A reader that goes away, or a file that grows too large, is an error of writing, not the end of
  // this program.
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

void SetUpProcess() {
  FillStandardDescriptors();
  ResetSignals();
}
