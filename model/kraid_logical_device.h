#ifndef MODEL_KRAID_LOGICAL_DEVICE_H_
#define MODEL_KRAID_LOGICAL_DEVICE_H_

#include <string>
#include <string_view>

#include "model/collected_data.h"
#include "model/kraid_record.h"

/// One logical drive of a controller. Values are untrimmed: the blank behind the colon and the
/// closing "\n" are part of them.
class KRaidLogicalDevice : public KRaidRecord {
 public:
  using KRaidRecord::KRaidRecord;

  /// Reads the drive's lines in kelvcmd's "getconfig". The cursor stands on the heading, and in
  /// the end on the last line that belongs to the drive. The drive's number comes first here, the
  /// controller's second.
  /// Throws std::out_of_range when the output ends within the drive.
  void SetConfigData(CollectedData* cursor, const std::string& logical_drive_num,
                     const std::string& controller_num);

  /// The same for the "getconfig" of the newer tools.
  void SetConfigHrconfData(CollectedData* cursor, const std::string& logical_drive_num,
                           const std::string& controller_num);
  void SetConfigArcconfData(CollectedData* cursor, const std::string& logical_drive_num,
                            const std::string& controller_num);

  /// Looks the drive up in a whole "getconfig" text: the value of the first place behind its
  /// heading that holds the label, without the "\n" and the one character before it. "" when
  /// there is none.
  std::string ParseLogicalDeviceData(std::string_view label, std::string_view text) const;

  std::string GetLogicalDriveNum() const { return logical_drive_num_; }
  std::string GetLogicalDriveName() const { return logical_drive_name_; }
  std::string GetStatusOfLogicalDrive() const { return status_of_logical_drive_; }
  std::string GetAdditionalInformation() const { return additional_information_; }
  std::string GetRaidLevel() const { return raid_level_; }
  std::string GetSize() const { return size_; }
  std::string GetWriteCacheStatus() const { return write_cache_status_; }
  std::string GetWriteCacheSetting() const { return write_cache_setting_; }
  std::string GetReadCacheStatus() const { return read_cache_status_; }
  std::string GetLogicalDriveList() const { return logical_drive_list_; }
  std::string GetNumberOfChunks() const { return number_of_chunks_; }
  std::string GetStripeUnitSize() const { return stripe_unit_size_; }
  std::string GetAccessBlocked() const { return access_blocked_; }
  std::string GetPartOfArray() const { return part_of_array_; }
  std::string GetPartOfMergeGroup() const { return part_of_merge_group_; }

  /// Writes what kelvcmd tells of a drive to standard output.
  void DisplayAll() const;

 private:
  std::string logical_drive_num_;
  std::string logical_drive_name_;
  std::string status_of_logical_drive_;
  std::string additional_information_;
  std::string raid_level_;
  std::string size_;
  std::string write_cache_status_;
  std::string write_cache_setting_;
  std::string read_cache_status_;
  std::string logical_drive_list_;
  std::string number_of_chunks_;
  std::string stripe_unit_size_;
  std::string access_blocked_;
  std::string part_of_array_;
  std::string part_of_merge_group_;
};

#endif  // MODEL_KRAID_LOGICAL_DEVICE_H_
