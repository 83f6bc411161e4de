#ifndef INVENTORY_MACHINE_FINDING_H_
#define INVENTORY_MACHINE_FINDING_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "inventory/machine/severity.h"

/// Why something needs attention.
enum class ReasonCode {
  kDeviceFailed,      ///< A device whose state means loss.
  kDeviceMissing,     ///< In a stripe order, but not among the devices.
  kDriveDegraded,     ///< A logical drive whose state means loss.
  kControllerFailed,  ///< A controller whose state means loss.
  kStateNotFine,      ///< A state that is not known to be good, or none.
  kRebuild,           ///< A rebuild that goes on.
  kOperation,         ///< A background operation that came to no good end.
  kPredictedFailure,  ///< The device's own flag or counter.
  kBadStripes,        ///< Of a logical drive.
  kAccessBlocked,     ///< Of a logical drive.
  kBattery,           ///< Its state, or it is too warm.
  kCountsDiffer,      ///< The controller counts more failures than are listed.
  kLabelMissing,      ///< A line that other drives have, and health depends on.
  kNumberShared,      ///< Two controllers have one number.
  kUnreadable,        ///< A tool tells of a controller that was not collected.
  kGone,              ///< It was there before.
  kNew,               ///< It was not there before.
  kReplaced,          ///< Another one was there before.
};

/// "device_failed", "drive_degraded", ...: as documents name it.
const char* NameOf(ReasonCode code);

struct Reason {
  ReasonCode code;
  Severity severity;
  std::string text;  ///< For a person.
};

/// What a finding or a change is about: indices into a Machine and its controllers.
struct Subject {
  enum class Kind {
    kTool,            ///< `index` is into the machine's unpublished ones.
    kController,      ///< `controller` only.
    kLogicalDrive,    ///< `index` is into the controller's logical drives.
    kDevice,          ///< `index` is into the controller's devices.
    kUnlistedDrive,   ///< Into those of the controller that have bad stripes and are not listed.
    kUnlistedDevice,  ///< Into those of the controller that have counters and are not listed.
    kMissingDevice,   ///< Into the places without a device, see Controller.
  };

  Kind kind = Kind::kController;
  std::size_t controller = 0;
  std::size_t index = 0;
};

/// Something that needs attention: where it is, and all that is the matter with it.
struct Finding {
  Severity severity = Severity::kFine;  ///< The worst of its reasons.
  Subject subject;
  std::string where;  ///< For a person: "controller 2 (mail), device 1,2".
  std::vector<Reason> reasons;

  /// Adds what is the matter; what is fine is none.
  void Add(ReasonCode code, Severity severity_of_reason, const std::string& reason);

  /// "Critical (CRT), 17 bad stripes"
  std::string What() const;
};

#endif  // INVENTORY_MACHINE_FINDING_H_
