#include "collect/kelvcmd_data.h"

#include <utility>

#include "hmz/exception.h"
#include "model/array_stripe_order.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "model/markers.h"
#include "model/text.h"
#include "schema/published_texts.h"

namespace {

constexpr Tool kTool = {kKelvcmd,
                        " KELVCMD is using Spawnprocess. Controller# :", "Kelvcmd aborted: "};

constexpr Command kGetConfig = {kGetConfigWord, "al"};
constexpr Command kGetStatus = {"getstatus", "device"};
constexpr Command kGetBst = {"getbst", "device"};
constexpr Command kGetEvent = {"getevent", "device"};
constexpr Command kGetEventDdd = {"getevent", "ddd"};
constexpr Command kGetEventSoft = {"getevent", "soft"};
constexpr Command kGetEventHard = {"getevent", "hard"};
constexpr Command kGetSubStat = {"getsubstat", "device"};

constexpr Command kCommands[] = {kGetConfig,   kGetStatus,    kGetBst,       kGetEvent,
                                 kGetEventDdd, kGetEventSoft, kGetEventHard, kGetSubStat};

}  // namespace

KelvcmdData::KelvcmdData(NKVXHMZ20::TPluginManagerProvider* provider)
    : ToolCollector(kTool, provider) {}

std::string KelvcmdData::GetDataFromTextFile(const std::string& command, const std::string& option,
                                             int controller_number) {
  return Run({command.c_str(), option.c_str()}, controller_number);
}

void KelvcmdData::InitData(int controller_offset) {
  logical_drive_num_.clear();
  channel_num_.clear();
  CaptureOutputs(kCommands);
  // A second run of the tool for each command: the captured texts are for publishing only.
  for (int number = kFirstController; number <= kLastController; ++number) {
    if (ParseController(number, controller_offset) == Next::kEnd) return;
  }
}

KelvcmdData::Next KelvcmdData::ParseController(int number, int controller_offset) {
  auto [found, cursor] =
      FindController(kGetConfig, number, controller_offset, &KRaidController::SetConfigData);
  if (found == nullptr) return Next::kController;
  KRaidController& controller = *found;

  if (!cursor->FindLine(kLogicalDriveHeading).empty()) {
    ParseLogicalDrives(*cursor, controller);
  }
  if (!cursor->FindLine(kStripeOrderLabel).empty()) ParseStripeOrders(*cursor, controller);

  // A controller whose output has no device section is never published; its logs are read all
  // the same.
  if (!cursor->FindLine(kPhysicalDeviceHeading).empty()) {
    ParsePhysicalDevices(*cursor, controller);
    std::string status = Run(kGetStatus, number);
    if (!status.empty()) {
      CollectedData status_cursor(provider_, std::move(status));
      try {
        controller.AddStatusData(&status_cursor);
      } catch (const NKVXHMZ20::THMZException&) {  // none of today's parsers throws it here
        LogMessage("status data is junk: Quit status data collection");
        return Next::kEnd;
      }
    }
    controllers_.push_back(std::move(found));
  }
  ParseBadStripes(number, controller);
  ParseDeviceEvents(number, controller);
  if (ParseDddEvents(number, controller)) {
    ParseEventWords(number, controller);
    ParseSubStatistics(number, controller);
  }
  return Next::kController;
}

void KelvcmdData::ParseLogicalDrives(CollectedData& cursor, KRaidController& controller) {
  cursor.GetNextLine();
  std::string line = cursor.GetNextLine();
  do {
    CutDriveNumber(line, kLogicalDriveLabel, logical_drive_num_);
    auto drive = std::make_unique<KRaidLogicalDevice>(provider_);
    drive->SetConfigData(&cursor, logical_drive_num_, controller.GetControllerNum());
    controller.AddLogicalDevice(std::move(drive));
    line = cursor.GetNextLine();
  } while (Contains(line, "Logical drive number"));
}

void KelvcmdData::ParseStripeOrders(CollectedData& cursor, KRaidController& controller) {
  do {
    auto order = std::make_unique<ArrayStripeOrder>(provider_);
    order->SetConfigData(&cursor, controller.GetControllerNum());
    controller.AddArrayStripeOrder(std::move(order));
  } while (Contains(cursor.GetNextLine(), kStripeOrderLabel));
}

