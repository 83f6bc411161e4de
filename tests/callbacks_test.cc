#include <gtest/gtest.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <filesystem>
#include <fstream>

#include "collect/kraid_collect_data.h"
#include "hmz/root_object.h"
#include "plugin/dispatch.h"
#include "plugin/kraid_callbacks.h"
#include "plugin/publishers.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/registry.h"
#include "standin/repository.h"
#include "standin/schema.h"
#include "tests/fake_host.h"

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
  EXPECT_DEATH(
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
    Publish(class_name, {nullptr, recorder, collector, manager_log});
    return recorder->calls;
  }

  FakeHost host_;
};

TEST_F(Publishing, SetsTheControllersPropertiesInTheirOrder) {
  using Call = std::pair<std::string, std::string>;
  const std::vector<Call> calls = CallsOf("KVXSG_krSCSIProtocolController");
  const std::vector<Call> expected = {
      {"create", ""},
      {"SystemCreationClassName", "KVXSG_ComputerSystem"},
      {"CreationClassname", "KVXSG_krSCSIProtocolController"},
      {"SystemName", "testhost"},
      {"DeviceID", "KelvaRAID2"},
      {"OtherIdentifyingInfo", "{X \n,  Controller:2}"},
      {"ControllerNum", "2"},
      {"ControllerType", "X \n"},
      {"ControllerStatus", ""},
      {"ChannelDescription", ""},
      {"ControllerFRU", "F\n"},
  };
  ASSERT_EQ(calls.size(), 48U);  // 46 settings between create and commit
  EXPECT_EQ(std::vector<Call>(calls.begin(), calls.begin() + 11), expected);
  std::string rest;
  for (auto call = calls.begin() + 11; call != calls.end(); ++call) rest += call->first + " ";
  EXPECT_EQ(rest,
            "SerialNum PartNum DeviceDriverVersion ClusterSolutionVersion CopyBackEnabled "
            "ControllerSlotInfo ControllerName ScsiChannelDescr InitiatorChannelScsiId "
            "MaxPhysicalDevices DefunctDiskDriveCnt LogicalDriveStatusCnt ReadAhead "
            "StripeUnitSize RebuildRate HotSwapRebuild DataScrubbing HotSpareCopyBack "
            "PartOfCluster UnattendedMode ConcurrentCommandsSupported ConfigurationUpdateCount "
            "Current_MostRecentOperation Logical_Drive BackgroundOperationActive LastCmdStatus "
            "LogicalDriveSizeInStripes NumberOfRemainingStripes VPD ECVersion ControllerFRU "
            "ControllerBatteryStatus ControllerBatteryOverTemp ControllerBatteryCapacity "
            "ControllerBatteryFRU BatteryTimeRemaining commit ");
}

