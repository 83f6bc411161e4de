#include "collect/hrconf_data.h"

#include <string_view>
#include <utility>

#include "model/array_stripe_order.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/markers.h"
#include "model/text.h"
#include "schema/published_texts.h"

namespace {

constexpr Tool kTool = {kHrconf, " HRCCONF  using Spawnprocess. Controller# :", "hrconf aborted: "};
constexpr Command kGetConfig = {kGetConfigWord, "al"};
constexpr Command kGetStatus = {"getstatus", "device"};
constexpr Command kCommands[] = {kGetConfig, kGetStatus};

}  // namespace

HrconfData::HrconfData(NKVXHMZ20::TPluginManagerProvider* provider)
    : ToolCollector(kTool, provider) {}

std::string HrconfData::GatherData(const std::string& command, const std::string& parameter,
                                   int controller_number) {
  return Run({command.c_str(), parameter.c_str()}, controller_number);
}

void HrconfData::InitData(int controller_offset) {
  logical_drive_num_.clear();
  CaptureOutputs(kCommands);
  for (int number = kFirstController; number <= kLastController; ++number) {
    auto [controller, cursor] = FindController(kGetConfig, number, controller_offset,
                                               &KRaidController::SetConfigHrconfData);
    if (controller == nullptr) continue;
    if (!cursor->FindLine(kLogicalDriveHeading).empty()) {
      ParseLogicalDrives(*cursor, *controller);
    }
    if (!cursor->FindLine(kPhysicalDriveHeading).empty()) {
      ParsePhysicalDevices(*cursor, *controller);
    }
    CollectedData status(provider_, Run(kGetStatus, number));
    controller->AddStatusData(&status);
    controllers_.push_back(std::move(controller));
  }
}

void HrconfData::ParseLogicalDrives(CollectedData& cursor, KRaidController& controller) {
  cursor.GetNextLine();
  std::string line = cursor.GetNextLine();
  while (Contains(line, "Logical drive number")) {
    CutDriveNumber(line, kLogicalDriveLabel, logical_drive_num_);
    auto drive = std::make_unique<KRaidLogicalDevice>(provider_);
    drive->SetConfigHrconfData(&cursor, logical_drive_num_, controller.GetControllerNum());
    controller.AddLogicalDevice(std::move(drive));
    line = cursor.GetNextLine();
    if (Contains(line, "size")) line = cursor.GetNextLine();
    if (Contains(line, "Stripe order")) {
      auto order = std::make_unique<ArrayStripeOrder>(provider_);
      order->SetConfigHrconfData(&cursor, controller.GetControllerNum(), logical_drive_num_);
      controller.AddArrayStripeOrder(std::move(order));
    }
    // Without a stripe order the line in its place is passed over, too.
    line = cursor.GetNextLine();
  }
}

void HrconfData::ParsePhysicalDevices(CollectedData& cursor, KRaidController& controller) {
  cursor.GetNextLine();
  std::string line = cursor.GetNextLine();
  std::string channel;
  while (!Contains(line, kEndMarker)) {
    if (!Contains(line, "#")) {
      line = cursor.GetNextLine();
      continue;
    }
    CutChannel(line, channel);
    cursor.GetNextLine();
    // The controller's own place on the channel stands there or not.
    if (!Contains(cursor.GetNextLine(), "Initiator at SCSI ID")) cursor.decrementLinePtr();
    line = cursor.GetNextLine();
    for (auto label = line.find(kDeviceLabel); label != std::string::npos;
         label = line.find(kDeviceLabel)) {
      auto device = std::make_unique<KRaidPhysicalDevice>(provider_);
      device->SetConfigHrconfData(&cursor, controller.GetControllerNum(), channel,
                                  line.substr(label, kDeviceLabelLength));
      device->SetScsiID(line.substr(label + kDeviceLabel.size()));
      controller.AddPhysicalDevice(std::move(device));
      line = cursor.GetNextLine();
    }
  }
}
