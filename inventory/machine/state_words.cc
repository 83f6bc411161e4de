#include "inventory/machine/state_words.h"

#include <algorithm>
#include <initializer_list>
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

Severity Judge(const std::string& state, Words fine) {
  if (IsOneOf(state, fine)) return Severity::kFine;
  const bool is_lost =
      HoldsOneOf(state, {"defunct", "fail", "missing", "offline", "dead", "critical", "degraded",
                         "bad", "lost", "removed", "absent", "not present", "unavailable",
                         "no response", "not respond", "no longer"});
  return is_lost ? Severity::kCritical : Severity::kWarning;
}

/// Of what may be missing: "" is fine, and nothing is critical.
Severity JudgeOptional(const std::string& state, Words fine) {
  return state.empty() || IsOneOf(state, fine) ? Severity::kFine : Severity::kWarning;
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

Severity JudgeController(const std::string& status) {
  return status.empty() ? Severity::kFine : JudgeLogicalDrive(status);
}

Severity JudgeBattery(const std::string& status) {
  return JudgeOptional(status, {"okay", "optimal", "charging", "not installed", "not present"});
}

Severity JudgeFlag(const std::string& flag) { return JudgeOptional(flag, {"no"}); }

Severity JudgeOperation(const Controller& controller) {
  if (IsRebuilding(controller)) return Severity::kWarning;
  const bool is_none = controller.DescribeOperation().empty();
  const bool is_fine =
      is_none || IsOneOf(controller.operation_status, {"successful", "in progress"});
  return is_fine ? Severity::kFine : Severity::kWarning;
}

bool IsRebuild(const std::string& text) { return HoldsOneOf(text, {"rebuild", "re-build"}); }

bool IsRebuilding(const Controller& controller) {
  const bool goes_on = JudgeFlag(controller.operation_active) != Severity::kFine ||
                       IsOneOf(controller.operation_status, {"in progress"});
  return goes_on && IsRebuild(controller.operation);
}

bool PredictsFailure(const Device& device) {
  return JudgeFlag(device.predicts_failure) != Severity::kFine;
}

bool IsBlocked(const LogicalDrive& drive) {
  return JudgeFlag(drive.access_blocked) != Severity::kFine;
}
