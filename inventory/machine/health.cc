#include "inventory/machine/health.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "inventory/machine/state_words.h"
#include "inventory/machine/usual_labels.h"

namespace {

using Kind = Subject::Kind;

std::string StateText(const State& state) { return state.text.value_or("no state is reported"); }

/// What a state that is not fine comes to; `lost` is what one that means loss is called.
ReasonCode CodeOf(const State& state, ReasonCode lost) {
  if (state.judgement == Severity::kCritical) return lost;
  return IsRebuild(state.text) ? ReasonCode::kRebuild : ReasonCode::kStateNotFine;
}

std::string TextOf(const std::optional<Number>& number) { return number ? number->text : ""; }

class ControllerAssessor {
 public:
  ControllerAssessor(Controller& controller, std::size_t index, const UsualLabels& usual)
      : controller_(controller),
        index_(index),
        usual_(usual),
        where_(DescribeController(controller)) {}

  /// The controller's own finding stands before those of its parts, and looks at them.
  std::vector<Finding> Assess() {
    for (std::size_t i = 0; i < controller_.logical_drives.size(); ++i) AssessDrive(i);
    for (std::size_t i = 0; i < controller_.unlisted_drives.size(); ++i) AssessUnlistedDrive(i);
    for (std::size_t i = 0; i < controller_.devices.size(); ++i) AssessDevice(i);
    for (std::size_t i = 0; i < controller_.unlisted_devices.size(); ++i) AssessUnlistedDevice(i);
    for (std::size_t i = 0; i < controller_.missing_places.size(); ++i) AssessMissing(i);
    Finding own = AssessController();
    controller_.verdict = own.severity;
    if (own.severity != Severity::kFine) findings_.insert(findings_.begin(), std::move(own));
    return std::move(findings_);
  }

 private:
  void AssessDrive(std::size_t i) {
    LogicalDrive& drive = controller_.logical_drives[i];
    Finding finding = Part(Kind::kLogicalDrive, i, "logical drive " + TextOf(drive.number));
    drive.state.judgement = JudgeLogicalDrive(drive.state.text);
    finding.Add(CodeOf(drive.state, ReasonCode::kDriveDegraded), drive.state.judgement,
                StateText(drive.state));
    if (drive.state.judgement == Severity::kCritical) ++health_.degraded_drives;
    if (IsRebuild(drive.state.text)) ++health_.rebuilds;
    AddBadStripes(drive.bad_stripes, finding);
    finding.Add(ReasonCode::kAccessBlocked, JudgeFlag(drive.access_blocked),
                "access blocked: " + drive.access_blocked.text.value_or(""));
    drive.verdict = finding.severity;
    Find(std::move(finding));
  }

  void AssessUnlistedDrive(std::size_t i) {
    const UnlistedDrive& drive = controller_.unlisted_drives[i];
    Finding finding = Part(Kind::kUnlistedDrive, i, "logical drive " + TextOf(drive.number));
    AddBadStripes(drive.bad_stripes, finding);
    Find(std::move(finding));
  }

  void AddBadStripes(const std::vector<Number>& counts, Finding& finding) {
    const std::string text = DescribeBadStripes(counts);
    if (text.empty()) return;
    ++health_.drives_with_bad_stripes;
    finding.Add(ReasonCode::kBadStripes, Severity::kWarning, text);
  }

  void AssessDevice(std::size_t i) {
    Device& device = controller_.devices[i];
    Finding finding = Part(Kind::kDevice, i, "device " + device.place.GetText());
    device.state.judgement = JudgeDevice(device.state.text);
    finding.Add(CodeOf(device.state, ReasonCode::kDeviceFailed), device.state.judgement,
                StateText(device.state));
    if (device.state.judgement == Severity::kCritical) ++health_.failed_devices;
    if (IsRebuild(device.state.text)) ++health_.rebuilds;
    bool is_flagged = JudgeFlag(device.predicts_failure) != Severity::kFine;
    if (is_flagged) {
      finding.Add(ReasonCode::kPredictedFailure, Severity::kWarning,
                  "PFA: " + device.predicts_failure.text.value_or(""));
    }
    for (const ErrorCounters& counters : device.counters)
      AddCounters(counters, is_flagged, finding);
    if (is_flagged) ++health_.predicted_failures;
    usual_.Check(controller_, device, finding);
    device.verdict = finding.severity;
    Find(std::move(finding));
  }

  void AssessUnlistedDevice(std::size_t i) {
    const UnlistedDevice& device = controller_.unlisted_devices[i];
    Finding finding = Part(Kind::kUnlistedDevice, i, "device " + device.place.GetText());
    bool is_flagged = false;
    AddCounters(device.counters, is_flagged, finding);
    if (is_flagged) ++health_.predicted_failures;
    Find(std::move(finding));
  }

