#include "inventory/command/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <iostream>
#include <span>
#include <string_view>

#include "inventory/base/program.h"
#include "inventory/command/class_list.h"
#include "inventory/command/exit_status.h"
#include "inventory/command/messages.h"
#include "inventory/print/check_line.h"
#include "inventory/print/html/html_page.h"
#include "inventory/print/instance_list.h"
#include "inventory/print/json_printer.h"
#include "inventory/print/mof_printer.h"
#include "inventory/print/openmetrics_printer.h"
#include "inventory/print/text_report.h"
#include "inventory/runs/recording_index.h"
#include "standin/schema.h"

namespace {

namespace fs = std::filesystem;

constexpr char kFooter[] =
    "\nExit status: 0 the plug-in answered, even with no controller; 1 the plug-in or the host\n"
    "threw (what had been committed is printed all the same); 2 the command line is wrong; 3 the\n"
    "output could not be written. With --check: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN.\n"
    "\nExamples:\n"
    "  kraid-inventory                                    what is in this machine, what is broken\n"
    "  kraid-inventory --root /srv/tools --check          for monitoring; tools in "
    "/srv/tools/kraid\n"
    "  kraid-inventory --format json KVXSG_krDiskDrive    the disk drives, for programs\n"
    "  kraid-inventory --compare last-week.json           what has changed since\n";

/// The views that a format names. The instances as text and the check are asked for otherwise.
constexpr std::pair<const char*, PrintView> kFormats[] = {{"text", PrintText},
                                                          {"html", PrintHtml},
                                                          {"json", PrintJson},
                                                          {"mof", PrintMof},
                                                          {"openmetrics", PrintOpenMetrics}};
constexpr std::pair<const char*, RunsShown> kRunsShown[] = {
    {"none", RunsShown::kNone}, {"failed", RunsShown::kFailed}, {"all", RunsShown::kAll}};
constexpr std::pair<const char*, Color> kColors[] = {
    {"auto", Color::kAuto}, {"always", Color::kAlways}, {"never", Color::kNever}};

/// An option whose value is one of a few words.
template <class Value, std::size_t kCount>
CLI::Option* AddChoice(CLI::App& app, const char* name, Value& value,
                       const std::pair<const char*, Value> (&choices)[kCount],
                       const char* description) {
  std::string words;
  for (const auto& choice : choices) words.append(words.empty() ? "" : "|").append(choice.first);
  const auto read = [&value, &choices, name, words](const std::string& word) {
    for (const auto& choice : choices) {
      if (word == choice.first) {
        value = choice.second;
        return;
      }
    }
    throw CLI::ValidationError(name, "\"" + word + "\" is none of " + words);
  };
  return app.add_option_function<std::string>(name, read, description)->type_name(words);
}

/// Nothing else than an answer is asked for: prints it.
std::nullopt_t Answer(const std::string& text, int& exit_status) {
  exit_status = std::cout << text << std::flush ? kExitAnswered : kExitOutput;
  return std::nullopt;
}

/// The command line is wrong. What could be read of it does not count: a check may have been asked
/// for behind the fault.
std::nullopt_t RefuseUsage(const std::string& why, std::span<const char* const> arguments,
                           int& exit_status) {
  exit_status =
      Refuse(why, IsCheck(static_cast<int>(arguments.size()), arguments.data()), kExitUsage);
  std::cerr << "Try '" << kProgramName << " --help' for the options.\n";
  return std::nullopt;
}

void WarnOfUnknownClasses(const std::vector<std::string>& classes) {
  for (const std::string& name : classes) {
    const std::string_view nearest = NearestClass(name);
    if (name == nearest) continue;
    Complain("the schema has no class " + name + "; did you mean " + std::string(nearest) + "?");
  }
}

// Beside this program: the same place in the build tree and after installation.
fs::path DefaultPlugin() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  // Without /proc it is not known where this program is: nothing relative may be taken then.
  const fs::path bin = error ? "/usr/bin" : self.parent_path();
  return (bin / "../lib/kraid-inventory/libkraid.pi.so").lexically_normal();
}

