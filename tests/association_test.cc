// Associations, call by call, on machines whose instances meet in every way.

#include <gtest/gtest.h>

#include <sstream>

#include "standin/schema.h"
#include "tests/recording_host.h"

namespace {

class Associations : public Publishing, public testing::WithParamInterface<const char*> {
 protected:
  /// Commits an instance by hand: its class, a tab before each "Property=text", with "\n" at the
  /// end for a line end. Keys are "x" where nothing else is given.
  void Commit(std::istringstream& line, const std::string& class_name) {
    Recorder::Values values;
    for (const standin::SchemaClass& cim_class : standin::Schema()) {
      if (cim_class.name != class_name) continue;
      for (const std::string_view key : cim_class.keys) values[std::string(key)] = "x";
    }
    for (std::string field; std::getline(line, field, '\t');) {
      const auto equals = field.find('=');
      std::string text = field.substr(equals + 1);
      if (text.ends_with("\\n")) text.replace(text.size() - 2, 2, "\n");
      values[field.substr(0, equals)] = text;
    }
    repository_->GetClass(class_name)->CreateInstance(values)->Commit({});
  }
};

// requests.txt holds classes that are published, with "-" without a look at the calls, and
// instances that are committed by hand.
TEST_P(Associations, AskTheHostInThisOrder) {
  const std::string machine = GetParam();
  Collect(machine);
  std::istringstream requests(ReadFile(MachineFolder(machine) / "requests.txt"));
  std::string calls;
  for (std::string text; std::getline(requests, text);) {
    std::istringstream line(text);
    std::string name;
    std::getline(line, name, '\t');
    if (!line.eof()) {
      Commit(line, "KVXSG_" + name);
    } else if (name.starts_with("-")) {
      CallsOf("KVXSG_" + name.substr(1), no_manager_);
    } else {
      calls += CallsOf("KVXSG_" + name, no_manager_);
    }
  }
  CompareExpected(machine + "/host_calls.txt", calls);
}

INSTANTIATE_TEST_SUITE_P(, Associations,
                         testing::Values("associations", "device_numbers", "no_controller"));

}  // namespace
