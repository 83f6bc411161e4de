#include "inventory/machine/health.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <set>
#include <string_view>

#include "inventory/base/readable.h"

namespace {

using Words = std::initializer_list<std::string_view>;

bool IsOneOf(const std::string& state, Words words) {
  return std::find(words.begin(), words.end(), Lower(state)) != words.end();
}

bool HoldsOneOf(const std::string& state, Words words) {
  const std::string text = Lower(state);
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view word) { return text.find(word) != std::string::npos; });
}

bool IsRebuild(const std::string& text) { return HoldsOneOf(text, {"rebuild", "re-build"}); }

/// A state that may be missing: "" is fine, too.
bool IsFineOrMissing(const std::string& state, Words fine) {
  return state.empty() || IsOneOf(state, fine);
}

/// What is wrong with one object, gathered.
struct Wrongs {
  Severity severity = Severity::kFine;
  std::string what;

  void Add(Severity new_severity, const std::string& text) {
    if (new_severity == Severity::kFine) return;
    severity = std::max(severity, new_severity);
    if (!what.empty()) what += ", ";
    what += text;
  }
};

std::string StateText(const std::string& state) {
  return state.empty() ? "no state is reported" : state;
}

/// Reads `kCount` numbers with slashes between them; false when the text is something else.
template <std::size_t kCount>
bool ReadCounts(const std::string& text, std::size_t (&counts)[kCount]) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i > 0 && (at == end || *at++ != '/')) return false;
    const auto read = std::from_chars(at, end, counts[i]);
    if (read.ec != std::errc()) return false;
    at = read.ptr;
  }
  return at == end;
}

class Assessor {
 public:
  bool IsBlocked(const LogicalDrive& drive) {
    return !IsFineOrMissing(drive.access_blocked, {"no"});
  }

  Health Assess(const Machine& machine) {
    for (const std::string& tool : machine.unpublished) {
      health_.findings.push_back(
          {Severity::kCritical, tool, "its output tells of a controller that was not collected"});
    }
    for (const Controller& controller : machine.controllers) AssessController(controller);
    const auto first_warning =
        std::stable_partition(health_.findings.begin(), health_.findings.end(),
                              [](const Finding& f) { return f.severity == Severity::kCritical; });
    health_.critical = static_cast<std::size_t>(first_warning - health_.findings.begin());
    return std::move(health_);
  }

 private:
  void AssessController(const Controller& controller) {
    where_ = "controller " + controller.number;
    if (!controller.name.empty()) where_ += " (" + controller.name + ")";
    const std::size_t failed_before = health_.failed_devices;
    const std::size_t degraded_before = health_.degraded_drives;
    const std::size_t rebuilds_before = health_.rebuilds;
    // The controller's own finding stands before those of its parts, and looks at them.
    const auto place = static_cast<std::ptrdiff_t>(health_.findings.size());
    for (const LogicalDrive& drive : controller.logical_drives) AssessDrive(drive);
    for (const auto& [drive, count] : controller.stray_bad_stripes) {
      ++health_.drives_with_bad_stripes;
      Find({Severity::kWarning, count + " bad stripes"}, ", logical drive " + drive);
    }
    for (const Device& device : controller.devices) AssessDevice(device);
    for (const Device& counters : controller.stray_counters) AssessCounters(counters);
    std::set<std::string> absent_before;
    for (const DriveGroup& group : controller.groups) {
      for (const std::string& absent : group.absent_places) {
        if (!absent_before.insert(absent).second) continue;
        ++health_.failed_devices;
        Find({Severity::kCritical, "missing: in a stripe order, but not among the devices"},
             ", device " + absent);
      }
    }
    const Wrongs own =
        AssessOwn(controller, health_.failed_devices - failed_before,
                  health_.degraded_drives - degraded_before, health_.rebuilds - rebuilds_before);
    if (own.severity != Severity::kFine) {
      health_.findings.insert(health_.findings.begin() + place, {own.severity, where_, own.what});
    }
  }

  /// The numbers are those of the controller's parts that were found to be so.
  Wrongs AssessOwn(const Controller& controller, std::size_t failed, std::size_t degraded,
                   std::size_t rebuilding) {
    Wrongs wrongs;
    // A controller is okay in the words in which a drive is; kelvcmd's report no state.
    if (!controller.status.empty()) {
      wrongs.Add(JudgeLogicalDrive(controller.status), controller.status);
    }
    if (controller.shares_number) {
      wrongs.Add(Severity::kWarning,
                 "has the number of another controller, which its parts are "
                 "shown with");
    }
    AddCounts(controller, failed, degraded, wrongs);
    const bool is_active = !IsFineOrMissing(controller.operation_active, {"no"});
    const bool goes_on = is_active || IsOneOf(controller.operation_status, {"in progress"});
    if (IsRebuild(controller.operation) && goes_on) {
      if (rebuilding == 0) ++health_.rebuilds;
      wrongs.Add(Severity::kWarning, controller.DescribeOperation());
    } else if (!controller.DescribeOperation().empty() &&
               !IsOneOf(controller.operation_status, {"successful", "in progress"})) {
      wrongs.Add(Severity::kWarning, controller.DescribeOperation());
    }
    if (!IsFineOrMissing(controller.battery_status,
                         {"okay", "optimal", "charging", "not installed", "not present"})) {
      wrongs.Add(Severity::kWarning, "battery: " + controller.battery_status);
    }
    if (!IsFineOrMissing(controller.battery_over_temperature, {"no"})) {
      wrongs.Add(Severity::kWarning,
                 "battery over temperature: " + controller.battery_over_temperature);
    }
    return wrongs;
  }

