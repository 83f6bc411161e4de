#ifndef INVENTORY_MACHINE_SEVERITY_H_
#define INVENTORY_MACHINE_SEVERITY_H_

/// How bad something is; the larger, the worse.
enum class Severity { kFine, kWarning, kCritical };

/// "fine", "warning", "critical": as documents name it.
const char* NameOf(Severity severity);

#endif  // INVENTORY_MACHINE_SEVERITY_H_
