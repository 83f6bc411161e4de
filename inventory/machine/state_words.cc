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

Severity Judge(const Text& state, Words fine) {
  if (!state) return Severity::kWarning;
  if (IsOneOf(*state, fine)) return Severity::kFine;
  const bool is_lost =
      HoldsOneOf(*state, {"defunct", "fail", "missing", "offline", "dead", "critical", "degraded",
                          "bad", "lost", "removed", "absent", "not present", "unavailable",
                          "no response", "not respond", "no longer"});
  return is_lost ? Severity::kCritical : Severity::kWarning;
}

/// Of what may be missing: none is fine, and nothing is critical.
Severity JudgeOptional(const Text& state, Words fine) {
  return !state || IsOneOf(*state, fine) ? Severity::kFine : Severity::kWarning;
}

}  // namespace

Severity JudgeDevice(const Text& state) {
  return Judge(state,
               {"online", "online (onl)", "ready", "ready (rdy)", "hot spare", "hot spare (hsp)",
                "global hot spare", "dedicated hot spare", "standby hot spare"});
}

Severity JudgeLogicalDrive(const Text& state) {
  return Judge(state, {"okay", "okay (oky)", "optimal"});
}

Severity JudgeController(const Text& state) {
  return state ? JudgeLogicalDrive(state) : Severity::kFine;
}

Severity JudgeBattery(const Text& state) {
  return JudgeOptional(state, {"okay", "optimal", "charging", "not installed", "not present"});
}

Severity JudgeFlag(const Flag& flag) { return JudgeOptional(flag.text, {"no"}); }

Severity JudgeOperation(const Operation& operation) {
  if (IsRebuilding(operation)) return Severity::kWarning;
  const bool is_fine =
      !operation.IsReported() ||
      (operation.status && IsOneOf(*operation.status, {"successful", "in progress"}));
  return is_fine ? Severity::kFine : Severity::kWarning;
}

Severity JudgeEvent(const Text& severity) {
  if (severity == "ERR") return Severity::kCritical;
  return severity == "WRN" ? Severity::kWarning : Severity::kFine;
}

bool IsRebuild(const Text& text) { return text && HoldsOneOf(*text, {"rebuild", "re-build"}); }

bool IsHotSpare(const State& state) {
  return state.text && state.judgement == Severity::kFine && HoldsOneOf(*state.text, {"hot spare"});
}

bool IsRebuilding(const Operation& operation) {
  const bool goes_on = JudgeFlag(operation.is_active) != Severity::kFine ||
                       (operation.status && IsOneOf(*operation.status, {"in progress"}));
  return goes_on && IsRebuild(operation.name);
}
