#include "model/kraid_physical_device.h"

#include <string_view>

#include "model/display_fields.h"
#include "model/record_identifiers.h"
#include "model/text.h"

void KRaidPhysicalDevice::ReadTypeLine(CollectedData& cursor) {
  static constexpr std::string_view kLabel = "Device is a";
  const std::string line = cursor.GetNextLine();
  if (const auto found = line.find(kLabel); found != std::string::npos) {
    device_type_ = line.substr(found + kLabel.size());
  }
}

void KRaidPhysicalDevice::SetConfigData(CollectedData* cursor, const std::string& controller_num,
                                        const std::string& channel_num) {
  using P = KRaidPhysicalDevice;
  static constexpr LabelRow<P> kRows[] = {
      {"SCSI ID", &P::scsi_id_},     {"PFA (Yes/No)", &P::pfa_},
      {"State", &P::state_},         {"Size (in MB)/(in sectors)", &P::size_},
      {"Device ID", &P::device_id_}, {"FRU part number", &P::fru_, IfEmpty::kStepBack},
  };
  controller_num_ = controller_num;
  channel_num_ = channel_num;
  ReadTypeLine(*cursor);
  ReadRows(*cursor, kRows, *this);
  SplitDeviceId();
}

// The newer tools print one set of lines for each kind of device. They differ in hard drives only:
// in whether the reported channel may be missing, and in the serial number's label.

void KRaidPhysicalDevice::SetConfigHrconfData(CollectedData* cursor,
                                              const std::string& controller_num,
                                              const std::string& channel_num,
                                              const std::string& device_label) {
  using P = KRaidPhysicalDevice;
  static constexpr LabelRow<P> kHardDriveRows[] = {
      {"State", &P::state_},
      {"Transfer Speed", &P::transfer_speed_},
      {"Reported Channel", &P::reported_channel_, IfEmpty::kStepBack},
      {"Reported Enclosure", &P::enclosure_, IfEmpty::kStepBack},
      {"Vendor", &P::vendor_},
      {"Model", &P::model_},
      {"Firmware", &P::firmware_ver_},
      {"Serial number", &P::device_serial_num_, IfEmpty::kStepBack},
      {"World-wide name", &P::world_wide_name_, IfEmpty::kStepBack},
      {"Size", &P::size_},
      {"Write Cache", &P::write_cache_},
      {"FRU", &P::fru_},
      {"PFA", &P::pfa_},
  };
  ReadNewerFormat(*cursor, controller_num, channel_num, device_label, kHardDriveRows);
}

void KRaidPhysicalDevice::SetConfigArcconfData(CollectedData* cursor,
                                               const std::string& controller_num,
                                               const std::string& channel_num,
                                               const std::string& device_label) {
  using P = KRaidPhysicalDevice;
  static constexpr LabelRow<P> kHardDriveRows[] = {
      {"State", &P::state_},
      {"Transfer Speed", &P::transfer_speed_},
      {"Reported Channel", &P::reported_channel_},
      {"Reported Enclosure", &P::enclosure_, IfEmpty::kStepBack},
      {"Vendor", &P::vendor_},
      {"Model", &P::model_},
      {"Firmware", &P::firmware_ver_},
      {"Serial", &P::device_serial_num_, IfEmpty::kStepBack},
      {"World-wide name", &P::world_wide_name_, IfEmpty::kStepBack},
      {"Size", &P::size_},
      {"Write Cache", &P::write_cache_},
      {"FRU", &P::fru_},
      {"PFA", &P::pfa_},
  };
  ReadNewerFormat(*cursor, controller_num, channel_num, device_label, kHardDriveRows);
}

void KRaidPhysicalDevice::ReadNewerFormat(CollectedData& cursor, const std::string& controller_num,
                                          const std::string& channel_num,
                                          const std::string& device_label, Rows hard_drive_rows) {
  using P = KRaidPhysicalDevice;
  static constexpr LabelRow<P> kUnknownRows[] = {
      {"State", &P::state_},
      {"Reported Channel", &P::reported_channel_, IfEmpty::kStepBack},
      {"Vendor", &P::vendor_},
      {"Model", &P::model_},
      {"Firmware", &P::firmware_ver_},
  };
  static constexpr LabelRow<P> kEnclosureRows[] = {
      {"State", &P::state_},
      {"Transfer Speed", &P::transfer_speed_, IfEmpty::kStepBack},
      {"Reported Channel", &P::reported_channel_, IfEmpty::kStepBack},
      {"Vendor", &P::vendor_},
      {"Model", &P::model_},
      {"Firmware", &P::firmware_ver_},
  };
  controller_num_ = controller_num;
  channel_num_ = channel_num;
  device_num_ = device_label;
  ReadTypeLine(cursor);
  if (Contains(device_type_, "Unknown")) {
    ReadRows(cursor, kUnknownRows, *this);
  } else if (Contains(device_type_, "Enclosure")) {
    ReadRows(cursor, kEnclosureRows, *this);
  } else if (Contains(device_type_, "Hard drive")) {
    ReadRows(cursor, hard_drive_rows, *this);
  }
  device_id_ += PlaceIdentifier(channel_num_, device_num_);
}

void KRaidPhysicalDevice::SplitDeviceId() {
  if (Contains(device_type_, "Tape")) {
    device_code_ = device_id_;
  } else if (Contains(device_type_, "Hard disk")) {
    // Positions in the value as stored, its leading blank included.
    device_code_ = device_id_.substr(0, 16);
    const bool is_whole = device_id_.size() >= 28;
    firmware_ver_ = is_whole ? device_id_.substr(17, 4) : "";
    // It begins with the last character of the firmware level. That is meant.
    device_serial_num_ = is_whole ? device_id_.substr(20, 8) : "";
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
