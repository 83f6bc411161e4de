#ifndef INVENTORY_MACHINE_FINDING_H_
#define INVENTORY_MACHINE_FINDING_H_

#include <string>

enum class Severity { kFine, kWarning, kCritical };

/// Something that needs attention: where it is, and all that is the matter with it.
struct Finding {
  Severity severity = Severity::kFine;
  std::string where;
  std::string what;

  /// Adds what is the matter; what is fine is none.
  void Add(Severity severity_of_reason, const std::string& reason);
};

#endif  // INVENTORY_MACHINE_FINDING_H_