TEST_F(Publishing, SetsThePropertiesOfPartsInTheirOrder) {
  host_.outputs["./kraid/kelvcmd getconfig 2 al"] =
      "Controller information\n"
      "Logical drive information\nrule\nLogical drive number 7 \nStatus of logical drive : 1\n"
      "Additional information : 2\nRAID level : 3\nSize (in MB) : 4\nWrite cache status : 5\n"
      "Number of chunks : 6\nStripe-unit size : 7\nAccess blocked : 8\nPart of array : 9\n"
      "Part of merge group : 10\n"
      "Array A stripe order (Channel/SCSI ID) : 11\n"
      "Physical device information\nrule\nChannel #1:\nrule\nTarget\nDevice is a Hard disk\n"
      "SCSI ID : 12\nPFA (Yes/No) : 13\nState : 14\nSize (in MB)/(in sectors) : 15\n"
      "Device ID :0123456789abcdefghijklmnopqrst\nFRU part number : 16\n"
      "Command completed successfully\n";
  host_.outputs["./kraid/kelvcmd getbst 2 device"] =
      "Get bad stripe information\nLogical drive 7 - 17 x\nend\n";
  host_.outputs["./kraid/kelvcmd getevent 2 device"] =
      "Device event table:\n1\n2\n| 1 | 12 | 3 | 4 | 5 | 6 | 7 |\n"
      "Command completed successfully\n";
  host_.outputs["./kraid/kelvcmd getevent 2 ddd"] =
      "+---+\n1 | 03/15/2004 | 14:02:09 | 1 | 3 | 05 | failed\nCommand completed successfully\n";
  host_.outputs["./kraid/kelvcmd getevent 2 soft"] =
      "Controller Soft Event Log\n1A\nff\nCommand completed successfully\n";
  host_.outputs["./kraid/kelvcmd getevent 2 hard"] =
      "Controller Hard Event Log\nCommand completed successfully\n";
  host_.outputs["./kraid/kelvcmd getsubstat 2 device"] =
      "A:9 C:1 I:2 PARAMS:3 REQ-OFF:4 MAX-TXER-P:5 CUR-TXER-P:6 \n"
      "Command completed successfully\n";
  const struct {
    const char* class_name;
    const char* settings;  // without line ends
  } cases[] = {
      {"KVXSG_krLogicalDisk",
       "create= DeviceID=KelvaRAID2LD7 SystemCreationClassName=KVXSG_ComputerSystem "
       "CreationClassname=KVXSG_krLogicalDisk SystemName=testhost AccessBlocked= 8 "
       "ControllerNum=2 LogicalDriveNum=7 LogicalDriveStatus= 1 NumOfChunks= 6 PartOfArray= 9 "
       "PartOfMergeGroup= 10 RaidLevel= 3 Size= 4 StripeUnitSize= 7 WriteCacheStatus= 5 "
       "WriteCacheSetting= NumOfChunks= 6 LogicalDriveName= ReadCacheStatus= DriveList= commit= "},
      {"KVXSG_krDiskGroup",
       "create= CollectionID=KelvaRAID2ArrayA Array=A ControllerNum=2 StripeOrder= 11 commit= "},
      {"KVXSG_krDiskDrive",
       "create= OtherIdentifyingInfo={ Hard disk, Channel:1|SCSI ID: 12} "
       "DeviceID=C2 CH1 I12:0123456789abcdefghijklmnopqrst "
       "SystemCreationClassName=KVXSG_ComputerSystem CreationClassname=KVXSG_krDiskDrive "
       "SystemName=testhost ControllerNum=2 Channel=1 ScsiId= 12 DeviceType= Hard disk PFA= 13 "
       "State= 14 Size= 15 DeviceCode=0123456789abcdef DeviceSerialNum=klmnopqr FRU= 16 "
       "Firmware=hijk Vendor= Model= Enclosure= TransferSpeed= ReportedChannel= WorldWideName= "
       "WriteCache= commit= "},
      {"KVXSG_BadStripeData",
       "create= InstanceID=KelvaRAID:2LD7 ControllerNum=2 LogicalDrive=7 NumBadStripes=17 "
       "commit= "},
      {"KVXSG_krSCSIDeviceData",
       "create= InstanceID=KelvaRAID:2C1S12 StatisticTime=20240517102030.000400+120 "
       "ControllerNum=2 Channel=1 Misc=7 NumHardErrors=5 NumParityErrors=3 NumSoftErrors=4 PFA=6 "
       "ScsiId=12 commit= "},
      {"KVXSG_krSCSISubStatData",
       "create= ControllerNum=9 StatisticTime=20240517102030.000400+120 Channel=1 ScsiId=2 "
       "InstanceID=KelvaRAID:9C1S2 Params=3 Req_Off=4 Max_Txer_P=5 Cur_Txer_p=6 commit= "},
      {"KVXSG_LogRecord_SoftEvent",
       "create= CreationClassName=KVXSG_LogRecord_SoftEvent "
       "LogCreationClassName=KVXSG_LogRecord_SoftEvent LogName=KVXSG_LogRecord_SoftEvent "
       "MessageTimestamp=20000101010101.000001+001 RecordID=1 ControllerNum=2 "
       "NumEntries=Controller Soft Event Log HexSoftEvent={26, 255} commit= "},
      {"KVXSG_LogRecord_HardEvent",
       "create= CreationClassName=KVXSG_LogRecord_SoftEvent "
       "LogCreationClassName=KVXSG_LogRecord_SoftEvent LogName=KVXSG_LogRecord_SoftEvent "
       "ControllerNum=2 MessageTimestamp=20000101010101.000001+001 RecordID=1 "
       "NumEntries=Controller Hard Event Log HexHardEvent={} commit= "},
      {"KVXSG_LogRecord_krDDD",
       "create= CreationClassName=KVXSG_LogRecord_krDDD LogCreationClassName=KVXSG_LogRecord_krDDD "
       "LogName=KVXSG_LogRecord_krDDD Controller=2 MessageTimestamp=20040315140209.000000+000 "
       "RecordID=0001 Date=03/15/2004 Time=14:02:09 Channel=1 ID=3 Reason=05 Descrip=failed "
       "commit= "},
      {"KVXSG_LogRecord_RAIDMgrEvent", ""},  // no manager here
  };
  for (const auto& c : cases) {
    std::string settings;
    for (const auto& [name, value] : CallsOf(c.class_name)) settings += name + "=" + value + " ";
    settings.erase(std::remove(settings.begin(), settings.end(), '\n'), settings.end());
    EXPECT_EQ(settings, c.settings);
  }
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
    Publish(class_name, {nullptr, recorder, collector, manager_log});
    std::string settings;
    for (const auto& [name, value] : recorder->calls) settings += name + "=" + value + " ";
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
