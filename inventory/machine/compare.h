#ifndef INVENTORY_MACHINE_COMPARE_H_
#define INVENTORY_MACHINE_COMPARE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inventory/base/problem.h"
#include "inventory/machine/machine.h"

enum class ChangeCode {
  kGone,
  kNew,
  kReplaced,         ///< Another serial number at the same place.
  kMoved,            ///< The same serial number at another place.
  kStateChanged,     ///< A state or a flag in other words.
  kFirmwareChanged,  ///< Any version.
  kCounterGrown,
  kCounterReset,  ///< Smaller than before.
  kLogGrown,      ///< New entries.
  kHostChanged,   ///< The two are of different machines, or the machine has another name.
};

/// "gone", "new", ...: as documents name it.
const char* NameOf(ChangeCode code);

/// What is not as it was.
struct Change {
  ChangeCode code;
  std::optional<Subject> subject;  ///< None: the machine as a whole.
  bool is_of_earlier = false;      ///< Whether the subject's indices are into the earlier machine.
  std::string where;               ///< For a person: "controller 2 (mail), device 1,2".
  std::string what;                ///< For a person: "was replaced: serial number A, now B".
  Text property;                   ///< "state", "firmware", "soft", ..., where there is one.
  Text before;
  Text after;
  std::optional<std::uint64_t> grown_by;
};

struct Comparison {
  std::string since;  ///< RFC 3339, as the earlier document has it; "" when it has none.
  Machine earlier;
  std::vector<Change> changes;
};

#endif  // INVENTORY_MACHINE_COMPARE_H_