void KelvcmdData::ParsePhysicalDevices(CollectedData& cursor, KRaidController& controller) {
  cursor.GetNextLine();
  std::string line = cursor.GetNextLine();
  do {
    CutChannel(line, channel_num_);
    cursor.GetNextLine();
    line = cursor.GetNextLine();
    while (Contains(line, "Target")) {
      auto device = std::make_unique<KRaidPhysicalDevice>(provider_);
      device->SetConfigData(&cursor, controller.GetControllerNum(), channel_num_);
      controller.AddPhysicalDevice(std::move(device));
      line = cursor.GetNextLine();
    }
  } while (!Contains(line, kEndMarker));
}

void KelvcmdData::ParseBadStripes(int number, KRaidController& controller) {
  CollectedData cursor(provider_, Run(kGetBst, number));
  if (cursor.FindLine("Get bad stripe information").empty()) return;
  cursor.GetNextLine();
  do {
    auto record = std::make_unique<KRaidBstData>(provider_);
    try {
      record->SetConfigData(&cursor, controller.GetControllerNum());
    } catch (const NKVXHMZ20::THMZException&) {  // as above
      LogMessage("Bad Stripe data is junk: Quit BST data collection");
      return;
    }
    controller.AddBstData(std::move(record));
  } while (Contains(cursor.GetNextLine(), "-"));
}

void KelvcmdData::ParseDeviceEvents(int number, KRaidController& controller) {
  CollectedData cursor(provider_, Run(kGetEvent, number));
  if (cursor.FindLine("Device event table:").empty()) return;
  cursor.GetNextLine();
  cursor.GetNextLine();
  std::string line = cursor.GetNextLine();
  do {
    if (!Contains(line, "-")) {
      auto record = std::make_unique<KRaidEventData>(provider_);
      record->SetConfigData(&cursor, controller.GetControllerNum());
      controller.AddEventData(std::move(record));
    }
    line = cursor.GetNextLine();
  } while (!Contains(line, kEndMarker) && !Contains(line, "Controller "));
}

bool KelvcmdData::ParseDddEvents(int number, KRaidController& controller) {
  CollectedData cursor(provider_, Run(kGetEventDdd, number));
  if (cursor.FindLine("+---").empty()) return true;
  std::string line = cursor.GetNextLine();
  if (Contains(line, "No")) return false;
  int entry = 1;
  for (; !Contains(line, kEndMarker); line = cursor.GetNextLine()) {
    if (Contains(line, "-")) continue;
    auto record = std::make_unique<KRaidEventDddData>(provider_);
    try {
      record->SetConfigData(&cursor, controller.GetControllerNum(), entry);
    } catch (const NKVXHMZ20::THMZException&) {
      LogMessage("Time Stamp is junk: Quit DDD data collection");
      return true;
    }
    controller.AddEventDddData(std::move(record));
    ++entry;
  }
  return true;
}

void KelvcmdData::ParseEventWords(int number, KRaidController& controller) {
  CollectedData soft(provider_, Run(kGetEventSoft, number));
  if (!soft.FindLine("Controller Soft Event Log").empty()) {
    auto record = std::make_unique<KRaidEventSoftData>(provider_);
    record->SetConfigData(&soft, controller.GetControllerNum());
    controller.AddEventSoftData(std::move(record));
  }
  CollectedData hard(provider_, Run(kGetEventHard, number));
  if (!hard.FindLine("Controller Hard Event Log").empty()) {
    auto record = std::make_unique<KRaidEventHardData>(provider_);
    record->SetConfigData(&hard, controller.GetControllerNum());
    controller.AddEventHardData(std::move(record));
  }
}

void KelvcmdData::ParseSubStatistics(int number, KRaidController& controller) {
  CollectedData cursor(provider_, Run(kGetSubStat, number));
  if (cursor.FindLine("A:").empty()) return;
  do {
    auto record = std::make_unique<KRaidSubStatData>(provider_);
    record->SetConfigData(&cursor, controller.GetControllerNum());
    controller.AddSubStatData(std::move(record));
  } while (!Contains(cursor.GetNextLine(), kEndMarker));
}

void KelvcmdData::DisplayAll(const std::string& text) const {
  CollectedData(provider_, text).DisplayAll();
}
