#include "inventory/command/inventory_run.h"
#include "inventory/command/process_setup.h"

int main(int argc, char** argv) {
  SetUpProcess();
  return RunCommand(argc, argv);
}
