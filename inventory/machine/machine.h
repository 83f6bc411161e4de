#ifndef INVENTORY_MACHINE_MACHINE_H_
#define INVENTORY_MACHINE_MACHINE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "inventory/machine/finding.h"
#include "inventory/machine/place.h"
#include "inventory/machine/values.h"

// What is in a machine: all that the views show, put together of what the plug-in published. Where
// one part belongs to another, an index says so, into the vectors of the same controller.

/// What a controller counts of a device, each absent where it is not reported.
struct ErrorCounters {
  std::optional<Number> hard;
  std::optional<Number> soft;
  std::optional<Number> parity;
  std::optional<Number> predicted_failures;
  std::optional<Number> misc;

  bool operator==(const ErrorCounters&) const = default;
};

/// The counters in the order and by the names in which people are shown them.
inline constexpr struct {
  const char* name;
  std::optional<Number> ErrorCounters::*count;
} kErrorKinds[] = {
    {"hard", &ErrorCounters::hard},     {"soft", &ErrorCounters::soft},
    {"parity", &ErrorCounters::parity}, {"PFA", &ErrorCounters::predicted_failures},
    {"misc", &ErrorCounters::misc},
};

struct LogicalDrive {
  std::optional<Number> number;
  Text name;
  State state;
  std::optional<Size> size;
  Text raid_level;  ///< "5", "Volume"
  /// One for each time that they were counted, mostly one.
  std::vector<Number> bad_stripes;
  Flag access_blocked;
  Text write_cache;
  Text stripe_unit;

  std::size_t array = 0;
  Severity verdict = Severity::kFine;  ///< The worst that was found of it.
};

/// Anything on a controller's channels, disks above all.
struct Device {
  Place place;
  Text type;  ///< "Hard disk"
  State state;
  std::optional<Size> size;
  Flag predicts_failure;
  Text firmware;
  Text serial_number;
  Text world_wide_name;
  Text model;  ///< With its maker's name, where the tool has it.
  Text fru;
  Text enclosure;
  Text transfer_speed;
  Text write_cache;
  /// One for each row of a table that is about the device, mostly one or none.
  std::vector<ErrorCounters> counters;

  std::vector<std::size_t> arrays;  ///< In whose stripe orders it stands, in their order.
  Severity verdict = Severity::kFine;

  bool IsDrive() const;
};

/// Logical drives on the same devices. The tools print some with a letter, some as that of one
/// logical drive, and some not at all: then it is what the logical drive says of its own devices.
struct DriveArray {
  Text letter;
  std::optional<Number> logical_drive;  ///< Whose it is, where it has no letter.
  std::vector<std::size_t> logical_drives;
  std::vector<std::size_t> devices;  ///< Those in its stripe order, each once.

  // A device in several stripe orders is shown once.
  std::vector<std::size_t> shown_devices;
  std::vector<Place> shared_places;  ///< Of those that are shown elsewhere.
  std::vector<Place> absent_places;  ///< Where no device is.

  /// "A", or "logical drive 1".
  std::string Name() const;
};

struct Battery {
  State state;  ///< What the tool says of the battery itself.
  Flag over_temperature;
  Text capacity;  ///< "91 percent"
  Text time_remaining;

  bool IsReported() const;
};

/// What a controller does in the background, or did last.
struct Operation {
  Text name;
  Text status;
  std::optional<Number> logical_drive;
  Flag is_active;
  Severity judgement = Severity::kFine;
  std::optional<Number> stripes;
  std::optional<Number> stripes_left;

  bool IsReported() const { return name || status; }
  /// How much is done, from 0 to 1; absent where the stripes do not tell.
  std::optional<double> Progress() const;
  /// "Rebuild of logical drive 1: In progress"; "" when there was none.
  std::string Describe() const;
};

/// "logical drives/offline/critical", as a controller counts them.
struct DriveCounts {
  std::string text;
  bool is_read = false;  ///< Whether the numbers are.
  std::size_t drives = 0;
  std::size_t offline = 0;
  std::size_t critical = 0;
};
std::optional<DriveCounts> MakeDriveCounts(std::string text);

