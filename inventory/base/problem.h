#ifndef INVENTORY_BASE_PROBLEM_H_
#define INVENTORY_BASE_PROBLEM_H_

#include <string>

/// Something that was not collected, for a person: what it is, and why.
struct Problem {
  enum class Extent {
    kRuns,        ///< Some runs of a tool.
    kTool,        ///< All runs of a tool that is there.
    kAbsentTool,  ///< A tool that is not there: most machines lack two of the three.
    kCollection,  ///< The plug-in or the host threw.
  };

  std::string what;
  std::string why;
  Extent extent = Extent::kRuns;

  bool operator==(const Problem&) const = default;
};

#endif  // INVENTORY_BASE_PROBLEM_H_
