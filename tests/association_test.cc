// Versions and associations, most of them of the machine in data/associations.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <boost/make_shared.hpp>

#include "plugin/dispatch.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/repository.h"
#include "standin/schema.h"
#include "tests/fake_host.h"

namespace {

using NKVXHMZ20::TCIMValue;
using Texts = std::vector<std::string>;

class Associations : public testing::Test {
 protected:
  void Collect() {
    host_.Load("associations");
    collector_.InitData();
  }

  void Publish(const Texts& classes) {
    for (const std::string& name : classes) {
      ::Publish("KVXSG_" + name,
                {repository_, repository_->GetClass("KVXSG_" + name), collector_, manager_log_});
    }
  }

  /// Commits an instance by hand. Its keys are "x" where nothing else is given.
  void Commit(const std::string& class_name, std::map<std::string, TCIMValue> values) {
    for (const standin::SchemaClass& cim_class : standin::Schema()) {
      if (cim_class.name != "KVXSG_" + class_name) continue;
      for (const std::string_view key : cim_class.keys) values.try_emplace(std::string(key), "x");
    }
    repository_->GetClass("KVXSG_" + class_name)->CreateInstance(values)->Commit({});
  }

  /// A property of all instances of a class, or of an association both ends by their identifiers;
  /// "\n" as "$".
  Texts All(const std::string& class_name, const std::string& property = "") const {
    Texts texts;
    for (const auto& instance : repository_->GetCommitted()) {
      if (*instance->class_name != "KVXSG_" + class_name) continue;
      std::string text;
      for (const auto& [name, value] : instance->properties) {
        if (*name == property) text = value.ToString();
        if (value.GetType().GetCode() != TCIMValue::kReference) continue;
        for (const auto& [key, id] : value.GetReference().GetKeys()) {
          if (key.ends_with("ID")) text += " " + *name + " " + id.ToString();
        }
      }
      std::replace(text.begin(), text.end(), '\n', '$');
      texts.push_back(text);
    }
    return texts;
  }

