#ifndef INVENTORY_MACHINE_USUAL_LABELS_H_
#define INVENTORY_MACHINE_USUAL_LABELS_H_

#include <cstddef>
#include <map>
#include <string>

#include "inventory/machine/machine.h"

/// What health depends on and most drives of a tool have, each a part of its name.
class UsualLabels {
 public:
  explicit UsualLabels(const Machine& machine);

  /// A drive whose line is missing, or spelled in a way that no parser knows, is not judged by it:
  /// that is a finding of its own.
  void Check(const Controller& controller, const Device& device, Finding& finding) const;

 private:
  struct Counts {
    std::size_t drives = 0;
    std::size_t sizes = 0;
    std::size_t predictions = 0;
  };

  std::map<std::string, Counts> counts_;  // by tool
};

#endif  // INVENTORY_MACHINE_USUAL_LABELS_H_
