#include "inventory/machine/usual_labels.h"

namespace {

std::string ToolOf(const Controller& controller) {
  return controller.tool ? controller.tool->tool : "";
}

bool IsUsual(std::size_t count, std::size_t drives) { return count > drives - count; }

void Add(const char* label, Finding& finding) {
  finding.Add(ReasonCode::kLabelMissing, Severity::kWarning,
              std::string("no ") + label + " is reported, unlike of other drives");
}

}  // namespace

UsualLabels::UsualLabels(const Machine& machine) {
  for (const Controller& controller : machine.controllers) {
    Counts& counts = counts_[ToolOf(controller)];
    for (const Device& device : controller.devices) {
      if (!device.IsDrive()) continue;
      ++counts.drives;
      if (device.size) ++counts.sizes;
      if (device.predicts_failure.text) ++counts.predictions;
    }
  }
}

void UsualLabels::Check(const Controller& controller, const Device& device,
                        Finding& finding) const {
  if (!device.IsDrive()) return;
  const Counts& counts = counts_.at(ToolOf(controller));
  if (!device.size && IsUsual(counts.sizes, counts.drives)) Add("size", finding);
  if (!device.predicts_failure.text && IsUsual(counts.predictions, counts.drives)) {
    Add("PFA", finding);
  }
}
