#include "inventory/machine/machine.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string_view>
#include <unordered_map>

#include "inventory/base/readable.h"

namespace {

using standin::StoredInstance;

constexpr std::size_t kLastEntries = 5;

std::string Text(const StoredInstance& instance, const char* property) {
  const NKVXHMZ20::TCIMValue* value = instance.Find(property);
  return value == nullptr ? "" : Readable(value->ToString());
}

template <class Record>
struct FieldRow {
  const char* property;
  std::string Record::*field;
};

template <class Record, std::size_t kCount>
void ReadFields(const StoredInstance& instance, const FieldRow<Record> (&rows)[kCount],
                Record& record) {
  for (const FieldRow<Record>& row : rows) record.*row.field = Text(instance, row.property);
}

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool IsZero(std::string_view text) { return text.find_first_not_of('0') == std::string_view::npos; }

/// "34715/71096320", megabytes and sectors, or "34715" as "34715 MB"; others say their unit.
std::string WithUnit(std::string size) {
  const auto slash = size.find('/');
  if (IsDigits(size.substr(0, slash))) size.replace(std::min(slash, size.size()), size.npos, " MB");
  return size;
}

/// "20041127021408.000000-300" as "2004-11-27 02:14:08 -0500".
std::string ReadableTime(const StoredInstance& instance, bool with_offset) {
  const NKVXHMZ20::TCIMValue* value = instance.Find("MessageTimestamp");
  const bool is_time =
      value != nullptr && value->GetType().GetCode() == NKVXHMZ20::TCIMValue::kDateTime;
  const std::string text = is_time ? value->ToString() : "";
  if (text.size() != 25 || text.starts_with("000000")) return "(no time)";
  std::string time = text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2) + " " +
                     text.substr(8, 2) + ":" + text.substr(10, 2) + ":" + text.substr(12, 2);
  if (with_offset) {
    const int minutes = std::stoi(text.substr(22));
    char offset[32];
    std::snprintf(offset, sizeof offset, " %c%02d%02d", text[21], minutes / 60, minutes % 60);
    time += offset;
  }
  return time;
}

std::string Place(const std::string& channel, const std::string& number) {
  return (channel.empty() ? "?" : channel) + "," + (number.empty() ? "?" : number);
}

template <class Entry>
void KeepLast(std::vector<Entry>& entries, Entry entry) {
  entries.push_back(std::move(entry));
  if (entries.size() > kLastEntries) entries.erase(entries.begin());
}

class Reader {
 public:
  Machine Read(const Report& report);

 private:
  /// What ReadMachine learns of a controller before it can put it together.
  struct Parts {
    struct Array {
      std::string letter;
      std::string logical_drive;
      std::string stripe_order;
    };
    std::vector<Array> arrays;
    std::vector<std::string> letters_of_drives;  // one for each logical drive
    std::vector<std::string> places_of_drives;
    std::unordered_map<std::string, std::string> bad_stripes;  // by logical drive
    std::vector<Device> counters;
    bool has_controller = false;  // its own instance, besides those of its parts
  };

  /// A tool's output about a controller.
  struct ToolOutput {
    std::string tool;
    int number = 0;
    bool has_devices = false;
    std::string battery_status;
  };

  struct ClassRow {
    const char* name;
    void (Reader::*read)(const StoredInstance& instance);
  };

  std::size_t IndexOf(const std::string& number);
  std::size_t IndexOf(const StoredInstance& instance) {
    return IndexOf(Text(instance, "ControllerNum"));
  }
  Controller& ControllerOf(const StoredInstance& instance) {
    return machine_.controllers[IndexOf(instance)];
  }

  void ReadRawData(const StoredInstance& instance);
  void ReadController(const StoredInstance& instance);
  void ReadLogicalDisk(const StoredInstance& instance);
  void ReadDiskGroup(const StoredInstance& instance);
  void ReadDiskDrive(const StoredInstance& instance);
  void ReadBadStripes(const StoredInstance& instance);
  void ReadCounters(const StoredInstance& instance);
  void ReadSoftEvents(const StoredInstance& instance);
  void ReadHardEvents(const StoredInstance& instance);
  void ReadDddEvent(const StoredInstance& instance);
  void ReadManagerEvent(const StoredInstance& instance);
  template <std::string Controller::*kField>
  void ReadVersion(const StoredInstance& instance) {
    machine_.controllers[IndexOf(Text(instance, "SoftwareElementID"))].*kField =
        Text(instance, "Version");
  }

