#ifndef INVENTORY_JSON_PRINTER_H_
#define INVENTORY_JSON_PRINTER_H_

#include <string>
#include <vector>

#include "inventory/output_file.h"
#include "inventory/tool_monitor.h"
#include "standin/repository.h"

/// What is printed: the outcome of a run.
struct Report {
  std::string host;
  int exit_status;
  std::vector<Problem> problems;
  const standin::Repository& repository;
};

/// Writes the report as one JSON document. Bytes that are not UTF-8 become U+FFFD. The
/// document is never in memory as a whole.
void PrintJson(const Report& report, OutputFile& output);

#endif  // INVENTORY_JSON_PRINTER_H_
