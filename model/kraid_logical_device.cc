#include "model/kraid_logical_device.h"

#include "model/display_fields.h"
#include "model/label_row.h"
#include "model/markers.h"
#include "model/text.h"

// The tools differ in their labels and in which of their lines may be missing: a row that steps
// back is an optional line. Which rows do is part of how each tool is read: leave it as it is.

void KRaidLogicalDevice::SetConfigData(CollectedData* cursor, const std::string& logical_drive_num,
                                       const std::string& controller_num) {
  using L = KRaidLogicalDevice;
  static constexpr LabelRow<L> kRows[] = {
      {"Status of logical drive", &L::status_of_logical_drive_},
      {"Additional information", &L::additional_information_, IfEmpty::kStepBack},
      {"RAID level", &L::raid_level_},
      {"Size (in MB)", &L::size_},
      {"Write cache status", &L::write_cache_status_},
      {"Number of chunks", &L::number_of_chunks_},
      {"Stripe-unit size", &L::stripe_unit_size_},
      {"Access blocked", &L::access_blocked_},
      {"Part of array", &L::part_of_array_},
      {"Part of merge group", &L::part_of_merge_group_, IfEmpty::kStepBack},
  };
  logical_drive_num_ = logical_drive_num;
  controller_num_ = controller_num;
  ReadRows(*cursor, kRows, *this);
}

void KRaidLogicalDevice::SetConfigHrconfData(CollectedData* cursor,
                                             const std::string& logical_drive_num,
                                             const std::string& controller_num) {
  using L = KRaidLogicalDevice;
  static constexpr LabelRow<L> kRows[] = {
      {"Logical drive name", &L::logical_drive_name_, IfEmpty::kStepBack},
      {"RAID level", &L::raid_level_, IfEmpty::kStepBack},
      {"Status of logical drive", &L::status_of_logical_drive_, IfEmpty::kStepBack},
      {"Additional information", &L::additional_information_, IfEmpty::kStepBack},
      {"Size", &L::size_},
      {"Write cache status", &L::write_cache_status_, IfEmpty::kStepBack},
      {"Number of chunks", &L::number_of_chunks_},
      {"Stripe-unit size", &L::stripe_unit_size_, IfEmpty::kStepBack},
  };
  logical_drive_num_ = logical_drive_num;
  controller_num_ = controller_num;
  ReadRows(*cursor, kRows, *this);
}

void KRaidLogicalDevice::SetConfigArcconfData(CollectedData* cursor,
                                              const std::string& logical_drive_num,
                                              const std::string& controller_num) {
  using L = KRaidLogicalDevice;
  static constexpr LabelRow<L> kRows[] = {
      {"Logical drive name", &L::logical_drive_name_},
      {"RAID level", &L::raid_level_},
      {"Status of logical drive", &L::status_of_logical_drive_},
      {"Size", &L::size_},
      {"Read-cache mode", &L::read_cache_status_},
      {"Write-cache mode", &L::write_cache_status_},
      {"Write-cache set", &L::write_cache_setting_},
      {"Number of chunks", &L::number_of_chunks_},
      {"Stripe-unit size", &L::stripe_unit_size_, IfEmpty::kStepBack},
      {"Drive(s)", &L::logical_drive_list_, IfEmpty::kStepBack},
  };
  logical_drive_num_ = logical_drive_num;
  controller_num_ = controller_num;
  ReadRows(*cursor, kRows, *this);
}

std::string KRaidLogicalDevice::ParseLogicalDeviceData(std::string_view label,
                                                       std::string_view text) const {
  const auto heading = text.find(kLogicalDriveLabel + logical_drive_num_);
  if (heading == std::string_view::npos) return "";
  const auto found = text.find(label, heading);
  if (found == std::string_view::npos) return "";
  const auto colon = text.find(':', found);
  if (colon == std::string_view::npos) return "";
  return CutShortOf(text, colon + 2, text.find('\n', colon));
}

void KRaidLogicalDevice::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"Logical drive number", logical_drive_num_},
                 {"Status of logical drive", status_of_logical_drive_},
                 {"Additional information", additional_information_},
                 {"RAID level", raid_level_},
                 {"Size (in MB)", size_},
                 {"Write cache status", write_cache_status_},
                 {"Number of chunks", number_of_chunks_},
                 {"Stripe-unit size", stripe_unit_size_},
                 {"Access blocked", access_blocked_},
                 {"Part of array", part_of_array_},
                 {"Part of merge group", part_of_merge_group_}});
}
