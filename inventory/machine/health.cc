#include "inventory/machine/health.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "inventory/machine/state_words.h"

namespace {

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

std::string StateText(const std::string& state) {
  return state.empty() ? "no state is reported" : state;
}

/// What health depends on and most drives of a tool have, each a part of its name.
class UsualLabels {
 public:
  explicit UsualLabels(const Machine& machine) {
    for (const Controller& controller : machine.controllers) {
      for (const Device& device : controller.devices) {
        if (!IsDrive(device)) continue;
        Counts& counts = counts_[ToolOf(controller)];
        ++counts.drives;
        if (device.has_size) ++counts.sizes;
        if (!device.predicts_failure.empty()) ++counts.predictions;
      }
    }
  }

  /// A drive whose line is missing, or spelled in a way that no parser knows, is not judged by it.
  void Check(const Controller& controller, const Device& device, Finding& finding) const {
    const auto found = counts_.find(ToolOf(controller));
    if (!IsDrive(device) || found == counts_.end()) return;
    const Counts& counts = found->second;
    if (!device.has_size && IsUsual(counts.sizes, counts)) Add("size", finding);
    if (device.predicts_failure.empty() && IsUsual(counts.predictions, counts)) Add("PFA", finding);
  }

 private:
  struct Counts {
    std::size_t drives = 0;
    std::size_t sizes = 0;
    std::size_t predictions = 0;
  };

  static bool IsDrive(const Device& device) { return device.type.starts_with("Hard d"); }
  static bool IsUsual(std::size_t count, const Counts& counts) {
    return count > counts.drives - count;
  }
  static std::string ToolOf(const Controller& controller) {
    return controller.tool.substr(0, controller.tool.find(' '));
  }
  static void Add(const char* label, Finding& finding) {
    finding.Add(Severity::kWarning,
                std::string("no ") + label + " is reported, unlike of other drives");
  }

  std::map<std::string, Counts> counts_;  // by tool
};

class ControllerAssessor {
 public:
  ControllerAssessor(const Controller& controller, const UsualLabels& usual)
      : controller_(controller), usual_(usual), where_("controller " + controller.number) {
    if (!controller.name.empty()) where_ += " (" + controller.name + ")";
  }

  Health Assess() {
    for (const LogicalDrive& drive : controller_.logical_drives) AssessDrive(drive);
    AssessStrayBadStripes();
    for (const Device& device : controller_.devices) AssessDevice(device);
    for (const Device& counters : controller_.stray_counters) AssessStrayCounters(counters);
    AssessAbsentPlaces();
    // The controller's own finding stands before those of its parts, and looks at them.
    Finding own = {Severity::kFine, where_, ""};
    AssessController(own);
    Find(std::move(own), health_.findings.begin());
    return std::move(health_);
  }

 private:
  void AssessDrive(const LogicalDrive& drive) {
    Finding finding = Part("logical drive " + drive.number);
    const Severity severity = JudgeLogicalDrive(drive.state);
    finding.Add(severity, StateText(drive.state));
    if (severity == Severity::kCritical) ++health_.degraded_drives;
    if (IsRebuild(drive.state)) ++health_.rebuilds;
    if (!drive.bad_stripes.empty()) AddBadStripes(drive.bad_stripes, finding);
    finding.Add(JudgeFlag(drive.access_blocked), "access blocked: " + drive.access_blocked);
    Find(std::move(finding));
  }

  void AssessStrayBadStripes() {
    for (const auto& [drive, count] : controller_.stray_bad_stripes) {
      Finding finding = Part("logical drive " + drive);
      AddBadStripes(count, finding);
      Find(std::move(finding));
    }
  }

  void AddBadStripes(const std::string& count, Finding& finding) {
    ++health_.drives_with_bad_stripes;
    finding.Add(Severity::kWarning, count + " bad stripes");
  }

  void AssessDevice(const Device& device) {
    Finding finding = Part("device " + device.place);
    const Severity severity = JudgeDevice(device.state);
    finding.Add(severity, StateText(device.state));
    if (severity == Severity::kCritical) ++health_.failed_devices;
    if (IsRebuild(device.state)) ++health_.rebuilds;
    const bool is_flagged = PredictsFailure(device);
    if (is_flagged) finding.Add(Severity::kWarning, "PFA: " + device.predicts_failure);
    AddCounters(device, is_flagged, finding);
    usual_.Check(controller_, device, finding);
    Find(std::move(finding));
  }

