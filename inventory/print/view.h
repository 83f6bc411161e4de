#ifndef INVENTORY_PRINT_VIEW_H_
#define INVENTORY_PRINT_VIEW_H_

#include "inventory/base/report.h"
#include "inventory/base/sink.h"
#include "inventory/machine/compare.h"
#include "inventory/machine/machine.h"
#include "inventory/print/display.h"

/// Which runs of the tools a document lists.
enum class RunsShown { kNone, kFailed, kAll };

/// All that a view can show.
struct ViewInput {
  const Report& report;
  const Machine& machine;                  ///< Of the report.
  const Comparison* comparison = nullptr;  ///< With an earlier machine, where one is asked for.
};

struct ViewOptions {
  Display display = {};
  bool is_brief = false;    ///< The summary and what needs attention only.
  bool is_verbose = false;  ///< What no parser took, too.
  RunsShown runs = RunsShown::kFailed;
  bool has_instances = true;  ///< Whether a document holds the instances.
  bool is_whole = true;       ///< All classes were asked for, so that the machine is known.
};

/// Writes a view of it. Returns the exit status: the report's, but for a check.
using PrintView = int (*)(const ViewInput& input, const ViewOptions& options, Sink& output);

#endif  // INVENTORY_PRINT_VIEW_H_
