#ifndef INVENTORY_PRINT_CHECK_VERDICT_H_
#define INVENTORY_PRINT_CHECK_VERDICT_H_

#include <cstddef>
#include <string>
#include <vector>

#include "inventory/base/problem.h"
#include "inventory/machine/compare.h"
#include "inventory/machine/machine.h"

/// How a check ends, as monitoring systems read the exit status of their plug-ins.
enum CheckStatus : int {
  kCheckOk = 0,
  kCheckWarning = 1,
  kCheckCritical = 2,
  kCheckUnknown = 3,
};

/// A check's status and what led to it.
struct CheckVerdict {
  CheckStatus status = kCheckOk;
  std::vector<std::string> unknowns;  ///< Why nothing that was found can be relied on.
  std::vector<Finding> findings;      ///< The machine's, what is not as expected, then a warning
                                      ///< for each problem;
                                      ///< what is not known stands before other warnings.
  std::size_t critical = 0;           ///< How many of the findings, the first ones.
};

/// Unknown when there is no controller, and nothing is known to be gone, or the collection threw,
/// whatever was found; and when all of a tool or of a controller was not seen, unless something
/// critical was found. Where the machine is expected to be as it was (`expected`, or null), what is
/// gone is critical, what is new or replaced a warning.
CheckVerdict JudgeCheck(const Machine& machine, const Comparison* expected,
                        const std::vector<Problem>& problems);

#endif  // INVENTORY_PRINT_CHECK_VERDICT_H_
