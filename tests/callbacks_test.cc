#include <gtest/gtest.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <filesystem>
#include <fstream>

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
#include "plugin/publishers.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/registry.h"
#include "standin/repository.h"
#include "standin/schema.h"
#include "tests/fake_host.h"
#include "tests/golden.h"

namespace {

using namespace NKVXHMZ20;  // NOLINT(google-build-using-namespace): the host's whole face

/// Registers nothing beyond remembering; stands in for the manager of a loaded plug-in.
class TestManager final : public TPluginManagerNamespace {
 public:
  boost::shared_ptr<ICIMClass> GetClass(const std::string&) override { return nullptr; }
  void RegisterPlugin(IPluginCallbacks* callbacks) override { registered = callbacks; }
  IPluginCallbacks* registered = nullptr;
};

TEST(Callbacks, RegisterThemselvesAndTellWhatTheyAre) {
  const auto real_manager = TRootObject::GetPluginManager();
  const auto manager = boost::make_shared<TestManager>();
  standin::SetPluginManager(manager);
  auto* callbacks = new TKraidCallbacks;
  EXPECT_EQ(manager->registered, callbacks);
  EXPECT_EQ(callbacks->GetType(), 0);
  EXPECT_EQ(callbacks->GetName(), "Kraid collector");
  EXPECT_EQ(callbacks->GetVersion(), "1.0");
  EXPECT_EQ(callbacks->GetInterfaceVersion(), "1.0");
  EXPECT_NE(dynamic_cast<IPluginBasicQueryCallbacks*>(manager->registered), nullptr);
  callbacks->PrepareForUnload();  // the leak check sees whether it deletes
  standin::SetPluginManager(real_manager);
}

TEST(CallbacksDeathTest, TripBoostsAssertionOnNullPointersOfTheHost) {
  EXPECT_DEATH(  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it ends while it is made
      {
        standin::SetPluginManager(boost::make_shared<standin::Repository>());  // no manager
        new TKraidCallbacks;
      },
      "px != 0");
}

TEST(Dispatch, KnowsTheClassesOfTheSchemaInTheirOrder) {
  const auto entries = DispatchList();
  const auto schema = standin::Schema();
  ASSERT_EQ(entries.size(), schema.size());
  for (std::size_t i = 0; i < entries.size(); ++i) EXPECT_EQ(entries[i].class_name, schema[i].name);
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
  Publishing() {
    host_.outputs["./kraid/kelvcmd getconfig 2 al"] =
        "Controller information\nController type : X \nController FRU : F\n"
        "Physical device information\nrule\nChannel #1:\nrule\nCommand completed successfully\n";
    host_.outputs["./kraid/kelvcmd getbst 1 device"] = "no newline";
  }

  /// The calls that publishing this class makes.
  std::vector<std::pair<std::string, std::string>> CallsOf(const std::string& class_name) {
    KraidCollectData collector(nullptr);
    collector.InitData();
    CollectRaidMgrData manager_log(nullptr, "/absent/");
    host_.log.clear();
    const auto recorder = boost::make_shared<RecordingClass>();
    Publish(class_name,
            {boost::make_shared<standin::Repository>(), recorder, collector, manager_log});
    return recorder->calls;
  }

  FakeHost host_;
};

TEST_F(Publishing, SetsAllPropertiesInTheirOrder) {
  // One of everything, each label as short as it may be, each value in one place only.
  host_.outputs.clear();
  for (const auto& file : std::filesystem::directory_iterator(KRAID_SOURCE_DIR "/tests/data")) {
    host_.outputs["./kraid/" + file.path().filename().string()] = ReadFile(file.path());
  }
  std::string settings;
  for (const DispatchEntry& entry : DispatchList()) {
    settings += std::string(entry.class_name) + "\n";
    for (const auto& [name, value] : CallsOf(entry.class_name)) {
      settings.append("  ").append(name).append(" ");
      for (const char c : value) c == '\n' ? settings.append("\\n") : settings.append(1, c);
      settings += "\n";
    }
  }
  CompareGolden("every_property.txt", settings);

  KraidCollectData collector(nullptr);
  collector.InitData();
  testing::internal::CaptureStdout();
  for (const KRaidController* controller : collector.GetControllers()) {
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
  CompareGolden("display.txt", testing::internal::GetCapturedStdout());
}

TEST_F(Publishing, PublishesRawOutputsWithNullForNoLines) {
  KraidCollectData collector(nullptr);
  collector.InitData();
  CollectRaidMgrData manager_log(nullptr, "/absent/");
  standin::Repository repository;
  Publish("KVXSG_krRawData",
          {nullptr, repository.GetClass("KVXSG_krRawData"), collector, manager_log});
  ASSERT_EQ(repository.GetCommitted().size(), 2U);
  const auto& first = *repository.GetCommitted()[0];
  EXPECT_EQ(first.Find("Command")->ToString(), "./kraid/kelvcmd getbst 1 device");
  EXPECT_TRUE(first.Find("RawResults")->IsNull());
  EXPECT_EQ(repository.GetCommitted()[1]->Find("RawResults")->GetArray().size(), 8U);
}

TEST_F(Publishing, PublishesTheManagersEventsAcrossRequests) {
  std::string pattern = testing::TempDir() + "kraid-XXXXXX";
  const std::filesystem::path folder = mkdtemp(pattern.data());
  std::ofstream(folder / "KelvMgr.sh") << "";
  std::ofstream(folder / "KelvEvtA.log") << "2005/01/05 13:02:03 JST\tINF\tm\ta\n\tERR\tn\tb\n";
  KraidCollectData collector(nullptr);
  CollectRaidMgrData manager_log(nullptr, folder.string() + "/");
  const auto publish = [&](const std::string& class_name) {
    host_.log.clear();
    const auto recorder = boost::make_shared<RecordingClass>();
    Publish(class_name,
            {boost::make_shared<standin::Repository>(), recorder, collector, manager_log});
    std::string settings;
    for (const auto& [name, value] : recorder->calls) {
      settings.append(name).append("=").append(value).append(" ");
    }
    return settings;
  };
  const auto entry = [](const std::string& time, const std::string& severity,
                        const std::string& machine, const std::string& message) {
    return "create= CreationClassName=KVXSG_LogRecord_RAIDMgrEvent "
           "LogCreationClassName=KVXSG_LogRecord_RAIMgrEvent LogName=KelvaRAID Manager "
           "MessageTimestamp=" +
           time + " RecordID=1 Severity=" + severity + " MachineName=" + machine +
           " Message=" + message + " commit= ";
  };
  const std::string now = "20240517102030.000400+120";
  const std::string events = "KVXSG_LogRecord_RAIDMgrEvent";
  EXPECT_EQ(publish(events), entry(now, "INF", "", "SpawnedProcess: ./kraid/krmgr.sh ") +
                                 entry("20050105130203.000000+540", "INF", "m", "a\n") +
                                 entry("00000000000000.000000+000", "ERR", "n", "b\n"));
  // The entry that was read last once more; behind that, the entry that tells of the end.
  EXPECT_EQ(publish(events), entry("00000000000000.000000+000", "ERR", "n", "b\n"));
  EXPECT_EQ(host_.log, std::vector<std::string>{"3|Unexpected end of file reached."});
  EXPECT_EQ(publish(events), entry(now, "INF", "n", "No RAID Manager log entries."));

  EXPECT_NE(publish("KVXSG_krRawData").find("Command=" + folder.string() + "/KelvEvtA.log   "),
            std::string::npos);
  EXPECT_EQ(host_.log, std::vector<std::string>{"3|KraidRawDataVector is empty: inside KrPlugin"});
  std::ofstream(folder / "KelvEvtA.log") << "";
  CollectRaidMgrData empty_log(nullptr, folder.string() + "/");
  Publish("KVXSG_krRawData", {nullptr, boost::make_shared<RecordingClass>(), collector, empty_log});
  EXPECT_EQ(host_.log.back(), "3|RaidMgrLog is empty: inside KrPlugin");
  std::filesystem::remove_all(folder);
}

TEST_F(Publishing, LogsThatThereAreNoRawOutputs) {
  host_.outputs.clear();
  EXPECT_TRUE(CallsOf("KVXSG_krRawData").empty());
  EXPECT_EQ(host_.log, (std::vector<std::string>{"3|KraidRawDataVector is empty: inside KrPlugin",
                                                 "3|RaidMgrLog does not exist: inside KrPlugin"}));
}

TEST_F(Publishing, PassesOverOtherNamesWithoutAWord) {
  for (const char* name :
       {"KVXSG_DiskGroup", "KVXSG_krDriveInDiskGroup", "KVXSG_krExtenInDiskGroup",
        "kvxsg_krRawData", "KVXSG_krRawDat", "KVXSG_krRawData ", ""}) {
    EXPECT_TRUE(CallsOf(name).empty()) << name;
    EXPECT_TRUE(host_.log.empty()) << name;
  }
}

}  // namespace
