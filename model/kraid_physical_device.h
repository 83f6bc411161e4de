#ifndef MODEL_KRAID_PHYSICAL_DEVICE_H_
#define MODEL_KRAID_PHYSICAL_DEVICE_H_

#include <span>
#include <string>

#include "model/collected_data.h"
#include "model/kraid_record.h"
#include "model/label_row.h"

/// One device on a channel of a controller: a disk, a tape, an enclosure or another one. Values
/// are untrimmed: the blank behind the colon and the closing "\n" are part of them.
class KRaidPhysicalDevice : public KRaidRecord {
 public:
  using KRaidRecord::KRaidRecord;

  /// Reads the device's lines in kelvcmd's "getconfig". The cursor stands on the line before
  /// "Device is a", and in the end on the last line that belongs to the device. The controller's
  /// number comes first here, the channel's second.
  /// Throws std::out_of_range when the output ends within the device.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num,
                     const std::string& channel_num);

  /// The same for the "getconfig" of the newer tools. The cursor stands on the "Device #" line, of
  /// which `device_label` is a part.
  void SetConfigHrconfData(CollectedData* cursor, const std::string& controller_num,
                           const std::string& channel_num, const std::string& device_label);
  void SetConfigArcconfData(CollectedData* cursor, const std::string& controller_num,
                            const std::string& channel_num, const std::string& device_label);

  void SetScsiID(const std::string& scsi_id) { scsi_id_ = scsi_id; }

  std::string GetChannelNum() const { return channel_num_; }
  std::string GetDeviceType() const { return device_type_; }
  std::string GetDeviceSerialNum() const { return device_serial_num_; }
  std::string GetScsiID() const { return scsi_id_; }
  std::string GetPfa() const { return pfa_; }
  std::string GetSize() const { return size_; }
  std::string GetState() const { return state_; }
  /// kelvcmd's identification: maker, product, firmware level and serial number run together. The
  /// newer tools have none: it is the device's place there.
  std::string GetDeviceID() const { return device_id_; }
  std::string GetFru() const { return fru_; }
  std::string GetDeviceCode() const { return device_code_; }
  std::string GetFirmwareVer() const { return firmware_ver_; }
  std::string GetDeviceNum() const { return device_num_; }
  std::string GetVendor() const { return vendor_; }
  std::string GetModel() const { return model_; }
  std::string GetEnclosure() const { return enclosure_; }
  std::string GetTransferSpeed() const { return transfer_speed_; }
  std::string GetReportedChannel() const { return reported_channel_; }
  std::string GetWorldWideName() const { return world_wide_name_; }
  std::string GetWriteCache() const { return write_cache_; }

  /// Writes what kelvcmd tells of a device to standard output.
  void DisplayAll() const;

 private:
  using Rows = std::span<const LabelRow<KRaidPhysicalDevice>>;

  void ReadTypeLine(CollectedData& cursor);
  void SplitDeviceId();
  void ReadNewerFormat(CollectedData& cursor, const std::string& controller_num,
                       const std::string& channel_num, const std::string& device_label,
                       Rows hard_drive_rows);

  std::string channel_num_;
  std::string device_type_;
  std::string device_serial_num_;
  std::string scsi_id_;
  std::string pfa_;
  std::string size_;
  std::string state_;
  std::string device_id_;
  std::string fru_;
  std::string device_code_;
  std::string firmware_ver_;
  std::string device_num_;
  std::string vendor_;
  std::string model_;
  std::string enclosure_;
  std::string transfer_speed_;
  std::string reported_channel_;
  std::string world_wide_name_;
  std::string write_cache_;
};

#endif  // MODEL_KRAID_PHYSICAL_DEVICE_H_