  /// Counts say more than the lists do when something does not answer any more.
  void AddCounts(const Controller& controller, std::size_t failed, std::size_t degraded,
                 Wrongs& wrongs) {
    std::size_t defunct[1] = {};
    if (!controller.defunct_drives.empty() && !ReadCounts(controller.defunct_drives, defunct)) {
      wrongs.Add(Severity::kWarning, "defunct disk drive count: " + controller.defunct_drives);
    } else if (defunct[0] > failed) {
      health_.failed_devices += defunct[0] - failed;
      wrongs.Add(Severity::kCritical, controller.defunct_drives + " defunct disk drives, " +
                                          std::to_string(failed) + " of them listed");
    }
    std::size_t drives[3] = {};
    const std::string counts = "logical drives/offline/critical: " + controller.drive_counts;
    if (!controller.drive_counts.empty() && !ReadCounts(controller.drive_counts, drives)) {
      wrongs.Add(Severity::kWarning, counts);
    } else if (const std::size_t lost = drives[1] + drives[2]; lost > degraded) {
      health_.degraded_drives += lost - degraded;
      wrongs.Add(Severity::kCritical, counts + ", " + std::to_string(degraded) + " of them listed");
    }
  }

  void AssessDrive(const LogicalDrive& drive) {
    Wrongs wrongs;
    const Severity severity = JudgeLogicalDrive(drive.state);
    wrongs.Add(severity, StateText(drive.state));
    if (severity == Severity::kCritical) ++health_.degraded_drives;
    if (IsRebuild(drive.state)) ++health_.rebuilds;
    if (!drive.bad_stripes.empty()) {
      ++health_.drives_with_bad_stripes;
      wrongs.Add(Severity::kWarning, drive.bad_stripes + " bad stripes");
    }
    if (IsBlocked(drive)) {
      wrongs.Add(Severity::kWarning, "access blocked: " + drive.access_blocked);
    }
    Find(wrongs, ", logical drive " + drive.number);
  }

  void AssessDevice(const Device& device) {
    Wrongs wrongs;
    const Severity severity = JudgeDevice(device.state);
    wrongs.Add(severity, StateText(device.state));
    if (severity == Severity::kCritical) ++health_.failed_devices;
    if (IsRebuild(device.state)) ++health_.rebuilds;
    const bool flagged = PredictsFailure(device);
    if (flagged) wrongs.Add(Severity::kWarning, "PFA: " + device.predicts_failure);
    AddCounters(device, flagged, wrongs);
    Find(wrongs, ", device " + device.place);
  }

  void AssessCounters(const Device& counters) {
    Wrongs wrongs;
    AddCounters(counters, false, wrongs);
    Find(wrongs, ", device " + counters.place);
  }

  /// Of the counters only that of predicted failures asks for attention; the others say what was.
  void AddCounters(const Device& device, bool flagged, Wrongs& wrongs) {
    for (const auto& [name, count] : device.counters) {
      if (name != "PFA") continue;
      if (!flagged) wrongs.Add(Severity::kWarning, "PFA counter: " + count);
      flagged = true;
    }
    if (flagged) ++health_.predicted_failures;
  }

  void Find(const Wrongs& wrongs, const std::string& part) {
    if (wrongs.severity != Severity::kFine) {
      health_.findings.push_back({wrongs.severity, where_ + part, wrongs.what});
    }
  }

  Health health_;
  std::string where_;  // the controller
};

Severity Judge(const std::string& state, Words fine) {
  if (IsOneOf(state, fine)) return Severity::kFine;
  const bool is_lost =
      HoldsOneOf(state, {"defunct", "fail", "missing", "offline", "dead", "critical", "degraded",
                         "bad", "lost", "removed", "absent", "not present", "unavailable",
                         "no response", "not respond", "no longer"});
  return is_lost ? Severity::kCritical : Severity::kWarning;
}

}  // namespace

Severity JudgeDevice(const std::string& state) {
  return Judge(state,
               {"online", "online (onl)", "ready", "ready (rdy)", "hot spare", "hot spare (hsp)",
                "global hot spare", "dedicated hot spare", "standby hot spare"});
}

Severity JudgeLogicalDrive(const std::string& state) {
  return Judge(state, {"okay", "okay (oky)", "optimal"});
}

bool PredictsFailure(const Device& device) {
  return !IsFineOrMissing(device.predicts_failure, {"no"});
}

bool IsBlocked(const LogicalDrive& drive) { return !IsFineOrMissing(drive.access_blocked, {"no"}); }

Health Assess(const Machine& machine) { return Assessor().Assess(machine); }
