#ifndef INVENTORY_MACHINE_UNSEEN_H_
#define INVENTORY_MACHINE_UNSEEN_H_

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "inventory/base/problem.h"
#include "inventory/machine/machine.h"

/// Of which controllers a collection did not get to see all: what is missing there may be there
/// all the same.
class Unseen {
 public:
  Unseen(const Machine& machine, const std::vector<Problem>& problems);

  /// Whether the controller, or any of its parts, may have stayed unseen.
  bool MayHide(const Controller& controller) const { return hidden_.Has(controller.tool); }
  /// Whether any value of it or its parts, or entries of its logs, may have.
  bool MayLack(const Controller& controller) const { return lacking_.Has(controller.tool); }
  /// Whether entries of the manager's log may have: it was not read whole, or the collection as a
  /// whole came to no good end.
  bool MayLackManagerLog() const { return lacking_.all || lacks_log_; }

 private:
  struct Scope {
    bool all = false;
    std::unordered_set<std::string> tools;        // "kelvcmd"
    std::unordered_set<std::string> controllers;  // "kelvcmd 1"

    void Add(const Problem& problem);
    /// A controller of which nobody knows whose it is may be that of any tool.
    bool Has(const std::optional<ToolNumber>& tool) const;
  };

  Scope hidden_;
  Scope lacking_;
  bool lacks_log_ = false;
};

#endif  // INVENTORY_MACHINE_UNSEEN_H_
