#include "inventory/machine/read_machine.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "inventory/base/readable.h"
#include "inventory/machine/drive_groups.h"
#include "inventory/machine/error_counts.h"
#include "inventory/machine/health.h"
#include "inventory/machine/last_events.h"
#include "inventory/machine/property_text.h"
#include "inventory/machine/raw_output.h"
#include "schema/published_texts.h"

namespace {

using standin::StoredInstance;

class MachineReader {
 public:
  explicit MachineReader(std::size_t log_entries) : log_entries_(log_entries) {}

  Machine Read(const Report& report);

 private:
  /// What is known of a controller before all instances are read.
  struct Draft {
    bool has_controller = false;  // its own instance, besides those of its parts
    std::vector<PublishedArray> arrays;
    std::vector<DriveLocation> locations;  // one for each logical drive
    ErrorCounts errors;
  };

  struct ClassRow {
    const char* name;
    void (MachineReader::*read)(const StoredInstance& instance);
  };

  std::size_t IndexOf(const std::string& number);
  std::size_t IndexOf(const StoredInstance& instance) {
    return IndexOf(PropertyText(instance, "ControllerNum"));
  }
  Controller& ControllerOf(const StoredInstance& instance) {
    return machine_.controllers[IndexOf(instance)];
  }
  Draft& DraftOf(const StoredInstance& instance) { return drafts_[IndexOf(instance)]; }

  void ReadRawRecord(const StoredInstance& instance) {
    outputs_.push_back(ReadRawOutput(instance));
  }
  void ReadController(const StoredInstance& instance);
  void ReadLogicalDisk(const StoredInstance& instance);
  void ReadDiskGroup(const StoredInstance& instance) {
    DraftOf(instance).arrays.push_back(MakePublishedArray(PropertyText(instance, "CollectionID"),
                                                          PropertyText(instance, "Array"),
                                                          PropertyText(instance, "StripeOrder")));
  }
  void ReadDiskDrive(const StoredInstance& instance);
  void ReadBadStripes(const StoredInstance& instance) {
    DraftOf(instance).errors.ReadBadStripes(instance);
  }
  void ReadCounters(const StoredInstance& instance) {
    DraftOf(instance).errors.ReadCounters(instance);
  }
  void ReadSoftEvents(const StoredInstance& instance) {
    ControllerOf(instance).soft_log = ReadEventWords(instance, "HexSoftEvent", log_entries_);
  }
  void ReadHardEvents(const StoredInstance& instance) {
    ControllerOf(instance).hard_log = ReadEventWords(instance, "HexHardEvent", log_entries_);
  }
  void ReadDddEvent(const StoredInstance& instance) {
    AddDddEvent(instance, log_entries_,
                machine_.controllers[IndexOf(PropertyText(instance, "Controller"))]);
  }
  void ReadManagerEvent(const StoredInstance& instance) {
    AddManagerEvent(instance, log_entries_, machine_);
  }
  template <Version Controller::*kField>
  void ReadVersion(const StoredInstance& instance) {
    machine_.controllers[IndexOf(PropertyText(instance, "SoftwareElementID"))].*
        kField = {MakeText(PropertyText(instance, "Version"))};
  }

