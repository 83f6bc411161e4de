// Command lines: each line is an argument, in which a form feed stands for a line end.

#include <algorithm>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/expect.h"
#include "fuzz/sections.h"
#include "inventory/command/options.h"

namespace {

/// Takes what is written to a stream.
class Captured {
 public:
  explicit Captured(std::ostream& stream) : stream_(stream), before_(stream.rdbuf(text_.rdbuf())) {}
  ~Captured() { stream_.rdbuf(before_); }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;
  std::string GetText() const { return text_.str(); }

 private:
  std::ostringstream text_;
  std::ostream& stream_;
  std::streambuf* before_;
};

std::vector<std::string> CutArguments(std::string_view input) {
  std::vector<std::string> arguments = {"kraid-inventory"};
  std::istringstream lines{std::string(input)};
  for (std::string line; std::getline(lines, line);) {
    std::replace(line.begin(), line.end(), '\f', '\n');
    arguments.push_back(line.substr(0, line.find('\0')));
  }
  return arguments;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> arguments = CutArguments(TextOf(data, size));
  std::vector<const char*> argv;
  bool is_check = false;
  for (const std::string& argument : arguments) {
    argv.push_back(argument.c_str());
    is_check = is_check || argument == "--check" || argument.starts_with("--check=");
  }
  const Captured out(std::cout);
  const Captured err(std::cerr);
  int exit_status = -1;
  const auto options = ParseOptions(static_cast<int>(argv.size()), argv.data(), exit_status);
  ExpectFitForTerminal(err.GetText());
  if (options) {
    Expect(out.GetText().empty(), "it answers before it was asked", out.GetText());
    return 0;
  }
  Expect(exit_status >= 0 && exit_status <= 3, "no exit status", std::to_string(exit_status));
  ExpectFitForTerminal(out.GetText());
  if (exit_status == 0) {
    Expect(!out.GetText().empty(), "no answer");
  } else if (is_check) {
    ExpectCheckLine(out.GetText(), exit_status);
  } else {
    Expect(exit_status == 2 && out.GetText().empty(), "a refusal answers", out.GetText());
    Expect(!err.GetText().empty(), "a refusal does not say why");
  }
  return 0;
}
