#ifndef INVENTORY_COMMAND_EXIT_STATUS_H_
#define INVENTORY_COMMAND_EXIT_STATUS_H_

/// How the command ends.
enum ExitStatus : int {
  kExitAnswered = 0,  ///< The plug-in answered, even with nothing.
  kExitFailed = 1,    ///< The plug-in or the host threw; what was committed is printed.
  kExitUsage = 2,     ///< The command line is wrong; nothing was done.
  kExitOutput = 3,    ///< The output or the log could not be written.
};

#endif  // INVENTORY_COMMAND_EXIT_STATUS_H_
