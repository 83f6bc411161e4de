#include "inventory/print/check_verdict.h"

CheckVerdict JudgeCheck(const Machine& machine, const std::vector<Problem>& problems) {
  CheckVerdict verdict;
  verdict.findings = machine.findings;
  verdict.critical = machine.CountCritical();
  std::size_t blind = 0;  // problems that hide all of a controller, at least
  for (const Problem& problem : problems) {
    if (!IsLoss(problem)) continue;
    if (problem.kind == ProblemKind::kPluginFailed) {
      verdict.unknowns.push_back(problem.what + ": " + problem.why);
      continue;
    }
    Finding finding;
    finding.where = problem.what;
    finding.Add(ReasonCode::kUnreadable, Severity::kWarning, problem.why);
    if (!problem.is_blind) {
      verdict.findings.push_back(finding);
      continue;
    }
    // What is not known goes before what is a warning: the line does not name all of them.
    verdict.findings.insert(
        verdict.findings.begin() + static_cast<std::ptrdiff_t>(verdict.critical + blind), finding);
    ++blind;
  }
  if (machine.controllers.empty()) verdict.unknowns.emplace_back("no controller was found");

  if (!verdict.unknowns.empty() || (blind > 0 && verdict.critical == 0)) {
    verdict.status = kCheckUnknown;
  } else if (verdict.critical > 0) {
    verdict.status = kCheckCritical;
  } else if (!verdict.findings.empty()) {
    verdict.status = kCheckWarning;
  }
  return verdict;
}
