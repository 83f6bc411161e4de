#include "inventory/machine/severity.h"

const char* NameOf(Severity severity) {
  static constexpr const char* kNames[] = {"fine", "warning", "critical"};
  return kNames[static_cast<int>(severity)];
}
