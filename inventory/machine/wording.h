#ifndef INVENTORY_MACHINE_WORDING_H_
#define INVENTORY_MACHINE_WORDING_H_

#include <cstddef>
#include <optional>
#include <string>

#include "inventory/base/report.h"
#include "inventory/machine/machine.h"

// What the views for people say in the same words.

/// How a machine is, in one sentence, and the worst that it says.
struct Attention {
  std::string text;  ///< "8 need attention; not all was collected"
  Severity severity;
};
Attention DescribeAttention(const Report& report, const Machine& machine);

/// "1 needs attention", of the findings.
std::string CountAttention(const Machine& machine);

/// "RAID 5", "Volume"; "" where none is reported.
std::string DescribeRaidLevel(const Text& level);

/// "70006 MB"; "" also for what holds no data, and prints that it has none.
std::string DescribeRoom(const std::optional<Size>& size);

/// "18 entries, the last 5"
std::string DescribeEntries(std::size_t count, std::size_t shown);

#endif  // INVENTORY_MACHINE_WORDING_H_
