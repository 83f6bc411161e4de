#include "plugin/instance_identifiers.h"

#include <cstdio>

#include "model/kraid_bst_data.h"
#include "model/kraid_controller.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/record_identifiers.h"
#include "model/text.h"

std::string LogicalDiskIdentifier(const KRaidController& controller,
                                  const KRaidLogicalDevice& drive) {
  return ControllerIdentifier(controller.GetControllerNum()) + "LD" + drive.GetLogicalDriveNum();
}

std::string BadStripeIdentifier(const KRaidController& controller, const KRaidBstData& row) {
  return "KelvaRAID:" + controller.GetControllerNum() + "LD" + row.GetLogicalDriveNum();
}

std::string DeviceIdentifier(const KRaidController& controller, const KRaidPhysicalDevice& device) {
  char place[40];  // more than two numbers of 11 characters need
  std::snprintf(place, sizeof place, " CH%d I%02d:", ToInt32(device.GetChannelNum()),
                ToInt32(device.GetScsiID()));
  return "C" + controller.GetControllerNum() + place + device.GetDeviceID();
}

std::string DeviceFirmwareIdentifier(const KRaidController& controller,
                                     const KRaidPhysicalDevice& device) {
  return controller.GetControllerNum() + "-" + DeviceIdentifier(controller, device);
}

std::string BiosName(const KRaidController& controller) {
  return ControllerIdentifier(controller.GetControllerNum()) + " BIOS";
}
