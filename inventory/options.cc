#include "inventory/options.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "inventory/exit_status.h"
#include "standin/schema.h"

namespace {

namespace fs = std::filesystem;

constexpr char kFooter[] =
    "\nExit status: 0 the plug-in answered, even with no controller; 1 the plug-in or the host\n"
    "threw (what had been committed is printed all the same); 2 the command line is wrong; 3 the\n"
    "output could not be written.\n"
    "\nExamples:\n"
    "  kraid-inventory KVXSG_krSCSIProtocolController     the controllers of this machine\n"
    "  kraid-inventory --root /srv/tools --log run.log    tools below /srv/tools/kraid\n";

// Beside this program: the same place in the build tree and after installation.
fs::path DefaultPlugin() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  return (self.parent_path() / "../lib/libkraid.pi.so").lexically_normal();
}

std::string CheckFormat(const std::string& format) {
  if (format == "json") return "";
  if (format == "text" || format == "mof") {
    return "the format " + format + " is not available yet; json is";
  }
  return "unknown format \"" + format + "\"; json is available";
}

std::string CheckSeconds(const std::string& text) {
  double seconds = 0;
  // Written so that "nan" is refused, too.
  if (CLI::detail::lexical_cast(text, seconds) && seconds >= 0.001 && seconds <= 1e6) return "";
  return "\"" + text + "\" is no number of seconds from 0.001 to 1000000";
}

std::string CheckNotEmpty(const std::string& text) {
  return text.empty() ? "the file's name is empty" : "";
}

fs::path Absolute(const fs::path& path) {
  return path.empty() ? path : fs::absolute(path).lexically_normal();
}

}  // namespace

std::optional<Options> ParseOptions(int argc, const char* const* argv, int& exit_status) {
  Options options;
  options.plugin = DefaultPlugin();
  std::string format = "json";
  double tool_timeout_s = std::chrono::duration<double>(options.tool_timeout).count();

  CLI::App app("Loads the KelvaRAID collector plug-in as a host does and prints what it reports.",
               kProgramName);
  app.footer(kFooter);
  app.get_formatter()->column_width(26);
  app.set_version_flag("--version", std::string(kProgramName) + " " KRAID_VERSION);
  app.add_option("CLASS", options.classes,
                 "classes to ask for, in this order, repeats allowed; none: all of the schema");
  app.add_option("--root", options.root,
                 "work in this directory: the tools are DIR/kraid/... (default: the current one)")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory.description(""));
  app.add_option("--plugin", options.plugin,
                 "the plug-in to load (default: the one beside this program)")
      ->type_name("FILE")
      ->check(CLI::ExistingFile.description(""));
  app.add_option("--format", format, "json; text and mof are to come")
      ->type_name("json|text|mof")
      ->check(CLI::Validator(CheckFormat, ""));
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
  app.add_option("--tool-timeout", tool_timeout_s, "time limit of one tool run (default: 300)")
      ->type_name("SECONDS")
      ->check(CLI::Validator(CheckSeconds, ""));
  app.add_flag("--verbose", options.verbose,
               "show on standard error what the tools write to their standard error");

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& done) {
    app.exit(done);
    exit_status = std::cout.flush() ? kExitAnswered : kExitOutput;
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    std::cerr << kProgramName << ": " << error.what() << "\nTry '" << kProgramName
              << " --help' for the options.\n";
    exit_status = kExitUsage;
    return std::nullopt;
  }

  if (options.classes.empty()) {
    for (const standin::SchemaClass& known : standin::Schema()) {
      options.classes.emplace_back(known.name);
    }
  }
  options.tool_timeout = std::chrono::milliseconds(static_cast<long long>(tool_timeout_s * 1000));
  for (fs::path* path : {&options.root, &options.plugin, &options.output, &options.log}) {
    *path = Absolute(*path);
  }
  if (!options.log.empty() && options.log == options.output) {
    std::cerr << kProgramName << ": --log and --output name the same file\n";
    exit_status = kExitUsage;
    return std::nullopt;
  }
  return options;
}
