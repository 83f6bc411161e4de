#include "inventory/machine/wording.h"

#include <algorithm>

std::string CountAttention(const Machine& machine) {
  const std::size_t count = machine.findings.size();
  return std::to_string(count) + (count == 1 ? " needs attention" : " need attention");
}

Attention DescribeAttention(const Report& report, const Machine& machine) {
  Attention attention = {"nothing needs attention", Severity::kFine};
  if (!machine.findings.empty()) {
    attention = {CountAttention(machine), machine.findings.front().severity};
  } else if (machine.controllers.empty()) {
    attention = {"no controller was found", Severity::kWarning};
  }
  if (std::any_of(report.problems.begin(), report.problems.end(), IsLoss)) {
    attention.text += "; not all was collected";
    attention.severity = std::max(attention.severity, Severity::kWarning);
  }
  return attention;
}

std::string DescribeRaidLevel(const Text& level) {
  if (!level) return "";
  return IsDigits(*level) ? "RAID " + *level : *level;
}

std::string DescribeRoom(const std::optional<Size>& size) {
  const std::string text = size ? DescribeSize(*size) : "";
  return text == "0 MB" ? "" : text;
}

std::string DescribeEntries(std::size_t count, std::size_t shown) {
  const std::string all = std::to_string(count) + (count == 1 ? " entry" : " entries");
  return count > shown ? all + ", the last " + std::to_string(shown) : all;
}
