#include "collect/arcconf_data.h"

#include <utility>

#include "model/array_stripe_order.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/markers.h"
#include "model/text.h"
#include "schema/published_texts.h"

namespace {

constexpr Tool kTool = {kArcconf,
                        " ARCCONF  using Spawnprocess. Controller# :", "ArcConf Aborted: "};
constexpr Command kGetConfig = {kGetConfigWord, "al"};
constexpr Command kCommands[] = {kGetConfig};

}  // namespace

ArcconfData::ArcconfData(NKVXHMZ20::TPluginManagerProvider* provider)
    : ToolCollector(kTool, provider) {}

std::string ArcconfData::GatherData(const std::string& command, const std::string& parameter,
                                    int controller_number) {
  return Run({command.c_str(), parameter.c_str()}, controller_number);
}

void ArcconfData::InitData(int controller_offset) {
  CaptureOutputs(kCommands);
  for (int number = kFirstController; number <= kLastController; ++number) {
    auto [controller, cursor] = FindController(kGetConfig, number, controller_offset,
                                               &KRaidController::SetConfigArcconfData);
    if (controller == nullptr) continue;
    if (!cursor->FindLine(kLogicalDriveHeading).empty()) {
      ParseLogicalDrives(*cursor, *controller);
    }
    if (!cursor->FindLine(kPhysicalDeviceHeading).empty() ||
        !cursor->FindLine(kPhysicalDriveHeading).empty()) {
      ParsePhysicalDevices(*cursor, *controller);
    }
    controllers_.push_back(std::move(controller));
  }
}

void ArcconfData::ParseLogicalDrives(CollectedData& cursor, KRaidController& controller) {
  // Without a blank at its end, unlike that of the other tools.
  static constexpr char kDriveLabel[] = "Logical drive number";
  cursor.GetNextLine();
  std::string line = cursor.GetNextLine();
  std::string number;
  while (Contains(line, kDriveLabel)) {
    CutDriveNumber(line, kDriveLabel, number);
    auto drive = std::make_unique<KRaidLogicalDevice>(provider_);
    drive->SetConfigArcconfData(&cursor, number, controller.GetControllerNum());
    controller.AddLogicalDevice(std::move(drive));
    line = cursor.GetNextLine();
    if (Contains(line, kDriveLabel)) continue;
    if (Contains(line, "Stripe order")) {
      auto order = std::make_unique<ArrayStripeOrder>(provider_);
      order->SetConfigArcConfData(&cursor, controller.GetControllerNum(), number);
      controller.AddArrayStripeOrder(std::move(order));
      line = cursor.GetNextLine();
    }
    // One line more behind a stripe order, or behind the line in its place.
    line = cursor.GetNextLine();
  }
}

void ArcconfData::ParsePhysicalDevices(CollectedData& cursor, KRaidController& controller) {
  cursor.GetNextLine();
  std::string line = cursor.GetNextLine();
  while (!Contains(line, kEndMarker)) {
    // This line decides for the devices directly behind it. The type line of a device that is
    // passed over counts as such a line for the next one.
    const bool has_device = Contains(line, "Device");
    if (!Contains(line, kDeviceLabel)) line = cursor.GetNextLine();
    for (auto label = line.find(kDeviceLabel); label != std::string::npos;
         label = line.find(kDeviceLabel)) {
      if (has_device) {
        auto device = std::make_unique<KRaidPhysicalDevice>(provider_);
        // No channel: this tool's headings are not read for one.
        device->SetConfigArcconfData(&cursor, controller.GetControllerNum(), "",
                                     line.substr(label, kDeviceLabelLength));
        controller.AddPhysicalDevice(std::move(device));
      }
      line = cursor.GetNextLine();
    }
  }
}