std::string CheckSeconds(const std::string& text) {
  double seconds = 0;
  // Written so that "nan" is refused, too.
  if (CLI::detail::lexical_cast(text, seconds) && seconds >= 0.001 && seconds <= 1e6) return "";
  return "\"" + text + "\" is no number of seconds from 0.001 to 1000000";
}

std::string CheckNumber(const std::string& text) {
  const bool is_number = !text.empty() && text.size() < 10 && text[0] != '0' &&
                         text.find_first_not_of("0123456789") == std::string::npos;
  return is_number ? "" : "\"" + text + "\" is no number of a controller";
}

std::string CheckNotEmpty(const std::string& text) {
  return text.empty() ? "the file's name is empty" : "";
}

/// Returns what is wrong with the file, behind its name; "" when nothing is.
std::string ReadKey(const fs::path& path, std::string& key) {
  constexpr std::size_t kShortest = 16;
  constexpr std::size_t kLongest = std::size_t{64} << 10;
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return " is no regular file";
  std::ifstream file(path, std::ios::binary);
  key.resize(kLongest + 1);
  file.read(key.data(), static_cast<std::streamsize>(key.size()));
  key.resize(static_cast<std::size_t>(file.gcount()));
  if (file.bad() || !file.is_open()) return " cannot be read";
  return key.size() >= kShortest && key.size() <= kLongest ? "" : " has not 16 bytes to 64 KiB";
}

std::chrono::milliseconds Milliseconds(double seconds) {
  return std::chrono::milliseconds(static_cast<long long>(seconds * 1000));
}

/// Leaves the path's words as they are: "a/.." is not the same without "a" where that is a link.
std::error_code MakeAbsolute(fs::path& path) {
  std::error_code error;
  if (!path.empty() && path.is_relative()) path = fs::current_path(error) / path;
  return error;
}

}  // namespace

bool IsCheck(int argc, const char* const* argv) {
  return std::any_of(argv, argv + argc, [](std::string_view argument) {
    return argument == "--check" || argument.starts_with("--check=");
  });
}

std::optional<Options> FindMetricsOptions(int argc, const char* const* argv) {
  CLI::App app;
  app.allow_extras();
  app.set_help_flag();
  std::string format;
  Options options;
  // Of several the first: what a setting has added behind them is the fault.
  for (CLI::Option* option :
       {app.add_option("--format", format), app.add_option("--output", options.output),
        app.add_option("--log", options.log), app.add_option("--record", options.record)}) {
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeFirst);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError&) {
    return std::nullopt;
  }
  if (format != "openmetrics") return std::nullopt;
  return options;
}

