#include "inventory/machine/finding.h"

#include <algorithm>

const char* NameOf(ReasonCode code) {
  static constexpr const char* kNames[] = {
      "device_failed",
      "device_missing",
      "drive_degraded",
      "controller_failed",
      "state_not_fine",
      "rebuild",
      "operation",
      "predicted_failure",
      "bad_stripes",
      "access_blocked",
      "battery",
      "counts_differ",
      "label_missing",
      "number_shared",
      "unreadable",
      "gone",
      "new",
      "replaced",
  };
  return kNames[static_cast<int>(code)];
}

void Finding::Add(ReasonCode code, Severity severity_of_reason, const std::string& reason) {
  if (severity_of_reason == Severity::kFine) return;
  severity = std::max(severity, severity_of_reason);
  reasons.push_back({code, severity_of_reason, reason});
}

std::string Finding::What() const {
  std::string what;
  for (const Reason& reason : reasons) what.append(what.empty() ? "" : ", ").append(reason.text);
  return what;
}
