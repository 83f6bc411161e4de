// What publishing makes the host see.

#include <gtest/gtest.h>

#include "hmz/root_object.h"
#include "plugin/kraid_callbacks.h"
#include "standin/registry.h"
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

TEST_F(Publishing, MakesTheseCallsInThisOrder) {
  // One of everything, each label as short as it may be, each value in one place only.
  Collect("one_of_each");
  CollectRaidMgrData manager_log(nullptr, ManagerFolder("one_of_each"));
  const std::string folder = MachineFolder("one_of_each").string() + "/";
  std::string calls;
  for (const DispatchEntry& entry : DispatchList()) calls += CallsOf(entry.class_name, manager_log);
  if (const auto path = calls.find(folder); path != std::string::npos) {
    calls.erase(path, folder.size());
  }
  CompareExpected("one_of_each/host_calls.txt", calls);
}

TEST_F(Publishing, GoesOnWithTheManagersEventsWhereTheLastRequestStopped) {
  // The first request publishes what the reader made up and the whole log, the second the entry
  // that was read last once more; behind that there is one that tells of the end.
  CollectRaidMgrData manager_log(nullptr, ManagerFolder("one_of_each"));
  std::string calls;
  for (int request = 0; request < 3; ++request) {
    calls += CallsOf("KVXSG_LogRecord_RAIDMgrEvent", manager_log);
    for (const std::string& message : host_.log) calls += message + "\n";
    host_.log.clear();
  }
  CompareExpected("one_of_each/manager_requests.txt", calls);
}

TEST_F(Publishing, LogsWhichRawOutputsThereAreNotAndPublishesNullForNoLines) {
  using Texts = std::vector<std::string>;
  const std::string raw_data = "KVXSG_krRawData";
  CollectRaidMgrData empty_log(nullptr, ManagerFolder("silent_manager"));
  EXPECT_EQ(CallsOf(raw_data, empty_log), raw_data + "\n");
  EXPECT_EQ(host_.log, (Texts{"3|KraidRawDataVector is empty: inside KrPlugin",
                              "3|RaidMgrLog is empty: inside KrPlugin"}));
  host_.outputs["./kraid/kelvcmd getbst 1 device"] = "no newline";
  collector_.InitData();
  host_.log.clear();
  EXPECT_EQ(CallsOf(raw_data, no_manager_), raw_data +
                                                "\n  create\n    Command ./kraid/kelvcmd getbst 1 "
                                                "device\n    RawResults null\n  commit\n");
  EXPECT_EQ(host_.log, Texts{"3|RaidMgrLog does not exist: inside KrPlugin"});
}

TEST_F(Publishing, PassesOverOtherNamesWithoutAWord) {
  Collect("one_of_each");
  host_.log.clear();
  for (const char* name : {"kvxsg_krRawData", "KVXSG_krRawDat", "KVXSG_krRawData ", ""}) {
    EXPECT_EQ(CallsOf(name, no_manager_), std::string(name) + "\n");
  }
  EXPECT_TRUE(host_.log.empty());
}

}  // namespace
