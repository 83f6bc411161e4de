#ifndef INVENTORY_BASE_REPORT_H_
#define INVENTORY_BASE_REPORT_H_

#include <cstddef>
#include <string>
#include <vector>

#include "inventory/base/problem.h"
#include "standin/repository.h"

/// What is printed, in whatever format: the outcome of a collection.
struct Report {
  std::string host;
  int exit_status;
  std::vector<Problem> problems;
  const standin::Repository& repository;
  std::size_t latest_pass = 0;  ///< The first instance of the last pass that committed any.
};

#endif  // INVENTORY_BASE_REPORT_H_
