#include "model/kraid_controller.h"

#include <utility>

#include "model/array_stripe_order.h"
#include "model/display_fields.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "model/record_identifiers.h"
#include "model/text.h"
#include "schema/published_texts.h"

KRaidController::KRaidController(NKVXHMZ20::TPluginManagerProvider* provider)
    : KRaidRecord(provider) {}

KRaidController::~KRaidController() = default;

std::string KRaidController::ParseControllerData(std::string_view label, std::string_view text) {
  const auto found = text.find(label);
  if (found == std::string_view::npos) return "";
  const auto colon = text.find(':', found);
  if (colon == std::string_view::npos || colon + 2 > text.size()) return "";
  // The character behind the colon is skipped whatever it is: a tool that prints no blank there
  // loses the first letter of the value.
  const auto end = text.find('\n', colon);
  if (end == std::string_view::npos) return std::string(text.substr(colon + 2));
  return std::string(text.substr(colon + 2, end - colon - 1));
}

bool KRaidController::ReadConfig(const std::string& config_text, int controller_num,
                                 std::span<const AnywhereRow<KRaidController>> rows) {
  controller_num_ = std::to_string(controller_num);
  if (!Contains(config_text, kControllerHeading)) return false;
  ReadAnywhere(rows, *this, [&config_text](const char* label) {
    return ParseControllerData(label, config_text);
  });
  controller_found_ = true;
  return true;
}

void KRaidController::SetConfigData(const std::string& config_text, int controller_num) {
  using K = KRaidController;
  static constexpr AnywhereRow<K> kRows[] = {
      {"Controller type", &K::controller_type_},
      {"Controller FRU", &K::controller_fru_},
      {"Serial number", &K::controller_serial_number_},
      {"Part number", &K::controller_part_number_},
      {"Actual BIOS version", &K::controller_actual_bios_version_},
      {"Firmware version", &K::controller_firmware_version_},
      {"Boot block version", &K::controller_boot_block_version_},
      {"Device driver version", &K::controller_device_driver_version_},
      {"Cluster solution", &K::cluster_solution_version_},
      {"Controller slot information", &K::controller_slot_information_},
      {"Controller name", &K::controller_name_},
      {"SCSI channel description", &K::controller_scsi_channel_description_},
      // No closing parenthesis: the label matches whatever the tool writes behind it.
      {"Initiator IDs (Channel/SCSI ID", &K::controller_initiators_ids_},
      {"Maximum physical devices", &K::controller_maximum_physical_devices_},
      {"Defunct disk drive count", &K::controller_defunc_disk_drive_count_},
      {"Logical drives/Offline/Critical", &K::controller_logical_drives_},
      {"Readahead cache setting", &K::controller_readahead_cache_setting_},
      {"Stripe-unit size", &K::controller_stripe_unit_size_},
      {"Rebuild rate (Low/Medium/High)", &K::controller_rebuild_rate_},
      {"Hot-swap rebuild", &K::controller_hot_swap_rebuild_},
      {"Data scrubbing", &K::controller_data_scrubbing_},
      {"Hot-spare", &K::hot_spare_copy_back_},
      {"Part of cluster (Yes/No)", &K::controller_part_of_cluster_},
      {"Unattended mode (Yes/No)", &K::controller_unattended_mode_},
      {"Concurrent commands supported", &K::controller_concurrent_commands_supported_},
      {"Configuration update count", &K::controller_configuration_update_count_},
  };
  if (!ReadConfig(config_text, controller_num, kRows)) return;
  controller_device_id_ = ControllerIdentifier(controller_num_);
}

void KRaidController::SetConfigHrconfData(const std::string& config_text, int controller_num) {
  using K = KRaidController;
  static constexpr AnywhereRow<K> kRows[] = {
      {"BIOS", &K::controller_actual_bios_version_, kNotProvided},
      {"Driver", &K::controller_device_driver_version_, kNotProvided},
      {"Boot", &K::controller_boot_block_version_, kNotProvided},
      {"Controller Status", &K::controller_status_},
      {"Channel description", &K::controller_channel_description_},
      {"Defunct disk drive count", &K::controller_defunc_disk_drive_count_},
      {"Logical drives/Offline/Critical", &K::controller_logical_drives_},
  };
  if (!ReadConfig(config_text, controller_num, kRows)) return;
  controller_firmware_version_ = kNotProvided;  // whatever the output says: no label is read
}

