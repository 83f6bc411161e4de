#ifndef MODEL_KRAID_CONTROLLER_H_
#define MODEL_KRAID_CONTROLLER_H_

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/collected_data.h"
#include "model/kraid_record.h"
#include "model/label_row.h"
#include "model/owned.h"

class ArrayStripeOrder;
class KRaidBstData;
class KRaidEventData;
class KRaidEventDddData;
class KRaidEventHardData;
class KRaidEventSoftData;
class KRaidLogicalDevice;
class KRaidPhysicalDevice;
class KRaidSubStatData;

/// One RAID controller: the root of the model. It owns its child records, which are kept in the
/// order in which they were added.
///
/// Values are text as the tool printed it behind the colon, the closing "\n" included, and empty
/// when the tool did not print their label. Nothing is trimmed.
class KRaidController : public KRaidRecord {
 public:
  explicit KRaidController(NKVXHMZ20::TPluginManagerProvider* provider);
  ~KRaidController() override;

  /// Reads the whole output of kelvcmd's "getconfig". Without a "Controller information" section
  /// only the number is set and the controller counts as not found.
  void SetConfigData(const std::string& config_text, int controller_num);

  /// The same for the newer tools. Versions that they do not report are "Not provided".
  void SetConfigHrconfData(const std::string& config_text, int controller_num);
  void SetConfigArcconfData(const std::string& config_text, int controller_num);

  /// Reads the output of "getstatus", wherever the cursor stands.
  void AddStatusData(CollectedData* cursor);

  /// The value of the first place in `text` that holds the label: from two characters after the
  /// colon (the colon and one blank) up to and with the "\n", or to the end of the text. "" when
  /// there is no label, no colon behind it, or nothing behind the colon.
  static std::string ParseControllerData(std::string_view label, std::string_view text);

  /// Whether the tool's output had the controller's configuration section.
  bool GetControllerFound() const { return controller_found_; }

  std::string GetControllerType() const { return controller_type_; }
  std::string GetControllerStatus() const { return controller_status_; }
  std::string GetControllerChannelDescription() const { return controller_channel_description_; }
  std::string GetControllerFRU() const { return controller_fru_; }
  std::string GetcontrollerSerialNumber() const { return controller_serial_number_; }
  std::string GetControllerPartNumber() const { return controller_part_number_; }
  std::string GetControllerActualBiosVersion() const { return controller_actual_bios_version_; }
  std::string GetControllerFirmwareVersion() const { return controller_firmware_version_; }
  std::string GetControllerBootBlockVersion() const { return controller_boot_block_version_; }
  std::string GetControllerDeviceDriverVersion() const { return controller_device_driver_version_; }
  std::string GetControllerSlotInformation() const { return controller_slot_information_; }
  std::string GetControllerCopybackEnabled() const { return controller_copyback_enabled_; }
  std::string GetControllerVPD() const { return controller_vpd_; }
  std::string GetControllerECVersion() const { return controller_ec_version_; }
  std::string GetBatteryStatus() const { return battery_status_; }
  std::string GetBatteryOverTemp() const { return battery_over_temp_; }
  std::string GetBatteryCapacity() const { return battery_capacity_; }
  std::string GetBatteryFRU() const { return battery_fru_; }
  std::string GetBatteryTimeRemaining() const { return battery_time_remaining_; }
  std::string GetControllerName() const { return controller_name_; }
  std::string GetControllerSCSIChannelDescription() const {
    return controller_scsi_channel_description_;
  }
  std::string GetControllerInitiatorsIDs() const { return controller_initiators_ids_; }
  std::string GetControllerMaximumPhysicalDevices() const {
    return controller_maximum_physical_devices_;
  }
  std::string GetControllerDefuncDiskDriveCount() const {
    return controller_defunc_disk_drive_count_;
  }
  std::string GetControllerLogicalDrives() const { return controller_logical_drives_; }
  std::string GetControllerReadaheadCacheSetting() const {
    return controller_readahead_cache_setting_;
  }
  std::string GetControllerStripeUnitSize() const { return controller_stripe_unit_size_; }
  std::string GetControllerRebuildRate() const { return controller_rebuild_rate_; }
  std::string GetControllerHotSwapRebuild() const { return controller_hot_swap_rebuild_; }
  std::string GetControllerDataScrubbing() const { return controller_data_scrubbing_; }
  std::string GetHotSpareCopyBack() const { return hot_spare_copy_back_; }
  std::string GetControllerPartOfCluster() const { return controller_part_of_cluster_; }
  std::string GetControllerUnattendedMode() const { return controller_unattended_mode_; }
  std::string GetControllerConcurrentCommandsSupported() const {
    return controller_concurrent_commands_supported_;
  }
  std::string GetControllerConfigurationUpdateCount() const {
    return controller_configuration_update_count_;
  }
  std::string GetControllerCurrentMostRecentOperation() const {
    return controller_current_most_recent_operation_;
  }
  std::string GetControllerLogicalDrive() const { return controller_logical_drive_; }
  std::string GetControllerBackgroundOperationActive() const {
    return controller_background_operation_active_;
  }
  std::string GetControllerLastCommandStatus() const { return controller_last_command_status_; }
  std::string GetControllerLogicalDriveSizeInStripes() const {
    return controller_logical_drive_size_in_stripes_;
  }
  std::string GetControllerNumberOfRemainingStripes() const {
    return controller_number_of_remaining_stripes_;
  }
  std::string GetControllerDeviceID() const { return controller_device_id_; }
  std::string GetClusterSolutionVersion() const { return cluster_solution_version_; }

