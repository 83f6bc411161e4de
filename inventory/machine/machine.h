#ifndef INVENTORY_MACHINE_MACHINE_H_
#define INVENTORY_MACHINE_MACHINE_H_

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

// What the plug-in published, put together for a reader: who belongs to whom. All texts are
// Readable; "" stands for what was not reported.

struct LogicalDrive {
  std::string number;
  std::string name;
  std::string state;
  std::string size;
  std::string raid_level;
  std::string bad_stripes;
  std::string access_blocked;
};

/// Anything on a controller's channels, disks above all.
struct Device {
  std::string place;  ///< Of the form in place.h.
  std::string type;
  std::string state;
  std::string size;
  bool has_size = false;         ///< Whether the tool prints one, be it 0.
  std::string predicts_failure;  ///< "Yes" or "No", as the tools have it.
  std::string firmware;
  std::string serial_number;
  std::string model;
  std::vector<std::pair<std::string, std::string>> counters;  ///< Those that are not 0.
};

/// An array with its logical drives and devices, or a logical drive with its devices, or what is in
/// none of these. Indices are into the controller's vectors.
struct DriveGroup {
  std::string array;  ///< Its letter; "" when it has none.
  std::vector<std::size_t> logical_drives;
  std::vector<std::size_t> devices;
  std::vector<std::string> absent_places;  ///< In the stripe order, but no device is there.
  std::vector<std::string> shared_places;  ///< Their devices stand in an earlier group.
};

struct EventWords {
  std::size_t count = 0;
  std::vector<std::string> last;  ///< The last few, in hexadecimal, oldest first.
};

struct ManagerEvent {
  std::string time;
  std::string severity;
  std::string machine;
  std::string message;
};

struct Controller {
  std::string number;
  std::string name;
  std::string type;
  std::string tool;  ///< "kelvcmd 2": the tool and its own number for the controller.
  std::string status;
  std::string firmware;
  std::string bios;
  std::string boot_block;
  std::string driver;
  std::string serial_number;
  std::string slot;
  std::string battery_status;  ///< What the tool says of the battery itself.
  std::string battery_over_temperature;
  std::string battery_capacity;
  std::string operation;
  std::string operation_drive;
  std::string operation_active;
  std::string operation_status;
  std::string stripes_left;
  std::string stripes;
  std::string defunct_drives;
  std::string drive_counts;  ///< "logical drives/offline/critical"

  std::vector<LogicalDrive> logical_drives;
  std::vector<Device> devices;
  std::vector<DriveGroup> groups;  ///< In which each drive and each device is once.
  /// Bad stripes and counters of drives and devices that are not listed.
  std::vector<std::pair<std::string, std::string>> stray_bad_stripes;
  std::vector<Device> stray_counters;

  bool shares_number = false;  ///< With an earlier one, which has the parts of both.

  /// "Rebuild of logical drive 1: In progress"; "" when there was none.
  std::string DescribeOperation() const;

  std::size_t ddd_count = 0;
  std::vector<std::string> last_ddd;  ///< The last few entries of the log, oldest first.
  EventWords soft;
  EventWords hard;
};

struct Machine {
  std::vector<Controller> controllers;
  /// The tools and numbers whose output tells of a controller that was not published.
  std::vector<std::string> unpublished;
  std::size_t manager_event_count = 0;            ///< Without those that the plug-in made up.
  std::vector<ManagerEvent> last_manager_events;  ///< The last few, oldest first.

  std::size_t CountLogicalDrives() const;
  std::size_t CountDevices() const;
  /// "2 controllers, 5 logical drives, 1 device"
  std::string DescribeCounts() const;
};

#endif  // INVENTORY_MACHINE_MACHINE_H_
