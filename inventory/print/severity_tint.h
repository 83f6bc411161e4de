#ifndef INVENTORY_PRINT_SEVERITY_TINT_H_
#define INVENTORY_PRINT_SEVERITY_TINT_H_

#include "inventory/machine/finding.h"
#include "inventory/print/flow.h"

inline Tint TintOf(Severity severity) {
  switch (severity) {
    case Severity::kFine:
      return Tint::kGood;
    case Severity::kWarning:
      return Tint::kWarning;
    case Severity::kCritical:
      return Tint::kCritical;
  }
  return Tint::kPlain;
}

#endif  // INVENTORY_PRINT_SEVERITY_TINT_H_