  /// Of the counters only that of predicted failures asks for attention; the others say what was.
  static void AddCounters(const ErrorCounters& counters, bool& is_flagged, Finding& finding) {
    const std::optional<Number>& count = counters.predicted_failures;
    if (!count || IsZero(*count)) return;
    if (!is_flagged) {
      finding.Add(ReasonCode::kPredictedFailure, Severity::kWarning, "PFA counter: " + count->text);
    }
    is_flagged = true;
  }

  void AssessMissing(std::size_t i) {
    ++health_.failed_devices;
    Finding finding =
        Part(Kind::kMissingDevice, i, "device " + controller_.missing_places[i].GetText());
    finding.Add(ReasonCode::kDeviceMissing, Severity::kCritical,
                "missing: in a stripe order, but not among the devices");
    Find(std::move(finding));
  }

  Finding AssessController() {
    Finding own = {Severity::kFine, {Kind::kController, index_, 0}, where_, {}};
    State& state = controller_.state;
    state.judgement = JudgeController(state.text);
    own.Add(CodeOf(state, ReasonCode::kControllerFailed), state.judgement, StateText(state));
    if (controller_.shares_number) {
      own.Add(ReasonCode::kNumberShared, Severity::kWarning,
              "has the number of another controller, which its parts are shown with");
    }
    AddDefunctDrives(own);
    AddDriveCounts(own);
    AddOperation(own);
    AddBattery(own);
    controller_.health = health_;
    return own;
  }

  // Counts say more than the lists do when something does not answer any more.

  void AddDefunctDrives(Finding& own) {
    const std::optional<Number>& count = controller_.defunct_drives;
    const std::size_t listed = health_.failed_devices;
    if (!count) return;
    if (!count->value) {
      own.Add(ReasonCode::kCountsDiffer, Severity::kWarning,
              "defunct disk drive count: " + count->text);
    } else if (*count->value > listed) {
      health_.failed_devices = *count->value;
      own.Add(ReasonCode::kCountsDiffer, Severity::kCritical,
              count->text + " defunct disk drives, " + std::to_string(listed) + " of them listed");
    }
  }

  void AddDriveCounts(Finding& own) {
    const std::optional<DriveCounts>& counts = controller_.drive_counts;
    if (!counts) return;
    const std::string text = "logical drives/offline/critical: " + counts->text;
    const std::size_t listed = health_.degraded_drives;
    if (!counts->is_read) {
      own.Add(ReasonCode::kCountsDiffer, Severity::kWarning, text);
    } else if (const std::size_t lost = counts->offline + counts->critical; lost > listed) {
      health_.degraded_drives = lost;
      own.Add(ReasonCode::kCountsDiffer, Severity::kCritical,
              text + ", " + std::to_string(listed) + " of them listed");
    }
  }

  void AddOperation(Finding& own) {
    Operation& operation = controller_.operation;
    operation.judgement = JudgeOperation(operation);
    const bool is_rebuilding = IsRebuilding(operation);
    if (is_rebuilding && health_.rebuilds == 0) ++health_.rebuilds;
    own.Add(is_rebuilding ? ReasonCode::kRebuild : ReasonCode::kOperation, operation.judgement,
            operation.Describe());
  }

  void AddBattery(Finding& own) {
    Battery& battery = controller_.battery;
    battery.state.judgement = JudgeBattery(battery.state.text);
    own.Add(ReasonCode::kBattery, battery.state.judgement,
            "battery: " + battery.state.text.value_or(""));
    own.Add(ReasonCode::kBattery, JudgeFlag(battery.over_temperature),
            "battery over temperature: " + battery.over_temperature.text.value_or(""));
  }

  Finding Part(Kind kind, std::size_t i, const std::string& part) const {
    return {Severity::kFine, {kind, index_, i}, where_ + ", " + part, {}};
  }

  void Find(Finding finding) {
    if (finding.severity != Severity::kFine) findings_.push_back(std::move(finding));
  }

  Controller& controller_;
  std::size_t index_;
  const UsualLabels& usual_;
  std::string where_;
  std::vector<Finding> findings_;
  HealthCounts health_;
};

}  // namespace

void Judge(Machine& machine) {
  std::vector<Finding>& findings = machine.findings;
  for (std::size_t i = 0; i < machine.unpublished.size(); ++i) {
    Finding finding = {Severity::kFine, {Kind::kTool, 0, i}, machine.unpublished[i].Describe(), {}};
    finding.Add(ReasonCode::kUnreadable, Severity::kCritical,
                "its output tells of a controller that was not collected");
    findings.push_back(std::move(finding));
  }
  const UsualLabels usual(machine);
  for (std::size_t i = 0; i < machine.controllers.size(); ++i) {
    std::vector<Finding> share = ControllerAssessor(machine.controllers[i], i, usual).Assess();
    std::move(share.begin(), share.end(), std::back_inserter(findings));
  }
  std::stable_partition(findings.begin(), findings.end(), [](const Finding& finding) {
    return finding.severity == Severity::kCritical;
  });
}

std::string DescribeController(const Controller& controller) {
  const std::string where = "controller " + controller.NumberText();
  return controller.name ? where + " (" + *controller.name + ")" : where;
}
