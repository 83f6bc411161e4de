#include "inventory/machine/finding.h"

#include <algorithm>

void Finding::Add(Severity severity_of_reason, const std::string& reason) {
  if (severity_of_reason == Severity::kFine) return;
  severity = std::max(severity, severity_of_reason);
  if (!what.empty()) what += ", ";
  what += reason;
}
