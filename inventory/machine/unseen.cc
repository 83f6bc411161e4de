#include "inventory/machine/unseen.h"

namespace {

bool IsOfManagerLog(ProblemKind kind) {
  return kind == ProblemKind::kLogCut || kind == ProblemKind::kLogUnreadable;
}

}  // namespace

Unseen::Unseen(const Machine& machine, const std::vector<Problem>& problems) {
  for (const Problem& problem : problems) {
    if (!IsLoss(problem) || problem.kind == ProblemKind::kUnknownClass) continue;
    if (IsOfManagerLog(problem.kind)) {
      lacks_log_ = true;
      continue;
    }
    lacking_.Add(problem);
    if (problem.is_blind || problem.kind == ProblemKind::kPluginFailed) hidden_.Add(problem);
  }
  for (const ToolNumber& tool : machine.unpublished) {
    hidden_.controllers.insert(tool.Describe());
    lacking_.controllers.insert(tool.Describe());
  }
}

void Unseen::Scope::Add(const Problem& problem) {
  if (problem.tool.empty()) {
    all = true;
  } else if (problem.controller == 0) {
    tools.insert(problem.tool);
  } else {
    controllers.insert(ToolNumber{problem.tool, problem.controller}.Describe());
  }
}

bool Unseen::Scope::Has(const std::optional<ToolNumber>& tool) const {
  if (all) return true;
  if (!tool) return !tools.empty() || !controllers.empty();
  return tools.contains(tool->tool) || controllers.contains(tool->Describe());
}
