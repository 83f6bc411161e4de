#ifndef INVENTORY_BASE_REPORT_H_
#define INVENTORY_BASE_REPORT_H_

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "hmz/cim_date_time.h"
#include "inventory/base/problem.h"
#include "inventory/base/run_record.h"
#include "standin/repository.h"

/// What is printed, in whatever format: the outcome of a collection.
struct Report {
  std::string host;
  int exit_status;
  std::vector<Problem> problems;
  const standin::Repository& repository;
  std::size_t latest_pass = 0;  ///< The first instance of the last pass that committed any.
  std::vector<RunRecord> runs = {};
  std::vector<RunRequest> requests = {};  ///< Of the plug-in, in their order.
  NKVXHMZ20::TCIMDateTime collected_at = {};
  std::chrono::milliseconds duration = {};  ///< Of the collection.
  std::string root = {};                    ///< Where the tools were looked for.
};

#endif  // INVENTORY_BASE_REPORT_H_
