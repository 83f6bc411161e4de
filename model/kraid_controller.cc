#include "model/kraid_controller.h"

#include <utility>

#include "model/array_stripe_order.h"
#include "model/display.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "model/label_row.h"

KRaidController::KRaidController(NKVXHMZ20::TPluginManagerProvider* /*provider*/) {}

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

void KRaidController::SetConfigData(const std::string& config_text, int controller_num) {
  using K = KRaidController;
  static constexpr LabelRow<K> kRows[] = {
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
  controller_num_ = std::to_string(controller_num);
  if (config_text.find("Controller information") == std::string::npos) return;
  // Each label is looked for in the whole output, not in its section: the first place wins.
  for (const LabelRow<K>& row : kRows) {
    this->*row.field = ParseControllerData(row.label, config_text);
  }
  controller_found_ = true;
  controller_device_id_ = "KelvaRAID" + controller_num_;
}

void KRaidController::AddStatusData(CollectedData* cursor) {
  using K = KRaidController;
  // "Logical drive" and "Status" take the first line that holds those words anywhere. In a
  // "getstatus" output that is the operation block, which lists them before the longer labels.
  static constexpr LabelRow<K> kRows[] = {
      {"Current/most recent operation", &K::controller_current_most_recent_operation_},
      {"Logical drive", &K::controller_logical_drive_},
      {"Background operation active", &K::controller_background_operation_active_},
      {"Status", &K::controller_last_command_status_},
      {"Logical drive size (in stripes)", &K::controller_logical_drive_size_in_stripes_},
      {"Number of remaining stripes", &K::controller_number_of_remaining_stripes_},
  };
  for (const LabelRow<K>& row : kRows) this->*row.field = cursor->FindParseLine(row.label);
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
  event_soft_data_ = std::move(record);
}

void KRaidController::AddEventHardData(std::unique_ptr<KRaidEventHardData> record) {
  event_hard_data_ = std::move(record);
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
