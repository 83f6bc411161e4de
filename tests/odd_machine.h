#ifndef TESTS_ODD_MACHINE_H_
#define TESTS_ODD_MACHINE_H_

#include "tests/instance_lines.h"

/// All that the layout has a rule for and the sample machine does not show.
inline void CommitOddMachine(standin::Repository& repository) {
  CommitFile(repository, "odd_values/instances.txt");
}

#endif  // TESTS_ODD_MACHINE_H_
