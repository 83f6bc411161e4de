// What publishing makes the host see.

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <sstream>

#include "collect/kraid_collect_data.h"
#include "hmz/root_object.h"
#include "plugin/dispatch.h"
#include "plugin/kraid_callbacks.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/registry.h"
#include "standin/repository.h"
#include "tests/fake_host.h"
#include "tests/recording_host.h"

namespace {

TEST(CallbacksDeathTest, TripBoostsAssertionOnNullPointersOfTheHost) {
  EXPECT_DEATH(  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it ends while it is made
      {
        standin::SetPluginManager(boost::make_shared<standin::Repository>());  // no manager
        new TKraidCallbacks;
      },
      "px != 0");
}

/// Requests to a machine whose tools and manager have been read.
class Publishing : public testing::TestWithParam<const char*> {
 protected:
  Publishing() {
    if (!exists(folder_ / "kraid")) return;
    host_.Load(GetParam());
    collector_.InitData();
    host_.log.clear();
  }

  void TearDown() override { EXPECT_EQ(repository_->GetUndeclared(), std::vector<std::string>{}); }

  /// The class's name, the calls that publishing it makes on the host, and the messages.
  std::string CallsOf(const std::string& name) {
    std::string calls = name + "\n";
    Publish(name, {boost::make_shared<Recorder>(calls, repository_, nullptr, nullptr),
                   boost::make_shared<Recorder>(calls, nullptr,
                                                repository_->GetOrDeclareClass(name), nullptr),
                   collector_, manager_log_});
    for (const std::string& message : host_.log) calls += message + "\n";
    host_.log.clear();
    return calls;
  }

  /// Commits an instance by hand, from fields "Property=text" with a tab between them and "\n" at
  /// the end for a line end; no text makes null.
  void Commit(const std::string& class_name, std::istringstream& fields) {
    Recorder::Values values;
    for (std::string field; std::getline(fields, field, '\t');) {
      const auto equals = field.find('=');
      std::string text = field.substr(equals + 1);
      if (text.ends_with("\\n")) text.replace(text.size() - 2, 2, "\n");
      values[field.substr(0, equals)] = text.empty() ? NKVXHMZ20::TCIMValue() : text;
    }
    repository_->GetClass(class_name)->CreateInstance(values)->Commit({});
  }

  const std::filesystem::path folder_ = MachineFolder(GetParam());
  FakeHost host_;
  KraidCollectData collector_{nullptr};
  CollectRaidMgrData manager_log_{nullptr, ManagerFolder(GetParam())};
  boost::shared_ptr<standin::Repository> repository_ = boost::make_shared<standin::Repository>();
};

// requests.txt holds classes that are published, with "-" without a look at the calls, and
// instances that are committed by hand.
TEST_P(Publishing, MakesTheseCallsInThisOrder) {
  std::istringstream requests(ReadFile(folder_ / "requests.txt"));
  std::string calls;
  for (std::string request; std::getline(requests, request);) {
    std::istringstream fields(request);
    std::string name;
    std::getline(fields, name, '\t');
    if (!fields.eof()) {
      Commit(name, fields);
    } else if (name.starts_with("-")) {
      CallsOf(name.substr(1));
    } else {
      calls += CallsOf(name);
    }
  }
  const std::string folder = folder_.string() + "/";
  if (const auto path = calls.find(folder); path != std::string::npos) {
    calls.erase(path, folder.size());
  }
  CompareExpected(std::string(GetParam()) + "/host_calls.txt", calls);
}

INSTANTIATE_TEST_SUITE_P(, Publishing,
                         testing::Values("one_of_each", "associations", "devices", "no_controller",
                                         "silent_manager"));

}  // namespace
