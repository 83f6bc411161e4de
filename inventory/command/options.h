#ifndef INVENTORY_COMMAND_OPTIONS_H_
#define INVENTORY_COMMAND_OPTIONS_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "inventory/print/display.h"
#include "inventory/print/text_report.h"
#include "inventory/print/view.h"

/// What the command line asks for. Paths are absolute: they do not change with --root.
struct Options {
  std::vector<std::string> classes;
  bool all_classes = false;  // none was named
  PrintView view = PrintText;
  bool is_check = false;  // of the views, the one for a monitoring system
  Color color = Color::kAuto;
  std::filesystem::path root;  // empty: stay here
  std::filesystem::path plugin;
  bool is_own_plugin = false;    // the user named it
  std::filesystem::path output;  // empty: standard output
  std::filesystem::path log;     // empty: none
  int passes = 1;
  std::size_t max_instances = 1'000'000;  // that are kept
  std::chrono::milliseconds tool_timeout{std::chrono::seconds{60}};
  std::optional<std::chrono::milliseconds> timeout;  // of the collection; none: no limit
  bool as_host = false;                              // every request runs, the first throw counts
  bool trust_tools = false;                          // tools and plug-in, wherever they are
  bool lock = true;
  RunsShown runs = RunsShown::kFailed;
  std::vector<std::uint64_t> controllers;            // none: all
  std::filesystem::path record;                      // empty: no recording is made
  std::filesystem::path replay;                      // empty: the tools of this machine run
  std::optional<std::chrono::milliseconds> max_age;  // of what is replayed; none: any
  bool sanitize = false;
  std::string sanitize_key;       // empty: a random one
  std::filesystem::path earlier;  // a JSON document to compare with; empty: none
  std::size_t log_entries = 5;    // of each log, that are shown
  bool instances = true;          // in JSON
  bool brief = false;
  bool verbose = false;
};

/// Reads the command line. Returns nothing when there is nothing left to do: help or the version
/// was asked for, or the command line is wrong and standard error says why (standard output, too,
/// when a check was asked for); `exit_status` then tells how to end.
std::optional<Options> ParseOptions(int argc, const char* const* argv, int& exit_status);

/// Where metrics are asked for on a command line that cannot be read otherwise: where results go,
/// and nothing else. Absent where they are not asked for, or that cannot be read either.
std::optional<Options> FindMetricsOptions(int argc, const char* const* argv);

/// Whether a check is asked for somewhere on a command line, be it one that cannot be read.
bool IsCheck(int argc, const char* const* argv);

#endif  // INVENTORY_COMMAND_OPTIONS_H_
