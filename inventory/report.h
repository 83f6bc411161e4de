#ifndef INVENTORY_REPORT_H_
#define INVENTORY_REPORT_H_

#include <cstddef>
#include <string>
#include <vector>

#include "inventory/tool_monitor.h"
#include "standin/repository.h"

/// What is printed, in whatever format: the outcome of a run.
struct Report {
  std::string host;
  int exit_status;
  std::vector<Problem> problems;
  const standin::Repository& repository;
  std::size_t latest_pass = 0;  ///< The first instance of the last pass that committed any.
};

#endif  // INVENTORY_REPORT_H_