  void MatchTools();
  static void PutTogether(Controller& controller, Parts& parts);
  /// Takes the devices out of `devices_at`.
  using Places = std::unordered_map<std::string, std::vector<std::size_t>>;
  static void AddGroups(Controller& controller, const Parts& parts, Places& devices_at);

  Machine machine_;
  std::vector<Parts> parts_;
  std::unordered_map<std::string, std::size_t> indices_;
  std::vector<ToolOutput> outputs_;
};

Machine Reader::Read(const Report& report) {
  static constexpr ClassRow kRows[] = {
      {"KVXSG_krRawData", &Reader::ReadRawData},
      {"KVXSG_krSCSIProtocolController", &Reader::ReadController},
      {"KVXSG_krLogicalDisk", &Reader::ReadLogicalDisk},
      {"KVXSG_krDiskGroup", &Reader::ReadDiskGroup},
      {"KVXSG_krDiskDrive", &Reader::ReadDiskDrive},
      {"KVXSG_BadStripeData", &Reader::ReadBadStripes},
      {"KVXSG_krSCSIDeviceData", &Reader::ReadCounters},
      {"KVXSG_LogRecord_SoftEvent", &Reader::ReadSoftEvents},
      {"KVXSG_LogRecord_HardEvent", &Reader::ReadHardEvents},
      {"KVXSG_LogRecord_krDDD", &Reader::ReadDddEvent},
      {"KVXSG_LogRecord_RAIDMgrEvent", &Reader::ReadManagerEvent},
      {"KVXSG_krFirmwareVersion", &Reader::ReadVersion<&Controller::firmware>},
      {"KVXSG_krBiosVersion", &Reader::ReadVersion<&Controller::bios>},
      {"KVXSG_krBootBlockVersion", &Reader::ReadVersion<&Controller::boot_block>},
  };
  std::unordered_map<std::string_view, decltype(ClassRow::read)> readers;
  for (const ClassRow& row : kRows) readers.emplace(row.name, row.read);

  const auto& committed = report.repository.GetCommitted();
  for (std::size_t i = 0; i < committed.size(); ++i) {
    const StoredInstance& instance = *committed[i];
    const auto reader = readers.find(*instance.class_name);
    if (reader == readers.end()) continue;
    if (i < report.latest_pass && reader->second != &Reader::ReadManagerEvent) continue;
    (this->*reader->second)(instance);
  }
  for (std::size_t i = 0; i < parts_.size(); ++i) PutTogether(machine_.controllers[i], parts_[i]);
  MatchTools();
  return std::move(machine_);
}

// The plug-in numbers each tool's controllers on from those that it found before.
void Reader::MatchTools() {
  std::size_t next = 0;
  int offset = 0;
  const std::string* tool = nullptr;
  for (const ToolOutput& output : outputs_) {
    if (tool == nullptr || *tool != output.tool) offset = static_cast<int>(next);
    tool = &output.tool;
    // Of kelvcmd's, a controller without a section of devices is never published.
    const bool is_published =
        next < machine_.controllers.size() && (output.has_devices || output.tool != "kelvcmd") &&
        machine_.controllers[next].number == std::to_string(output.number + offset);
    const std::string name = output.tool + " " + std::to_string(output.number);
    if (!is_published) {
      machine_.unpublished.push_back(name);
      continue;
    }
    machine_.controllers[next].tool = name;
    // The published status is that of the first line with the word: mostly the controller's own.
    machine_.controllers[next].battery_status = output.battery_status;
    ++next;
  }
}

/// Nothing is left out: what names an unknown controller makes it known.
std::size_t Reader::IndexOf(const std::string& number) {
  const auto [found, is_new] = indices_.emplace(number, machine_.controllers.size());
  if (is_new) {
    machine_.controllers.emplace_back().number = number;
    parts_.emplace_back();
  }
  return found->second;
}