  void AssessStrayCounters(const Device& counters) {
    Finding finding = Part("device " + counters.place);
    AddCounters(counters, false, finding);
    Find(std::move(finding));
  }

  /// Of the counters only that of predicted failures asks for attention; the others say what was.
  void AddCounters(const Device& device, bool is_flagged, Finding& finding) {
    for (const auto& [name, count] : device.counters) {
      if (name != "PFA") continue;
      if (!is_flagged) finding.Add(Severity::kWarning, "PFA counter: " + count);
      is_flagged = true;
    }
    if (is_flagged) ++health_.predicted_failures;
  }

  void AssessAbsentPlaces() {
    std::set<std::string> absent_before;
    for (const DriveGroup& group : controller_.groups) {
      for (const std::string& absent : group.absent_places) {
        if (!absent_before.insert(absent).second) continue;
        ++health_.failed_devices;
        Finding finding = Part("device " + absent);
        finding.Add(Severity::kCritical, "missing: in a stripe order, but not among the devices");
        Find(std::move(finding));
      }
    }
  }

  void AssessController(Finding& own) {
    own.Add(JudgeController(controller_.status), controller_.status);
    if (controller_.shares_number) {
      own.Add(Severity::kWarning,
              "has the number of another controller, which its parts are shown with");
    }
    AddDefunctDrives(own);
    AddDriveCounts(own);
    if (IsRebuilding(controller_) && health_.rebuilds == 0) ++health_.rebuilds;
    own.Add(JudgeOperation(controller_), controller_.DescribeOperation());
    own.Add(JudgeBattery(controller_.battery_status), "battery: " + controller_.battery_status);
    own.Add(JudgeFlag(controller_.battery_over_temperature),
            "battery over temperature: " + controller_.battery_over_temperature);
  }

  // Counts say more than the lists do when something does not answer any more.

  void AddDefunctDrives(Finding& own) {
    const std::string& text = controller_.defunct_drives;
    std::size_t defunct[1] = {};
    if (text.empty()) return;
    if (!ReadCounts(text, defunct)) {
      own.Add(Severity::kWarning, "defunct disk drive count: " + text);
    } else if (const std::size_t listed = health_.failed_devices; defunct[0] > listed) {
      health_.failed_devices = defunct[0];
      own.Add(Severity::kCritical,
              text + " defunct disk drives, " + std::to_string(listed) + " of them listed");
    }
  }

  void AddDriveCounts(Finding& own) {
    const std::string text = "logical drives/offline/critical: " + controller_.drive_counts;
    std::size_t drives[3] = {};
    if (controller_.drive_counts.empty()) return;
    if (!ReadCounts(controller_.drive_counts, drives)) {
      own.Add(Severity::kWarning, text);
      return;
    }
    const std::size_t listed = health_.degraded_drives;
    if (const std::size_t lost = drives[1] + drives[2]; lost > listed) {
      health_.degraded_drives = lost;
      own.Add(Severity::kCritical, text + ", " + std::to_string(listed) + " of them listed");
    }
  }

  Finding Part(const std::string& part) const {
    return {Severity::kFine, where_ + ", " + part, ""};
  }

  void Find(Finding finding, std::vector<Finding>::iterator before) {
    if (finding.severity != Severity::kFine) health_.findings.insert(before, std::move(finding));
  }
  void Find(Finding finding) { Find(std::move(finding), health_.findings.end()); }

  const Controller& controller_;
  const UsualLabels& usual_;
  std::string where_;
  Health health_;  // the controller's share
};

void Append(Health share, Health& health) {
  std::move(share.findings.begin(), share.findings.end(), std::back_inserter(health.findings));
  health.failed_devices += share.failed_devices;
  health.degraded_drives += share.degraded_drives;
  health.predicted_failures += share.predicted_failures;
  health.drives_with_bad_stripes += share.drives_with_bad_stripes;
  health.rebuilds += share.rebuilds;
}

}  // namespace

Health Assess(const Machine& machine) {
  Health health;
  for (const std::string& tool : machine.unpublished) {
    health.findings.push_back(
        {Severity::kCritical, tool, "its output tells of a controller that was not collected"});
  }
  const UsualLabels usual(machine);
  for (const Controller& controller : machine.controllers) {
    Append(ControllerAssessor(controller, usual).Assess(), health);
  }
  const auto first_warning =
      std::stable_partition(health.findings.begin(), health.findings.end(),
                            [](const Finding& f) { return f.severity == Severity::kCritical; });
  health.critical = static_cast<std::size_t>(first_warning - health.findings.begin());
  return health;
}
