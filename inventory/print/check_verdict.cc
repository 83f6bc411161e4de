#include "inventory/print/check_verdict.h"

CheckVerdict JudgeCheck(const Machine& machine, const Health& health,
                        const std::vector<Problem>& problems) {
  CheckVerdict verdict;
  verdict.findings = health.findings;
  verdict.critical = health.critical;
  bool is_tool_lost = false;  // and with it all that it would have told
  for (const Problem& problem : problems) {
    switch (problem.extent) {
      case Problem::Extent::kAbsentTool:
        break;
      case Problem::Extent::kCollection:
        verdict.unknowns.push_back(problem.what + ": " + problem.why);
        break;
      case Problem::Extent::kTool:
        is_tool_lost = true;
        [[fallthrough]];
      case Problem::Extent::kRuns:
        verdict.findings.push_back({Severity::kWarning, problem.what, problem.why});
        break;
    }
  }
  if (machine.controllers.empty()) verdict.unknowns.emplace_back("no controller was found");

  if (!verdict.unknowns.empty() || (is_tool_lost && verdict.critical == 0)) {
    verdict.status = kCheckUnknown;
  } else if (verdict.critical > 0) {
    verdict.status = kCheckCritical;
  } else if (!verdict.findings.empty()) {
    verdict.status = kCheckWarning;
  }
  return verdict;
}