  std::size_t log_entries_;
  Machine machine_;
  std::vector<Draft> drafts_;  // one for each controller
  std::unordered_map<std::string, std::size_t> indices_;
  std::vector<RawOutput> outputs_;
};

Machine MachineReader::Read(const Report& report) {
  static constexpr ClassRow kRows[] = {
      {"KVXSG_krRawData", &MachineReader::ReadRawRecord},
      {"KVXSG_krSCSIProtocolController", &MachineReader::ReadController},
      {"KVXSG_krLogicalDisk", &MachineReader::ReadLogicalDisk},
      {"KVXSG_krDiskGroup", &MachineReader::ReadDiskGroup},
      {"KVXSG_krDiskDrive", &MachineReader::ReadDiskDrive},
      {"KVXSG_BadStripeData", &MachineReader::ReadBadStripes},
      {"KVXSG_krSCSIDeviceData", &MachineReader::ReadCounters},
      {"KVXSG_LogRecord_SoftEvent", &MachineReader::ReadSoftEvents},
      {"KVXSG_LogRecord_HardEvent", &MachineReader::ReadHardEvents},
      {"KVXSG_LogRecord_krDDD", &MachineReader::ReadDddEvent},
      {"KVXSG_LogRecord_RAIDMgrEvent", &MachineReader::ReadManagerEvent},
      {"KVXSG_krFirmwareVersion", &MachineReader::ReadVersion<&Controller::firmware>},
      {"KVXSG_krBiosVersion", &MachineReader::ReadVersion<&Controller::bios>},
      {"KVXSG_krBootBlockVersion", &MachineReader::ReadVersion<&Controller::boot_block>},
  };
  std::unordered_map<std::string_view, decltype(ClassRow::read)> readers;
  for (const ClassRow& row : kRows) readers.emplace(row.name, row.read);

  const auto& committed = report.repository.GetCommitted();
  for (std::size_t i = 0; i < committed.size(); ++i) {
    const StoredInstance& instance = *committed[i];
    const auto reader = readers.find(*instance.class_name);
    if (reader == readers.end()) continue;
    if (i < report.latest_pass && reader->second != &MachineReader::ReadManagerEvent) continue;
    (this->*reader->second)(instance);
  }
  for (std::size_t i = 0; i < drafts_.size(); ++i) {
    Controller& controller = machine_.controllers[i];
    const DevicesByPlace devices = IndexDevices(controller.devices);
    drafts_[i].errors.MoveTo(controller, devices);
    GroupDrives(drafts_[i].arrays, drafts_[i].locations, devices, controller);
  }
  OrderLastEvents(machine_);
  AddRawOutputs(outputs_, report, machine_);
  // The only tool that has such a log; an empty one leaves no instance.
  for (Controller& controller : machine_.controllers) {
    controller.defunct_log.is_collected = controller.tool && controller.tool->tool == kKelvcmd;
  }
  Judge(machine_);
  return std::move(machine_);
}

/// Nothing is left out: what names an unknown controller makes it known.
std::size_t MachineReader::IndexOf(const std::string& number) {
  const auto [found, is_new] = indices_.emplace(number, machine_.controllers.size());
  if (is_new) {
    machine_.controllers.emplace_back().number = MakeNumber(number);
    drafts_.emplace_back();
  }
  return found->second;
}

void ReadControllerFields(const StoredInstance& instance, Controller& controller) {
  static constexpr FieldRow<Controller> kRows[] = {
      {"ControllerName", &Controller::name},
      {"ControllerType", &Controller::type},
      {"ControllerStatus", &Controller::state},
      {"DeviceDriverVersion", &Controller::driver},
      {"SerialNum", &Controller::serial_number},
      {"ControllerSlotInfo", &Controller::slot},
      {"ControllerFRU", &Controller::fru},
      {"PartNum", &Controller::part_number},
      {"DefunctDiskDriveCnt", &Controller::defunct_drives},
  };
  static constexpr FieldRow<Battery> kBatteryRows[] = {
      {"ControllerBatteryStatus", &Battery::state},
      {"ControllerBatteryOverTemp", &Battery::over_temperature},
      {"ControllerBatteryCapacity", &Battery::capacity},
      {"BatteryTimeRemaining", &Battery::time_remaining},
  };
  static constexpr FieldRow<Operation> kOperationRows[] = {
      {"Current_MostRecentOperation", &Operation::name},
      {"Logical_Drive", &Operation::logical_drive},
      {"BackgroundOperationActive", &Operation::is_active},
      {"LastCmdStatus", &Operation::status},
      {"NumberOfRemainingStripes", &Operation::stripes_left},
      {"LogicalDriveSizeInStripes", &Operation::stripes},
  };
  ReadFields(instance, kRows, controller);
  ReadFields(instance, kBatteryRows, controller.battery);
  ReadFields(instance, kOperationRows, controller.operation);
  controller.drive_counts = MakeDriveCounts(PropertyText(instance, "LogicalDriveStatusCnt"));
}

void MachineReader::ReadController(const StoredInstance& instance) {
  const std::size_t index = IndexOf(instance);
  if (!drafts_[index].has_controller) {
    drafts_[index].has_controller = true;
    ReadControllerFields(instance, machine_.controllers[index]);
    return;
  }
  // Where a tool's first controller is not published, another one may get the number of its second.
  Controller& second = machine_.controllers.emplace_back();
  drafts_.emplace_back();
  second.number = machine_.controllers[index].number;
  second.shares_number = true;
  ReadControllerFields(instance, second);
}

void MachineReader::ReadLogicalDisk(const StoredInstance& instance) {
  static constexpr FieldRow<LogicalDrive> kRows[] = {
      {"LogicalDriveNum", &LogicalDrive::number},
      {"LogicalDriveName", &LogicalDrive::name},
      {"LogicalDriveStatus", &LogicalDrive::state},
      {"Size", &LogicalDrive::size},
      {"RaidLevel", &LogicalDrive::raid_level},
      {"AccessBlocked", &LogicalDrive::access_blocked},
      {"WriteCacheStatus", &LogicalDrive::write_cache},
      {"StripeUnitSize", &LogicalDrive::stripe_unit},
  };
  const std::size_t index = IndexOf(instance);
  ReadFields(instance, kRows, machine_.controllers[index].logical_drives.emplace_back());
  drafts_[index].locations.push_back(
      {PropertyText(instance, "PartOfArray"), PropertyText(instance, "DriveList")});
}

void MachineReader::ReadDiskDrive(const StoredInstance& instance) {
  static constexpr FieldRow<Device> kRows[] = {
      {"DeviceType", &Device::type},
      {"State", &Device::state},
      {"Size", &Device::size},
      {"PFA", &Device::predicts_failure},
      {"Firmware", &Device::firmware},
      {"DeviceSerialNum", &Device::serial_number},
      {"WorldWideName", &Device::world_wide_name},
      {"DeviceCode", &Device::model},
      {"FRU", &Device::fru},
      {"Enclosure", &Device::enclosure},
      {"TransferSpeed", &Device::transfer_speed},
      {"WriteCache", &Device::write_cache},
  };
  Device& device = ControllerOf(instance).devices.emplace_back();
  ReadFields(instance, kRows, device);
  const std::string place = PropertyText(instance, "ReportedChannel");
  device.place = place.empty()
                     ? Place(PropertyText(instance, "Channel"), PropertyText(instance, "ScsiId"))
                     : Place(place);
  if (!device.model) {
    device.model = MakeText(
        Readable(PropertyText(instance, "Vendor") + " " + PropertyText(instance, "Model")));
  }
  if (!device.model) {
    // Behind the place, the identifier holds what the device says of itself.
    const std::string id = PropertyText(instance, "DeviceID");
    if (const auto colon = id.find(':'); colon != std::string::npos) {
      device.model = MakeText(Readable(id.substr(colon + 1)));
    }
  }
}

}  // namespace

Machine ReadMachine(const Report& report, std::size_t log_entries) {
  return MachineReader(log_entries).Read(report);
}
