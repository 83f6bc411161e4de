#include <exception>
#include <optional>

#include "inventory/command/ending_signals.h"
#include "inventory/command/exit_status.h"
#include "inventory/command/inventory_run.h"
#include "inventory/command/messages.h"
#include "inventory/command/options.h"
#include "inventory/command/process_setup.h"
#include "inventory/runs/left_processes.h"

int main(int argc, char** argv) {
  SetUpProcess();
  std::optional<Options> options;
  try {
    int exit_status = kExitAnswered;
    options = ParseOptions(argc, argv, exit_status);
    if (!options) return exit_status;
    InheritLeftProcesses();
    CleanUpOnSignals();
    return RunInventory(*options);
  } catch (const std::exception& error) {
    return Refuse(error.what(), IsCheck(argc, argv), kExitFailed);
  } catch (...) {
    return Refuse("an unknown exception", IsCheck(argc, argv), kExitFailed);
  }
}
