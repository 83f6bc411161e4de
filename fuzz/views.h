#ifndef FUZZ_VIEWS_H_
#define FUZZ_VIEWS_H_

#include <memory>

#include "inventory/base/report.h"
#include "inventory/machine/compare.h"
#include "inventory/machine/machine.h"
#include "inventory/runs/recording.h"
#include "standin/repository.h"

/// What a collection comes to.
struct Collected {
  std::unique_ptr<standin::Repository> repository;
  std::unique_ptr<Report> report;
  Machine machine;
};

/// Does a recorded collection again, as the command does, with the plug-in's own code in this
/// process: what it throws over is refused, anything else that it throws is a violation.
Collected CollectAgain(const Recording& recording);

/// Writes every view and holds what is to be expected of each.
void ExpectGoodViews(const Report& report, const Machine& machine,
                     const Comparison* comparison = nullptr);

/// Expects of a machine that writing it as a document and reading that again gives the same. Where
/// parts cannot be told from each other, reading it is enough.
void ExpectReadBack(const Machine& machine);

#endif  // FUZZ_VIEWS_H_