  void AddLogicalDevice(std::unique_ptr<KRaidLogicalDevice> record);
  void AddPhysicalDevice(std::unique_ptr<KRaidPhysicalDevice> record);
  void AddArrayStripeOrder(std::unique_ptr<ArrayStripeOrder> record);
  void AddBstData(std::unique_ptr<KRaidBstData> record);
  void AddEventData(std::unique_ptr<KRaidEventData> record);
  void AddEventDddData(std::unique_ptr<KRaidEventDddData> record);
  void AddSubStatData(std::unique_ptr<KRaidSubStatData> record);
  /// There is one log of each kind: a second one takes the place of the first, which lives on for
  /// those who still hold it.
  void AddEventSoftData(std::unique_ptr<KRaidEventSoftData> record);
  void AddEventHardData(std::unique_ptr<KRaidEventHardData> record);

  std::vector<KRaidLogicalDevice*> GetLogicalDevices() const {
    return PointersTo(logical_devices_);
  }
  std::vector<KRaidPhysicalDevice*> GetPhysicalDevices() const {
    return PointersTo(physical_devices_);
  }
  std::vector<ArrayStripeOrder*> GetArrayStripeOrder() const {
    return PointersTo(array_stripe_orders_);
  }
  std::vector<KRaidBstData*> GetBstData() const { return PointersTo(bst_data_); }
  std::vector<KRaidEventData*> GetEventData() const { return PointersTo(event_data_); }
  std::vector<KRaidEventDddData*> GetEventDddData() const { return PointersTo(event_ddd_data_); }
  std::vector<KRaidSubStatData*> GetSubStatData() const { return PointersTo(sub_stat_data_); }
  /// Null when there is none.
  KRaidEventSoftData* GetEventSoftData() const { return LatestOf(event_soft_data_); }
  KRaidEventHardData* GetEventHardData() const { return LatestOf(event_hard_data_); }

  /// Writes the identity and version fields to standard output.
  void DisplayAll() const;

 private:
  /// Reads a whole "getconfig" by these rows; false when it has no "Controller information".
  bool ReadConfig(const std::string& config_text, int controller_num,
                  std::span<const AnywhereRow<KRaidController>> rows);

  std::vector<std::unique_ptr<KRaidLogicalDevice>> logical_devices_;
  std::vector<std::unique_ptr<KRaidPhysicalDevice>> physical_devices_;
  std::vector<std::unique_ptr<ArrayStripeOrder>> array_stripe_orders_;
  std::vector<std::unique_ptr<KRaidBstData>> bst_data_;
  std::vector<std::unique_ptr<KRaidEventData>> event_data_;
  std::vector<std::unique_ptr<KRaidEventDddData>> event_ddd_data_;
  std::vector<std::unique_ptr<KRaidSubStatData>> sub_stat_data_;
  std::vector<std::unique_ptr<KRaidEventSoftData>> event_soft_data_;
  std::vector<std::unique_ptr<KRaidEventHardData>> event_hard_data_;
  std::string controller_type_;
  std::string controller_status_;
  std::string controller_channel_description_;
  std::string controller_fru_;
  std::string controller_serial_number_;
  std::string controller_part_number_;
  std::string controller_actual_bios_version_;
  std::string controller_firmware_version_;
  std::string controller_boot_block_version_;
  std::string controller_device_driver_version_;
  std::string controller_slot_information_;
  std::string controller_copyback_enabled_;
  std::string controller_vpd_;
  std::string controller_ec_version_;
  std::string battery_status_;
  std::string battery_over_temp_;
  std::string battery_capacity_;
  std::string battery_fru_;
  std::string battery_time_remaining_;
  std::string controller_name_;
  std::string controller_scsi_channel_description_;
  std::string controller_initiators_ids_;
  std::string controller_maximum_physical_devices_;
  std::string controller_defunc_disk_drive_count_;
  std::string controller_logical_drives_;
  std::string controller_readahead_cache_setting_;
  std::string controller_stripe_unit_size_;
  std::string controller_rebuild_rate_;
  std::string controller_hot_swap_rebuild_;
  std::string controller_data_scrubbing_;
  std::string hot_spare_copy_back_;
  std::string controller_part_of_cluster_;
  std::string controller_unattended_mode_;
  std::string controller_concurrent_commands_supported_;
  std::string controller_configuration_update_count_;
  std::string controller_current_most_recent_operation_;
  std::string controller_logical_drive_;
  std::string controller_background_operation_active_;
  std::string controller_last_command_status_;
  std::string controller_logical_drive_size_in_stripes_;
  std::string controller_number_of_remaining_stripes_;
  std::string controller_device_id_;
  std::string cluster_solution_version_;
  bool controller_found_ = false;
};

#endif  // MODEL_KRAID_CONTROLLER_H_