/// A row of the log of defunct drives. The controller's clock knows no zone.
struct DefunctEvent {
  std::string local_time;  ///< "2004-11-27 02:14:08", "(no time)"
  Place place;
  Text reason;
  Text description;
};

struct DefunctLog {
  bool is_collected = false;  ///< Whether it is known that there are no others.
  std::size_t count = 0;
  std::vector<DefunctEvent> last;  ///< The last few, oldest first.

  bool IsReported() const { return is_collected || count > 0; }
};

struct EventWords {
  bool is_collected = false;
  std::size_t count = 0;
  std::vector<std::string> last;  ///< The last few, in hexadecimal, oldest first.

  bool IsReported() const { return is_collected || count > 0; }
};

/// A tool and its own number for a controller.
struct ToolNumber {
  std::string tool;  ///< "kelvcmd"
  int number = 0;

  std::string Describe() const { return tool + " " + std::to_string(number); }
  bool operator==(const ToolNumber&) const = default;
};

/// What a check counts, beside the parts themselves.
struct HealthCounts {
  std::size_t failed_devices = 0;
  std::size_t degraded_drives = 0;
  std::size_t predicted_failures = 0;
  std::size_t drives_with_bad_stripes = 0;
  std::size_t rebuilds = 0;
};

/// Bad stripes of a logical drive, or counters of a device, that the controller does not list.
struct UnlistedDrive {
  std::optional<Number> number;
  std::vector<Number> bad_stripes;
};
/// "17 bad stripes"; "7, 2 bad stripes" where there are several counts, "" where none is above 0.
std::string DescribeBadStripes(const std::vector<Number>& counts);

struct UnlistedDevice {
  Place place;
  ErrorCounters counters;
};

struct Controller {
  std::optional<Number> number;
  bool shares_number = false;  ///< With an earlier one, which has the parts of both.
  std::optional<ToolNumber> tool;
  Text name;
  Text type;
  State state;
  Version firmware;
  Version bios;
  Version boot_block;
  Text driver;
  Text serial_number;
  Text slot;
  Text fru;
  Text part_number;
  Battery battery;
  Operation operation;
  std::optional<Number> defunct_drives;
  std::optional<DriveCounts> drive_counts;

  std::vector<LogicalDrive> logical_drives;
  std::vector<Device> devices;
  std::vector<DriveArray> arrays;              ///< Those with drives first, in their order.
  std::vector<std::size_t> unplaced_devices;   ///< Those in no array.
  std::vector<Place> missing_places;           ///< Absent from the devices, each once.
  std::vector<UnlistedDrive> unlisted_drives;  ///< By number.
  std::vector<UnlistedDevice> unlisted_devices;

  DefunctLog defunct_log;
  EventWords soft_log;
  EventWords hard_log;

  Severity verdict = Severity::kFine;  ///< Of the controller itself.
  HealthCounts health;                 ///< With its parts.

  /// "1"; "" where none is known.
  std::string NumberText() const { return number ? number->text : ""; }
};

struct ManagerEvent {
  Time time;
  Text severity;
  Text machine;
  Text message;
};

struct ManagerLog {
  std::size_t count = 0;           ///< Without those that the plug-in made up.
  std::vector<ManagerEvent> last;  ///< The last few, oldest first.
};

struct Machine {
  std::vector<Controller> controllers;
  std::vector<ToolNumber> unpublished;  ///< Whose output tells of a controller all the same.
  ManagerLog manager_log;
  std::vector<Finding> findings;  ///< One for each part; critical ones first.

  std::size_t CountLogicalDrives() const;
  std::size_t CountDevices() const;
  std::size_t CountCritical() const;
  HealthCounts CountHealth() const;
  /// "2 controllers, 5 logical drives, 1 device"
  std::string DescribeCounts() const;
};

#endif  // INVENTORY_MACHINE_MACHINE_H_