void Reader::ReadRawData(const StoredInstance& instance) {
  std::istringstream command(Text(instance, "Command"));
  std::string program;
  std::string word;
  ToolOutput output;
  if (!(command >> program >> word >> output.number) || word != "getconfig") return;
  output.tool = program.substr(program.rfind('/') + 1);
  const NKVXHMZ20::TCIMValue* results = instance.Find("RawResults");
  if (results == nullptr || !results->IsArray()) return;
  bool has_controller = false;
  bool is_battery = false;
  for (const NKVXHMZ20::TCIMValue& element : results->GetArray()) {
    const std::string line = element.ToString();
    const auto holds = [&line](const char* text) { return line.find(text) != std::string::npos; };
    has_controller = has_controller || holds("Controller information");
    output.has_devices = output.has_devices || holds("Physical device information");
    is_battery = is_battery || holds("Battery information");
    if (is_battery && output.battery_status.empty() && holds("Status")) {
      output.battery_status = Readable(line.substr(std::min(line.find(':'), line.size() - 1) + 1));
    }
  }
  if (has_controller) outputs_.push_back(std::move(output));
}

void Reader::ReadController(const StoredInstance& instance) {
  static constexpr FieldRow<Controller> kRows[] = {
      {"ControllerName", &Controller::name},
      {"ControllerType", &Controller::type},
      {"ControllerStatus", &Controller::status},
      {"DeviceDriverVersion", &Controller::driver},
      {"SerialNum", &Controller::serial_number},
      {"ControllerSlotInfo", &Controller::slot},
      {"ControllerBatteryStatus", &Controller::battery_status},
      {"ControllerBatteryOverTemp", &Controller::battery_over_temperature},
      {"ControllerBatteryCapacity", &Controller::battery_capacity},
      {"Current_MostRecentOperation", &Controller::operation},
      {"Logical_Drive", &Controller::operation_drive},
      {"BackgroundOperationActive", &Controller::operation_active},
      {"LastCmdStatus", &Controller::operation_status},
      {"NumberOfRemainingStripes", &Controller::stripes_left},
      {"LogicalDriveSizeInStripes", &Controller::stripes},
      {"DefunctDiskDriveCnt", &Controller::defunct_drives},
      {"LogicalDriveStatusCnt", &Controller::drive_counts},
  };
  const std::size_t index = IndexOf(instance);
  if (!parts_[index].has_controller) {
    parts_[index].has_controller = true;
    ReadFields(instance, kRows, machine_.controllers[index]);
    return;
  }
  // Where a tool's first controller is not published, another one may get the number of its second.
  Controller& second = machine_.controllers.emplace_back();
  parts_.emplace_back();
  second.number = machine_.controllers[index].number;
  second.shares_number = true;
  ReadFields(instance, kRows, second);
}

void Reader::ReadLogicalDisk(const StoredInstance& instance) {
  static constexpr FieldRow<LogicalDrive> kRows[] = {
      {"LogicalDriveNum", &LogicalDrive::number},
      {"LogicalDriveName", &LogicalDrive::name},
      {"LogicalDriveStatus", &LogicalDrive::state},
      {"Size", &LogicalDrive::size},
      {"RaidLevel", &LogicalDrive::raid_level},
      {"AccessBlocked", &LogicalDrive::access_blocked},
  };
  const std::size_t index = IndexOf(instance);
  LogicalDrive& drive = machine_.controllers[index].logical_drives.emplace_back();
  ReadFields(instance, kRows, drive);
  drive.size = WithUnit(drive.size);
  if (IsDigits(drive.raid_level)) drive.raid_level.insert(0, "RAID ");
  parts_[index].letters_of_drives.push_back(Text(instance, "PartOfArray"));
  parts_[index].places_of_drives.push_back(Text(instance, "DriveList"));
}

void Reader::ReadDiskGroup(const StoredInstance& instance) {
  static constexpr std::string_view kDriveMark = "LogicalDrv";
  Parts::Array& array = parts_[IndexOf(instance)].arrays.emplace_back();
  array.stripe_order = Text(instance, "StripeOrder");
  // The newer tools know no letters: their arrays are each one logical drive's, whose number stands
  // in the identifier.
  const std::string id = Text(instance, "CollectionID");
  const auto mark = id.find(kDriveMark);
  if (mark == std::string::npos) {
    array.letter = Text(instance, "Array");
  } else {
    const auto number = mark + kDriveMark.size();
    array.logical_drive = id.substr(number, id.find_first_not_of("0123456789", number) - number);
  }
}

