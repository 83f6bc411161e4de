#include "inventory/print/check_verdict.h"

CheckVerdict JudgeCheck(const Machine& machine, const Health& health,
                        const std::vector<Problem>& problems) {
  CheckVerdict verdict;
  verdict.findings = health.findings;
  verdict.critical = health.critical;
  bool is_blind = false;  // to a controller, at least
  for (const Problem& problem : problems) {
    if (!IsLoss(problem)) continue;
    if (problem.kind == ProblemKind::kPluginFailed) {
      verdict.unknowns.push_back(problem.what + ": " + problem.why);
      continue;
    }
    is_blind = is_blind || problem.is_blind;
    verdict.findings.push_back({Severity::kWarning, problem.what, problem.why});
  }
  if (machine.controllers.empty()) verdict.unknowns.emplace_back("no controller was found");

  if (!verdict.unknowns.empty() || (is_blind && verdict.critical == 0)) {
    verdict.status = kCheckUnknown;
  } else if (verdict.critical > 0) {
    verdict.status = kCheckCritical;
  } else if (!verdict.findings.empty()) {
    verdict.status = kCheckWarning;
  }
  return verdict;
}