void KRaidController::SetConfigArcconfData(const std::string& config_text, int controller_num) {
  using K = KRaidController;
  static constexpr AnywhereRow<K> kRows[] = {
      {"Controller Status", &K::controller_status_},
      {"Channel description", &K::controller_channel_description_},
      {"Controller FRU#", &K::controller_fru_},
      {"BIOS", &K::controller_actual_bios_version_, kNotProvided},
      {"Firmware", &K::controller_firmware_version_, kNotProvided},
      {"Driver", &K::controller_device_driver_version_, kNotProvided},
      {"Boot", &K::controller_boot_block_version_, kNotProvided},
      {"Physical Slot", &K::controller_slot_information_},
      {"Copyback", &K::controller_copyback_enabled_},
      {"Data scrubbing", &K::controller_data_scrubbing_},
      {"Defunct disk drive count", &K::controller_defunc_disk_drive_count_},
      {"Logical drives/Offline/Critical", &K::controller_logical_drives_},
      {"VPD Assigned", &K::controller_vpd_},
      {"EC Version", &K::controller_ec_version_},
      // A second time, on purpose: this is the value that stays.
      {"Controller FRU", &K::controller_fru_},
      // Mostly the controller's, as its line is the first that holds the word.
      {"Status", &K::battery_status_},
      {"Over temp", &K::battery_over_temp_},
      {"Capacity", &K::battery_capacity_},
      {"Battery FRU", &K::battery_fru_},
      {"Time remaining", &K::battery_time_remaining_},
  };
  if (!ReadConfig(config_text, controller_num, kRows)) return;
  controller_type_ = ParseControllerData("Controller Model", config_text);
  if (controller_type_.empty()) {
    controller_type_ = ParseControllerData("Controller type", config_text);
  }
  if (controller_type_.empty()) controller_type_ = "Unnamed HostRAID";
}

void KRaidController::AddStatusData(CollectedData* cursor) {
  using K = KRaidController;
  // "Logical drive" and "Status" take the first line that holds those words anywhere. In a
  // "getstatus" output that is the operation block, which lists them before the longer labels.
  static constexpr AnywhereRow<K> kRows[] = {
      {"Current/most recent operation", &K::controller_current_most_recent_operation_},
      {"Logical drive", &K::controller_logical_drive_},
      {"Background operation active", &K::controller_background_operation_active_},
      {"Status", &K::controller_last_command_status_},
      {"Logical drive size (in stripes)", &K::controller_logical_drive_size_in_stripes_},
      {"Number of remaining stripes", &K::controller_number_of_remaining_stripes_},
  };
  ReadAnywhere(kRows, *this, [cursor](const char* label) { return cursor->FindParseLine(label); });
}

void KRaidController::AddLogicalDevice(std::unique_ptr<KRaidLogicalDevice> record) {
  logical_devices_.push_back(std::move(record));
}

void KRaidController::AddPhysicalDevice(std::unique_ptr<KRaidPhysicalDevice> record) {
  physical_devices_.push_back(std::move(record));
}

void KRaidController::AddArrayStripeOrder(std::unique_ptr<ArrayStripeOrder> record) {
  array_stripe_orders_.push_back(std::move(record));
}

void KRaidController::AddBstData(std::unique_ptr<KRaidBstData> record) {
  bst_data_.push_back(std::move(record));
}

void KRaidController::AddEventData(std::unique_ptr<KRaidEventData> record) {
  event_data_.push_back(std::move(record));
}

void KRaidController::AddEventDddData(std::unique_ptr<KRaidEventDddData> record) {
  event_ddd_data_.push_back(std::move(record));
}

void KRaidController::AddSubStatData(std::unique_ptr<KRaidSubStatData> record) {
  sub_stat_data_.push_back(std::move(record));
}

void KRaidController::AddEventSoftData(std::unique_ptr<KRaidEventSoftData> record) {
  event_soft_data_.push_back(std::move(record));
}

void KRaidController::AddEventHardData(std::unique_ptr<KRaidEventHardData> record) {
  event_hard_data_.push_back(std::move(record));
}

void KRaidController::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"Controller type", controller_type_},
                 {"Controller FRU", controller_fru_},
                 {"Serial number", controller_serial_number_},
                 {"Part number", controller_part_number_},
                 {"Actual BIOS version", controller_actual_bios_version_},
                 {"Firmware version", controller_firmware_version_},
                 {"Boot block version", controller_boot_block_version_},
                 {"Device driver version", controller_device_driver_version_}});
}