void Reader::ReadDiskDrive(const StoredInstance& instance) {
  static constexpr FieldRow<Device> kRows[] = {
      {"ReportedChannel", &Device::place},
      {"DeviceType", &Device::type},
      {"State", &Device::state},
      {"Size", &Device::size},
      {"PFA", &Device::predicts_failure},
      {"Firmware", &Device::firmware},
      {"DeviceSerialNum", &Device::serial_number},
      {"DeviceCode", &Device::model},
  };
  Device& device = ControllerOf(instance).devices.emplace_back();
  ReadFields(instance, kRows, device);
  if (device.place.empty()) {
    device.place = Place(Text(instance, "Channel"), Text(instance, "ScsiId"));
  }
  device.size = WithUnit(device.size);
  if (device.size == "0 MB") device.size.clear();
  if (device.model.empty()) {
    device.model = Readable(Text(instance, "Vendor") + " " + Text(instance, "Model"));
  }
  if (device.model.empty()) {
    // Behind the place, the identifier holds what the device says of itself.
    const std::string id = Text(instance, "DeviceID");
    if (const auto colon = id.find(':'); colon != std::string::npos) {
      device.model = Readable(id.substr(colon + 1));
    }
  }
}

void Reader::ReadBadStripes(const StoredInstance& instance) {
  const std::string count = Text(instance, "NumBadStripes");
  if (IsZero(count)) return;
  const auto [found, is_new] =
      parts_[IndexOf(instance)].bad_stripes.emplace(Text(instance, "LogicalDrive"), count);
  if (!is_new) found->second += ", " + count;
}

void Reader::ReadCounters(const StoredInstance& instance) {
  static constexpr std::pair<const char*, const char*> kCounters[] = {
      {"NumHardErrors", "hard"},
      {"NumSoftErrors", "soft"},
      {"NumParityErrors", "parity"},
      {"PFA", "PFA"},
      {"Misc", "misc"},
  };
  Device counters;
  for (const auto& [property, name] : kCounters) {
    const std::string count = Text(instance, property);
    if (!IsZero(count)) counters.counters.emplace_back(name, count);
  }
  if (counters.counters.empty()) return;
  counters.place = Place(Text(instance, "Channel"), Text(instance, "ScsiId"));
  parts_[IndexOf(instance)].counters.push_back(std::move(counters));
}

EventWords ReadWords(const StoredInstance& instance, const char* property) {
  EventWords words;
  const NKVXHMZ20::TCIMValue* value = instance.Find(property);
  if (value == nullptr || !value->IsArray()) return words;
  const auto& elements = value->GetArray();
  words.count = elements.size();
  const std::size_t shown = std::min(kLastEntries, words.count);
  for (std::size_t i = words.count - shown; i < words.count; ++i) {
    char text[16];
    std::snprintf(text, sizeof text, "%08X", elements[i].GetNumber());
    words.last.emplace_back(text);
  }
  return words;
}

void Reader::ReadSoftEvents(const StoredInstance& instance) {
  ControllerOf(instance).soft = ReadWords(instance, "HexSoftEvent");
}

void Reader::ReadHardEvents(const StoredInstance& instance) {
  ControllerOf(instance).hard = ReadWords(instance, "HexHardEvent");
}

void Reader::ReadDddEvent(const StoredInstance& instance) {
  Controller& controller = machine_.controllers[IndexOf(Text(instance, "Controller"))];
  ++controller.ddd_count;
  KeepLast(controller.last_ddd, ReadableTime(instance, false) + "  " +
                                    Place(Text(instance, "Channel"), Text(instance, "ID")) +
                                    "  reason " + Text(instance, "Reason") + "  " +
                                    Text(instance, "Descrip"));
}

void Reader::ReadManagerEvent(const StoredInstance& instance) {
  ManagerEvent event = {ReadableTime(instance, true), Text(instance, "Severity"),
                        Text(instance, "MachineName"), Text(instance, "Message")};
  // What the plug-in makes up when it opens the log and at its end, and the rest of a long line.
  if (event.message.starts_with("SpawnedProcess: ") ||
      event.message == "No RAID Manager log entries." ||
      (event.severity + event.machine + event.message).empty()) {
    return;
  }
  ++machine_.manager_event_count;
  KeepLast(machine_.last_manager_events, std::move(event));
}