std::optional<Options> ParseOptions(int argc, const char* const* argv, int& exit_status) {
  Options options;
  options.plugin = DefaultPlugin();
  bool list = false;
  bool check = false;
  double tool_timeout_s = std::chrono::duration<double>(options.tool_timeout).count();
  double timeout_s = 60;
  double max_age_s = 0;
  fs::path key_file;
  bool no_instances = false;
  bool no_lock = false;

  CLI::App app("Loads the KelvaRAID collector plug-in as a host does and prints what it reports.",
               kProgramName);
  app.footer(kFooter);
  app.get_formatter()->column_width(26);
  app.set_version_flag("--version", std::string(kProgramName) + " " + kProgramVersion);
  app.add_option("CLASS", options.classes,
                 "classes to ask for, in this order, repeats allowed; none: all of the schema")
      ->type_name("");
  app.add_option("--root", options.root,
                 "work in this directory: the tools are DIR/kraid/... (default: the current one)")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory.description(""));
  CLI::Option* const plugin =
      app.add_option("--plugin", options.plugin,
                     "the plug-in to load (default: the one beside this program)")
          ->type_name("FILE")
          ->check(CLI::ExistingFile.description(""));
  CLI::Option* const format =
      AddChoice(app, "--format", options.view, kFormats,
                "text, for people (the default); html, a page; json; mof; openmetrics");
  AddChoice(app, "--color", options.color, kColors,
            "colours in text (default: auto, on a terminal, unless NO_COLOR is set)");
  app.add_flag("--brief", options.brief, "text: what needs attention, and nothing else");
  app.add_flag("--check", check, "one line and the exit status for a monitoring system");
  CLI::Option* const compare =
      app.add_option("--compare", options.earlier,
                     "text, html, json: also what has changed since FILE, an earlier JSON")
          ->type_name("FILE")
          ->check(CLI::Validator(CheckNotEmpty, ""));
  CLI::Option* const expect =
      app.add_option("--expect", options.earlier,
                     "with --check: what FILE, an earlier JSON document, has is to be there")
          ->type_name("FILE")
          ->check(CLI::Validator(CheckNotEmpty, ""));
  app.add_option("--controller", options.controllers,
                 "of these controllers only: text, check, the machine in JSON; repeatable")
      ->type_name("N")
      ->allow_extra_args(false)
      ->check(CLI::Validator(CheckNumber, ""));
  app.add_flag("--list", list, "list the classes of the schema");
  CLI::Option* const output =
      app.add_option("--output", options.output,
                     "write there, whole or not at all (default: standard output)")
          ->type_name("FILE")
          ->check(CLI::Validator(CheckNotEmpty, ""));
  app.add_option("--log", options.log, "write the plug-in's log messages there")
      ->type_name("FILE")
      ->check(CLI::Validator(CheckNotEmpty, ""));
  app.add_option("--passes", options.passes,
                 "ask so many times, as a long-running host does (default: 1)")
      ->type_name("N")
      ->check(CLI::Range(1, 1'000'000).description(""));
  app.add_option("--max-instances", options.max_instances,
                 "end publishing behind so many instances (default: 1000000)")
      ->type_name("N")
      ->check(CLI::Range(1, 1'000'000'000).description(""));
  CLI::Option* const timeout =
      app.add_option("-t,--timeout", timeout_s,
                     "time limit of the whole collection (default: none; 60 with --check)")
          ->type_name("SECONDS")
          ->check(CLI::Validator(CheckSeconds, ""));
  app.add_option("--tool-timeout", tool_timeout_s, "time limit of one tool run (default: 60)")
      ->type_name("SECONDS")
      ->check(CLI::Validator(CheckSeconds, ""));
  app.add_flag("--as-host", options.as_host,
               "run every request of the plug-in, and end where it throws, as a host does");
  AddChoice(app, "--runs", options.runs, kRunsShown, "the runs that JSON lists (default: failed)");
  CLI::Option* const record =
      app.add_option("--record", options.record, "keep the collection there, to be replayed")
          ->type_name("DIR")
          ->check(CLI::Validator(CheckNotEmpty, ""));
  CLI::Option* const replay =
      app.add_option("--replay", options.replay, "show what was recorded there; runs no tool")
          ->type_name("DIR")
          ->check(CLI::ExistingDirectory.description(""));
  CLI::Option* const max_age =
      app.add_option("--max-age", max_age_s, "refuse to replay what is older")
          ->type_name("SECONDS")
          ->check(CLI::Validator(CheckSeconds, ""));
  app.add_flag("--sanitize", options.sanitize,
               "pseudonyms for serial numbers and names, in all that is written");
  app.add_option("--sanitize-key", key_file,
                 "sanitize with the key in this file: the same pseudonyms each time")
      ->type_name("FILE")
      ->check(CLI::ExistingFile.description(""));
  app.add_flag("--no-instances", no_instances, "leave the instances out of JSON");
  app.add_flag("--no-lock", no_lock, "do not wait for another collection below the same root");
  app.add_flag("--trust-tools", options.trust_tools,
               "as root, run tools that others than root could have put there");
  app.add_flag("--verbose", options.verbose,
               "show the standard error of the tools, and what no parser took of their output");

  const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& done) {
    app.exit(done);
    return Answer("", exit_status);
  } catch (const CLI::ParseError& error) {
    return RefuseUsage(error.what(), arguments, exit_status);
  }
  options.all_classes = options.classes.empty();
  const bool has_format = format->count() > 0;
  if (check && (has_format || !options.all_classes)) {
    return RefuseUsage("--check goes with neither --format nor classes", arguments, exit_status);
  }
  if (list && (check || has_format || output->count() > 0 || compare->count() > 0 ||
               expect->count() > 0 || !options.all_classes)) {
    return RefuseUsage("--list stands alone", arguments, exit_status);
  }
  if (list) return Answer(ClassList(), exit_status);

  const bool is_text = options.view == PrintText && !check;
  if (options.brief && !(is_text && options.all_classes)) {
    return RefuseUsage("--brief is for the text report", arguments, exit_status);
  }
  if (options.view == PrintOpenMetrics && !options.all_classes) {
    return RefuseUsage("--format openmetrics goes with no classes", arguments, exit_status);
  }
  if (!options.controllers.empty() && (options.view == PrintMof || !options.all_classes)) {
    return RefuseUsage("--controller goes with neither mof nor classes", arguments, exit_status);
  }
  if (options.view == PrintHtml) {
    if (!options.all_classes) {
      return RefuseUsage("--format html goes with no classes", arguments, exit_status);
    }
    options.log_entries = kPageLogEntries;
  }
  if (no_instances && (options.view != PrintJson || !options.all_classes)) {
    return RefuseUsage("--no-instances is for json of all classes", arguments, exit_status);
  }
  options.instances = !no_instances;
  const bool compares = is_text || options.view == PrintHtml || options.view == PrintJson;
  if (compare->count() > 0 && !(compares && !check && options.all_classes)) {
    return RefuseUsage("--compare is for the text report, html and json", arguments, exit_status);
  }
  if (expect->count() > 0 && !check) {
    return RefuseUsage("--expect is for --check", arguments, exit_status);
  }
  if (check) options.view = PrintCheck;
  options.is_check = check;
  if (is_text && !options.all_classes) options.view = PrintInstances;
  WarnOfUnknownClasses(options.classes);
  if (options.all_classes) {
    for (const standin::SchemaClass& known : standin::Schema()) {
      options.classes.emplace_back(known.name);
    }
  }
  options.tool_timeout = Milliseconds(tool_timeout_s);
  if (check || timeout->count() > 0) options.timeout = Milliseconds(timeout_s);
  options.lock = !no_lock;
  options.is_own_plugin = plugin->count() > 0;
  if (max_age->count() > 0) options.max_age = Milliseconds(max_age_s);
  if (record->count() > 0 && !options.all_classes) {
    return RefuseUsage("--record goes with no classes: it keeps all", arguments, exit_status);
  }
  if (record->count() > 0 && options.passes > kMostRecordedPasses) {
    return RefuseUsage("--record goes with 100 passes at most", arguments, exit_status);
  }
  if (max_age->count() > replay->count()) {
    return RefuseUsage("--max-age is of what --replay shows", arguments, exit_status);
  }
  for (const char* live :
       {"--as-host", "--passes", "--root", "--timeout", "--tool-timeout", "--no-lock"}) {
    if (replay->count() == 0 || app.get_option(live)->count() == 0) continue;
    return RefuseUsage(std::string(live) + " does not go with --replay", arguments, exit_status);
  }
  if (!key_file.empty()) {
    options.sanitize = true;
    if (const std::string why = ReadKey(key_file, options.sanitize_key); !why.empty()) {
      return RefuseUsage("--sanitize-key: " + key_file.string() + why, arguments, exit_status);
    }
  }
  // The document may name what is to be hidden. One of a sanitized machine compares with a replay.
  if (options.sanitize && !options.earlier.empty()) {
    return RefuseUsage("--sanitize goes with neither --compare nor --expect", arguments,
                       exit_status);
  }
  for (fs::path* path : {&options.root, &options.plugin, &options.output, &options.log,
                         &options.record, &options.replay, &options.earlier}) {
    const std::string given = path->string();
    const std::error_code error = MakeAbsolute(*path);
    if (!error) continue;
    return RefuseUsage(given + ": there is no working folder: " + error.message(), arguments,
                       exit_status);
  }
  return options;
}
