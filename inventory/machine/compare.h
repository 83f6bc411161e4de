#ifndef INVENTORY_MACHINE_COMPARE_H_
#define INVENTORY_MACHINE_COMPARE_H_

#include <cstddef>
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
  kCounterReset,  ///< Smaller than before; also a log with fewer entries.
  kLogGrown,      ///< New entries.
  kHostChanged,   ///< The two are of different machines, or the machine has another name.
};

/// "gone", "new", ...: as documents name it.
const char* NameOf(ChangeCode code);

/// How bad it is where the earlier machine is what is expected. All but parts that are gone, new or
/// replaced is judged by how the machine is, not by how it was, and fine.
Severity SeverityOf(ChangeCode code);

/// What is not as it was.
struct Change {
  ChangeCode code = ChangeCode::kGone;
  std::optional<Subject> subject;  ///< None: the machine as a whole.
  bool is_of_earlier = false;      ///< Whether the subject's indices are into the earlier machine.
  std::string where;               ///< For a person: "controller 2 (mail), device 1,2".
  std::string what;                ///< For a person: "was replaced: serial number A, now B".
  Text property;                   ///< "state", "firmware", "soft", ..., where there is one.
  Text before;
  Text after;
  std::optional<std::uint64_t> grown_by;
};

/// A machine as it was, and what was not collected of it then.
struct EarlierMachine {
  std::string since;  ///< RFC 3339; "" when nobody knows.
  std::string host;
  Machine machine;
  std::vector<Problem> problems = {};
};

struct Comparison {
  std::string since;  ///< RFC 3339, as the earlier document has it; "" when it has none.
  Machine earlier;
  /// Of each earlier controller the index of what it is in the machine that it was compared with.
  std::vector<std::optional<std::size_t>> controllers_now;
  std::vector<Change> changes;
  /// For a person: what was seen at one of the two times only, and may well have been there at the
  /// other: "controller 3", "controller 2 (mail), 1 logical drive, 3 devices".
  std::vector<std::string> not_compared;
};

/// Finds what has changed. Serial numbers say first what is the same, places second. Takes time in
/// proportion to the number of parts.
Comparison Compare(EarlierMachine earlier, const Machine& now, const std::string& host,
                   const std::vector<Problem>& problems);

#endif  // INVENTORY_MACHINE_COMPARE_H_
