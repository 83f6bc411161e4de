// What publishing makes the host see.

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "collect/kraid_collect_data.h"
#include "hmz/root_object.h"
#include "model/array_stripe_order.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "plugin/dispatch.h"
#include "plugin/kraid_callbacks.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/registry.h"
#include "standin/repository.h"
#include "tests/fake_host.h"

namespace {

using namespace NKVXHMZ20;  // NOLINT(google-build-using-namespace): the host's whole face
using Texts = std::vector<std::string>;

TEST(CallbacksDeathTest, TripBoostsAssertionOnNullPointersOfTheHost) {
  EXPECT_DEATH(  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it ends while it is made
      {
        standin::SetPluginManager(boost::make_shared<standin::Repository>());  // no manager
        new TKraidCallbacks;
      },
      "px != 0");
}

/// Writes down every call that is made on one class and its instances.
class RecordingClass final : public ICIMClass, public ICIMInstance {
 public:
  std::string GetName() override { return "recording"; }
  boost::shared_ptr<ICIMInstance> CreateInstance(const std::map<std::string, TCIMValue>&) override {
    calls.emplace_back("create", "");
    return {static_cast<ICIMInstance*>(this), [](ICIMInstance*) {}};
  }
  void EnumerateInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>&) override {}
  void Commit(const std::map<std::string, TCIMValue>&) override {
    calls.emplace_back("commit", "");
  }
  TCIMReference GetReference() override { return {nullptr, {}}; }
  boost::shared_ptr<ICIMProperty> GetProperty(const std::string&) override { return nullptr; }
  void SetPropertyValue(const std::string& name, const TCIMValue& value,
                        const std::map<std::string, TCIMValue>&) override {
    calls.emplace_back(name, value.ToString());
  }
  std::vector<std::pair<std::string, std::string>> calls;
};

class Publishing : public testing::Test {
 protected:
  /// The calls that publishing this class makes: the name or the property, and the value.
  std::vector<std::pair<std::string, std::string>> CallsOf(const std::string& class_name,
                                                           CollectRaidMgrData& manager_log) {
    const auto recorder = boost::make_shared<RecordingClass>();
    host_.log.clear();
    Publish(class_name,
            {boost::make_shared<standin::Repository>(), recorder, collector_, manager_log});
    return recorder->calls;
  }

  FakeHost host_;
  KraidCollectData collector_{nullptr};
  CollectRaidMgrData no_manager_{nullptr, "/absent/"};
};

TEST_F(Publishing, SetsAllPropertiesInTheirOrder) {
  // One of everything, each label as short as it may be, each value in one place only.
  host_.Load("one_of_each");
  collector_.InitData();
  CollectRaidMgrData manager_log(nullptr, ManagerFolder("one_of_each"));
  const std::string folder = MachineFolder("one_of_each").string() + "/";
  std::string settings;
  for (const DispatchEntry& entry : DispatchList()) {
    settings += std::string(entry.class_name) + "\n";
    for (auto [name, value] : CallsOf(entry.class_name, manager_log)) {
      if (value.starts_with(folder)) value.erase(0, folder.size());
      settings.append("  ").append(name).append(" ");
      for (const char c : value) c == '\n' ? settings.append("\\n") : settings.append(1, c);
      settings += "\n";
    }
  }
  CompareExpected("one_of_each/host_calls.txt", settings);

  testing::internal::CaptureStdout();
  for (const KRaidController* controller : collector_.GetControllers()) {
    controller->DisplayAll();
    for (const auto* record : controller->GetLogicalDevices()) record->DisplayAll();
    for (const auto* record : controller->GetPhysicalDevices()) record->DisplayAll();
    for (const auto* record : controller->GetArrayStripeOrder()) record->DisplayAll();
    for (const auto* record : controller->GetBstData()) record->DisplayAll();
    for (const auto* record : controller->GetEventData()) record->DisplayAll();
    for (const auto* record : controller->GetEventDddData()) record->DisplayAll();
    for (const auto* record : controller->GetSubStatData()) record->DisplayAll();
    if (controller->GetEventSoftData() != nullptr) controller->GetEventSoftData()->DisplayAll();
  }
  CompareExpected("one_of_each/display_all.txt", testing::internal::GetCapturedStdout());
}

TEST_F(Publishing, PublishesTheManagersEventsAcrossRequests) {
  CollectRaidMgrData manager_log(nullptr, ManagerFolder("one_of_each"));
  const auto request = [&] {
    std::string messages;
    for (const auto& [name, value] : CallsOf("KVXSG_LogRecord_RAIDMgrEvent", manager_log)) {
      if (name == "Message") messages += value + ";";
    }
    return messages;
  };
  EXPECT_EQ(request(), "SpawnedProcess: ./kraid/krmgr.sh ;a\n;b\n;");
  // The entry that was read last once more; behind that, the entry that tells of the end.
  EXPECT_EQ(request(), "b\n;");
  EXPECT_EQ(host_.log, Texts{"3|Unexpected end of file reached."});
  EXPECT_EQ(request(), "No RAID Manager log entries.;");
}

TEST_F(Publishing, LogsWhichRawOutputsThereAreNotAndPublishesNullForNoLines) {
  const std::string raw_data = "KVXSG_krRawData";
  CollectRaidMgrData empty_log(nullptr, ManagerFolder("silent_manager"));
  EXPECT_TRUE(CallsOf(raw_data, empty_log).empty());
  EXPECT_EQ(host_.log, (Texts{"3|KraidRawDataVector is empty: inside KrPlugin",
                              "3|RaidMgrLog is empty: inside KrPlugin"}));
  host_.outputs["./kraid/kelvcmd getbst 1 device"] = "no newline";
  collector_.InitData();
  const auto repository = boost::make_shared<standin::Repository>();
  host_.log.clear();
  Publish(raw_data, {repository, repository->GetClass(raw_data), collector_, no_manager_});
  EXPECT_EQ(host_.log, Texts{"3|RaidMgrLog does not exist: inside KrPlugin"});
  EXPECT_TRUE(repository->GetCommitted().at(0)->Find("RawResults")->IsNull());
}

TEST_F(Publishing, PassesOverOtherNamesWithoutAWord) {
  host_.Load("one_of_each");
  collector_.InitData();
  for (const char* name :
       {"KVXSG_DiskGroup", "KVXSG_krDriveInDiskGroup", "KVXSG_krExtenInDiskGroup",
        "kvxsg_krRawData", "KVXSG_krRawDat", "KVXSG_krRawData ", ""}) {
    EXPECT_TRUE(CallsOf(name, no_manager_).empty()) << name;
    EXPECT_TRUE(host_.log.empty()) << name;
  }
}

}  // namespace
