#include "inventory/print/check_verdict.h"

namespace {

ReasonCode ReasonOf(ChangeCode code) {
  switch (code) {
    case ChangeCode::kGone:
      return ReasonCode::kGone;
    case ChangeCode::kNew:
      return ReasonCode::kNew;
    default:
      return ReasonCode::kReplaced;
  }
}

/// What is not as expected, critical or not.
std::vector<Finding> FindUnexpected(const Comparison& expected, Severity severity) {
  std::vector<Finding> findings;
  for (const Change& change : expected.changes) {
    if (SeverityOf(change.code) != severity) continue;
    Finding& finding = findings.emplace_back();
    finding.where = change.where;
    finding.Add(ReasonOf(change.code), severity, change.what);
  }
  return findings;
}

/// Adds the findings behind those that are as bad. Returns how many are critical.
std::size_t AddUnexpected(const Comparison& expected, CheckVerdict& verdict) {
  const auto add = [&](Severity severity, std::size_t position) {
    const std::vector<Finding> found = FindUnexpected(expected, severity);
    verdict.findings.insert(verdict.findings.begin() + static_cast<std::ptrdiff_t>(position),
                            found.begin(), found.end());
    return found.size();
  };
  const std::size_t gone = add(Severity::kCritical, verdict.critical);
  verdict.critical += gone;
  add(Severity::kWarning, verdict.findings.size());
  return gone;
}

}  // namespace

CheckVerdict JudgeCheck(const Machine& machine, const Comparison* expected,
                        const std::vector<Problem>& problems) {
  CheckVerdict verdict;
  verdict.findings = machine.findings;
  verdict.critical = machine.CountCritical();
  const std::size_t gone = expected == nullptr ? 0 : AddUnexpected(*expected, verdict);
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
  // Where the last ones are known to have gone, that is what the machine is like.
  if (machine.controllers.empty() && gone == 0)
    verdict.unknowns.emplace_back("no controller was found");

  if (!verdict.unknowns.empty() || (blind > 0 && verdict.critical == 0)) {
    verdict.status = kCheckUnknown;
  } else if (verdict.critical > 0) {
    verdict.status = kCheckCritical;
  } else if (!verdict.findings.empty()) {
    verdict.status = kCheckWarning;
  }
  return verdict;
}