  FakeHost host_;
  KraidCollectData collector_{nullptr};
  CollectRaidMgrData manager_log_{nullptr, "/absent/"};
  boost::shared_ptr<standin::Repository> repository_ = boost::make_shared<standin::Repository>();
};

TEST_F(Associations, TieEachPartToItsController) {
  Collect();
  Publish({"krProtocolControllerForUnit", "krStripeOrderForController"});
  EXPECT_TRUE(repository_->GetCommitted().empty());  // no ends yet
  Publish({"krLogicalDisk", "krDiskGroup", "krProtocolControllerForUnit"});
  EXPECT_EQ(All("krProtocolControllerForUnit"), Texts{});
  Publish({"krSCSIProtocolController", "krLogicalDisk", "krDiskDrive", "krSCSIProtocolController",
           "krProtocolControllerForUnit", "krStripeOrderForController",
           "krProtocolControllerForPhysicalDisk"});
  // Each of the doubled disks once, in the order of their commits.
  EXPECT_EQ(All("krProtocolControllerForUnit"),
            (Texts{" Dependent KelvaRAID1LD0 Antecedent KelvaRAID1",
                   " Dependent KelvaRAID1LD1 Antecedent KelvaRAID1",
                   " Dependent KelvaRAID1LD0 Antecedent KelvaRAID1",
                   " Dependent KelvaRAID1LD1 Antecedent KelvaRAID1",
                   " Dependent KelvaRAID2LD0 Antecedent KelvaRAID2",
                   " Dependent KelvaRAID2LD0 Antecedent KelvaRAID2"}));
  EXPECT_EQ(All("krStripeOrderForController"),
            (Texts{" Dependent KelvaRAID1ArrayA Antecedent KelvaRAID1",
                   " Dependent KelvaRAID2ArrayA Antecedent KelvaRAID2"}));
  EXPECT_EQ(All("krProtocolControllerForPhysicalDisk").size(), 11U);
}

TEST_F(Associations, TakeTheFirstOfSeveralControllersWithOneNumber) {
  Collect();
  for (const char* id : {"first", "second"}) {
    Commit("krSCSIProtocolController", {{"DeviceID", id}, {"ControllerNum", "2"}});
  }
  Publish({"krLogicalDisk", "krProtocolControllerForUnit"});
  EXPECT_EQ(All("krProtocolControllerForUnit"), Texts{" Dependent KelvaRAID2LD0 Antecedent first"});
}

TEST_F(Associations, NameVersionsAndTieThemToWhereTheyRun) {
  Collect();
  Publish({"krSCSIProtocolController", "krDiskDrive", "krFirmwareVersion", "krBootBlockVersion",
           "krDiskDriveVersion", "krFirmwareOnController", "krBootBlockOnController"});
  EXPECT_EQ(All("krFirmwareOnController"), Texts{" Dependent KelvaRAID1 Antecedent 1"});
  EXPECT_EQ(All("krBootBlockOnController"), Texts{" Dependent KelvaRAID1 Antecedent 1"});
  // Only disks get a firmware level from kelvcmd; a type of several words shows what comes first.
  EXPECT_EQ(All("krDiskDriveVersion", "Name"), Texts(3, "KelvaRAID Disk"));

  // By its name, unlike the two above.
  Commit("krBiosVersion", {{"Name", "another BIOS"}, {"SoftwareElementID", "1"}});
  Commit("krBiosVersion", {{"Name", "KelvaRAID1 BIOS"}, {"SoftwareElementID", "by its name"}});
  Publish({"krBiosVersion", "krBiosOnController"});
  EXPECT_EQ(All("krBiosOnController"), (Texts{" Dependent KelvaRAID1 Antecedent by its name",
                                              " Dependent KelvaRAID2 Antecedent 2"}));

  // Versions that no tool gives to such a device.
  for (const char* type : {"Hard disk", "Hard drive", "Processor device", "Enclosure", "Unknown",
                           "Tape", "hard disk", "Processor"}) {
    Commit("krDiskDriveVersion",
           {{"SoftwareElementID", std::string("1-C1 CH2 I00:") + type + "\n"}});
  }
  Publish({"krFirmwareOnDiskDrive"});
  Texts expected;
  for (const std::string drive :
       {"C1 CH2 I00:Hard disk$", "C1 CH2 I00:Hard drive$", "C1 CH2 I00:Processor device$",
        "C1 CH2 I00:Enclosure$", "C1 CH2 I00:Unknown$",
        "C1 CH2 I03:0123456789abcdefghijklmnopqrst$", "C1 CH2 I04:0123456789abcdefghijklmnopqrst$",
        "C1 CH2 I05:0123456789abcdefghijklmnopqrst$"}) {
    expected.push_back(" Dependent " + drive);
    expected.back().append(" Antecedent 1-").append(drive);
  }
  EXPECT_EQ(All("krFirmwareOnDiskDrive"), expected);
}

TEST_F(Associations, TieStatisticsToTheirDrives) {
  // Only devices whose line has no colon have the SCSI ID as the statistics have it: none.
  Collect();
  Publish({"krSCSIDeviceData", "ElementKrScsiDeviceData"});
  EXPECT_EQ(All("ElementKrScsiDeviceData"), Texts{});  // without a drive there is none
  Publish({"krDiskDrive", "ElementKrScsiDeviceData"});
  Texts expected;
  for (const std::string type : {"Hard disk", "Hard drive", "Processor device", "Tape"}) {
    const std::string ends = " Stats KelvaRAID:1C2S ManagedElement C1 CH2 I00:" + type + "$";
    expected.insert(expected.end(), 2, ends);  // each of the two rows
  }
  EXPECT_EQ(All("ElementKrScsiDeviceData"), expected);
}

TEST_F(Associations, TieBadStripesToDisksByNumbersThatRunTogether) {
  using Row = std::array<const char*, 3>;
  for (const auto& [controller, drive, id] :
       {Row{"1", "12", "a"}, {"11", "2", "b"}, {"1", "3", "c"}}) {
    Commit("krLogicalDisk",
           {{"ControllerNum", controller}, {"LogicalDriveNum", drive}, {"DeviceID", id}});
  }
  for (const auto& [controller, drive, id] :
       {Row{"1", "12", "A"}, {"1", "1", "B"}, {"11", "2", "C"}}) {
    Commit("BadStripeData",
           {{"ControllerNum", controller}, {"LogicalDrive", drive}, {"InstanceID", id}});
  }
  Publish({"ElementBadStripeData"});
  EXPECT_EQ(All("ElementBadStripeData"),
            (Texts{" Stats A ManagedElement a", " Stats C ManagedElement a",
                   " Stats A ManagedElement b", " Stats C ManagedElement b"}));
}

TEST_F(Associations, FormDeviceIdentifiersFromNumbersAndTexts) {
  const std::pair<const char*, const char*> cases[] = {
      {"5", "05"},  {" \t0123\r", "123"}, {"none", "00"},       {"7,8", "07"},
      {"-3", "-3"}, {"", "00"},           {"4294967297", "01"},
  };
  std::string config =
      "Controller information\nPhysical device information\nrule\nChannel #2:\nrule\n";
  Texts expected;
  for (const auto& [scsi_id, number] : cases) {
    config.append("Target\n1\nSCSI ID :").append(scsi_id).append("\n2\n3\n4\nDevice ID :x\n");
    expected.push_back(std::string("C1 CH2 I") + number + ":x$");
  }
  host_.outputs["./kraid/kelvcmd getconfig 1 al"] = config + "Command completed successfully\n";
  collector_.InitData();
  Publish({"krDiskDrive"});
  EXPECT_EQ(All("krDiskDrive", "DeviceID"), expected);
  EXPECT_EQ(All("krDiskDrive", "OtherIdentifyingInfo").at(1), "{, Channel:2|SCSI ID: \t0123\r$}");
}

}  // namespace
