#include "inventory/machine/machine.h"

#include "inventory/base/readable.h"

std::string Controller::DescribeOperation() const {
  if ((operation + operation_status).empty()) return "";
  std::string text = operation.empty() ? "Background operation" : operation;
  if (!operation_drive.empty()) text += " of logical drive " + operation_drive;
  return text + ": " + (operation_status.empty() ? "status not reported" : operation_status);
}

std::size_t Machine::CountLogicalDrives() const {
  std::size_t count = 0;
  for (const Controller& controller : controllers) count += controller.logical_drives.size();
  return count;
}

std::size_t Machine::CountDevices() const {
  std::size_t count = 0;
  for (const Controller& controller : controllers) count += controller.devices.size();
  return count;
}

std::string Machine::DescribeCounts() const {
  return Counted(controllers.size(), "controller") + ", " +
         Counted(CountLogicalDrives(), "logical drive") + ", " + Counted(CountDevices(), "device");
}
