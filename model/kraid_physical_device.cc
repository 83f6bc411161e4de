#include "model/kraid_physical_device.h"

#include <string_view>

#include "model/display.h"
#include "model/label_row.h"
#include "model/text.h"

void KRaidPhysicalDevice::SetConfigData(CollectedData* cursor, const std::string& controller_num,
                                        const std::string& channel_num) {
  using P = KRaidPhysicalDevice;
  static constexpr std::string_view kTypeLabel = "Device is a";
  static constexpr LabelRow<P> kRows[] = {
      {"SCSI ID", &P::scsi_id_},     {"PFA (Yes/No)", &P::pfa_},
      {"State", &P::state_},         {"Size (in MB)/(in sectors)", &P::size_},
      {"Device ID", &P::device_id_}, {"FRU part number", &P::fru_, IfEmpty::kStepBack},
  };
  controller_num_ = controller_num;
  channel_num_ = channel_num;
  const std::string type_line = cursor->GetNextLine();
  if (const auto found = type_line.find(kTypeLabel); found != std::string::npos) {
    device_type_ = type_line.substr(found + kTypeLabel.size());
  }
  ReadRows(*cursor, kRows, *this);
  SplitDeviceId();
}

void KRaidPhysicalDevice::SplitDeviceId() {
  if (Contains(device_type_, "Tape")) {
    device_code_ = device_id_;
  } else if (Contains(device_type_, "Hard disk")) {
    // Positions in the value as stored, its leading blank included.
    device_code_ = device_id_.substr(0, 16);
    if (device_id_.size() < 28) return;
    firmware_ver_ = device_id_.substr(17, 4);
    // It begins with the last character of the firmware level. That is meant.
    device_serial_num_ = device_id_.substr(20, 8);
  }
}

void KRaidPhysicalDevice::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"Channel number", channel_num_},
                 {"Device type", device_type_},
                 {"SCSI ID", scsi_id_},
                 {"PFA (Yes/No)", pfa_},
                 {"State", state_},
                 {"Size (in MB)/(in sectors)", size_},
                 {"Device ID", device_id_},
                 {"FRU part number", fru_}});
}