void Reader::PutTogether(Controller& controller, Parts& parts) {
  for (LogicalDrive& drive : controller.logical_drives) {
    if (const auto found = parts.bad_stripes.extract(drive.number); !found.empty()) {
      drive.bad_stripes = found.mapped();
    }
  }
  controller.stray_bad_stripes.assign(parts.bad_stripes.begin(), parts.bad_stripes.end());
  std::sort(controller.stray_bad_stripes.begin(), controller.stray_bad_stripes.end());

  Places devices_at;
  for (std::size_t i = 0; i < controller.devices.size(); ++i) {
    devices_at[controller.devices[i].place].push_back(i);
  }
  for (Device& counters : parts.counters) {
    const auto found = devices_at.find(counters.place);
    // Of several at one place (without a number, mostly) nobody knows whose they are.
    if (found == devices_at.end() || found->second.size() > 1) {
      controller.stray_counters.push_back(std::move(counters));
    } else {
      auto& of_device = controller.devices[found->second.front()].counters;
      of_device.insert(of_device.end(), counters.counters.begin(), counters.counters.end());
    }
  }
  AddGroups(controller, parts, devices_at);
}

void Reader::AddGroups(Controller& controller, const Parts& parts, Places& devices_at) {
  // A device that stands in several stripe orders is shown in the first.
  const auto add_places = [&](DriveGroup& group, const std::string& places) {
    std::istringstream words(places);
    for (std::string place; words >> place;) {
      const auto found = devices_at.find(place);
      if (found == devices_at.end()) {
        group.absent_places.push_back(place);
      } else if (found->second.empty()) {
        group.shared_places.push_back(place);
      } else {
        group.devices.insert(group.devices.end(), found->second.begin(), found->second.end());
        found->second.clear();
      }
    }
  };

  std::vector<DriveGroup>& groups = controller.groups;
  std::unordered_map<std::string, std::size_t> by_letter;
  std::unordered_map<std::string, std::size_t> by_drive;
  for (const Parts::Array& array : parts.arrays) {
    if (array.letter.empty()) {
      by_drive.emplace(array.logical_drive, groups.size());
    } else {
      by_letter.emplace(array.letter, groups.size());
    }
    groups.emplace_back().array = array.letter;
    add_places(groups.back(), array.stripe_order);
  }
  for (std::size_t i = 0; i < controller.logical_drives.size(); ++i) {
    const auto array = by_letter.find(parts.letters_of_drives[i]);
    const auto own = by_drive.find(controller.logical_drives[i].number);
    if (array != by_letter.end()) {
      groups[array->second].logical_drives.push_back(i);
    } else if (own != by_drive.end()) {
      groups[own->second].logical_drives.push_back(i);
    } else {
      groups.emplace_back().logical_drives.push_back(i);
      add_places(groups.back(), parts.places_of_drives[i]);
    }
  }
  std::stable_sort(groups.begin(), groups.end(), [](const DriveGroup& a, const DriveGroup& b) {
    if (a.logical_drives.empty()) return false;
    return b.logical_drives.empty() || a.logical_drives.front() < b.logical_drives.front();
  });
  DriveGroup rest;
  for (std::size_t i = 0; i < controller.devices.size(); ++i) {
    std::vector<std::size_t>& left = devices_at[controller.devices[i].place];
    rest.devices.insert(rest.devices.end(), left.begin(), left.end());
    left.clear();
  }
  if (!rest.devices.empty()) groups.push_back(std::move(rest));
}

}  // namespace

std::string Controller::DescribeOperation() const {
  if ((operation + operation_status).empty()) return "";
  std::string text = operation.empty() ? "Background operation" : operation;
  if (!operation_drive.empty()) text += " of logical drive " + operation_drive;
  return text + ": " + (operation_status.empty() ? "status not reported" : operation_status);
}

std::size_t Machine::CountLogicalDrives() const {
  std::size_t count = 0;
  for (const Controller& controller : controllers) count += controller.logical_drives.size();
  return count;
}

std::size_t Machine::CountDevices() const {
  std::size_t count = 0;
  for (const Controller& controller : controllers) count += controller.devices.size();
  return count;
}

std::string Machine::DescribeCounts() const {
  return Counted(controllers.size(), "controller") + ", " +
         Counted(CountLogicalDrives(), "logical drive") + ", " + Counted(CountDevices(), "device");
}

Machine ReadMachine(const Report& report) { return Reader().Read(report); }
