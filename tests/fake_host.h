#ifndef TESTS_FAKE_HOST_H_
#define TESTS_FAKE_HOST_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "hmz/exception.h"
#include "standin/host_services.h"
#include "tests/machine_files.h"

/// The least that a kelvcmd "getconfig" has to print for its controller to be published.
inline constexpr char kMinimalConfig[] =
    "Controller information\nController type : X\nPhysical device information\n"
    "rule\nChannel #1:\nrule\nCommand completed successfully\n";

/// The stand-in's services, replaced for as long as the object lives: tools that print what a test
/// prepared, a log that is kept, a fixed clock and name.
class FakeHost {
 public:
  FakeHost() : saved_(standin::Services()) {
    standin::Services() = {
        [this](const std::string& program, const std::vector<std::string>& arguments) {
          std::string command_line = program;
          for (const std::string& argument : arguments) command_line += " " + argument;
          runs.push_back(command_line);
          if (before_run) before_run(command_line);
          const auto output = outputs.find(command_line);
          if (output == outputs.end()) throw NKVXHMZ20::THMZException("no such tool");
          return output->second;
        },
        [] { return NKVXHMZ20::TCIMDateTime(2024, 5, 17, 10, 20, 30, 400, 120); },
        [] { return std::string("testhost"); },
        [this](int level, const std::string& text) {
          log.push_back(std::to_string(level) + "|" + text);
        },
    };
  }
  ~FakeHost() { standin::Services() = saved_; }
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  /// Has the tools print what they print on a machine of the tests.
  void Load(const std::string& machine) { outputs = ToolOutputs(machine); }

  /// What a command line prints; one that is not here fails.
  std::map<std::string, std::string> outputs;
  std::function<void(const std::string& command_line)> before_run;
  std::vector<std::string> runs;
  std::vector<std::string> log;

 private:
  standin::HostServices saved_;
};

#endif  // TESTS_FAKE_HOST_H_
