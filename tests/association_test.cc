// Publishing of drives, arrays, devices and versions, and the associations between them.

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "model/kraid_physical_device.h"
#include "plugin/dispatch.h"
#include "plugin/identifiers.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/repository.h"
#include "tests/fake_host.h"

namespace {

using Texts = std::vector<std::string>;

std::string Device(const std::string& type, const std::string& scsi_id, const std::string& id) {
  return "Target\nDevice is a" + type + "\nSCSI ID :" + scsi_id +
         "\nPFA (Yes/No) : No\nState : ONL\nSize (in MB)/(in sectors) : 1/2\nDevice ID :" + id +
         "\n";
}

std::string Config(const std::string& versions, const std::string& devices) {
  return "Controller information\n" + versions +
         "Logical drive information\nrule\nLogical drive number 0 \n"
         "Status of logical drive : OKY\nRAID level : 5\nSize (in MB) : 1\n"
         "Write cache status : WB\nNumber of chunks : 3\nStripe-unit size : 16K\n"
         "Access blocked : No\nPart of array : A\n"
         "Array A stripe order (Channel/SCSI ID) : 1,0\n"
         "Physical device information\nrule\nChannel #2:\nrule\n" +
         devices + "Command completed successfully\n";
}

class Associations : public testing::Test {
 protected:
  void Collect(const std::string& config_1, const std::string& config_2) {
    host_.outputs["./kraid/kelvcmd getconfig 1 al"] = config_1;
    host_.outputs["./kraid/kelvcmd getconfig 2 al"] = config_2;
    collector_.InitData();
  }

  void Publish(const Texts& classes) {
    for (const std::string& name : classes) {
      ::Publish("KVXSG_" + name,
                {repository_, repository_->GetClass("KVXSG_" + name), collector_, manager_log_});
    }
  }

  /// A property of all committed instances of a class.
  Texts All(const std::string& class_name, const std::string& property) const {
    Texts texts;
    for (const auto& instance : repository_->GetCommitted()) {
      if (*instance->class_name == "KVXSG_" + class_name) {
        texts.push_back(instance->Find(property)->ToString());
      }
    }
    return texts;
  }

  /// The ends of all associations of a class, by one key of each end.
  Texts Ends(const std::string& class_name, const std::string& dependent_key,
             const std::string& antecedent_key) const {
    const auto key_of = [](const NKVXHMZ20::TCIMValue& path, const std::string& key) {
      for (const auto& [name, value] : path.GetReference().GetKeys()) {
        if (name == key) return value.ToString();
      }
      return std::string("no key " + key);
    };
    Texts texts;
    for (const auto& instance : repository_->GetCommitted()) {
      if (*instance->class_name != "KVXSG_" + class_name) continue;
      EXPECT_EQ(*instance->properties[0].name, "Dependent");
      EXPECT_EQ(*instance->properties[1].name, "Antecedent");
      texts.push_back(key_of(instance->properties[0].value, dependent_key) + " of " +
                      key_of(instance->properties[1].value, antecedent_key));
    }
    return texts;
  }

  FakeHost host_;
  KraidCollectData collector_{nullptr};
  CollectRaidMgrData manager_log_{nullptr, "/absent/"};
  boost::shared_ptr<standin::Repository> repository_ = boost::make_shared<standin::Repository>();
};

TEST_F(Associations, TieEachPartToTheFirstInstanceOfItsController) {
  Collect(Config("", Device(" Tape", "4", "t") + Device(" Tape", "5", "u")), Config("", ""));
  Publish({"krProtocolControllerForUnit", "krStripeOrderForController"});
  EXPECT_TRUE(repository_->GetCommitted().empty());  // no ends yet
  Publish({"krLogicalDisk", "krDiskGroup", "krProtocolControllerForUnit"});
  EXPECT_EQ(Ends("krProtocolControllerForUnit", "DeviceID", "DeviceID"), Texts{});
  Publish({"krSCSIProtocolController", "krDiskDrive", "krDiskDrive", "krProtocolControllerForUnit",
           "krSCSIProtocolController", "krStripeOrderForController",
           "krProtocolControllerForPhysicalDisk"});
  EXPECT_EQ(Ends("krProtocolControllerForUnit", "DeviceID", "DeviceID"),
            (Texts{"KelvaRAID1LD0 of KelvaRAID1", "KelvaRAID2LD0 of KelvaRAID2"}));
  EXPECT_EQ(Ends("krStripeOrderForController", "CollectionID", "DeviceID"),
            (Texts{"KelvaRAID1ArrayA of KelvaRAID1", "KelvaRAID2ArrayA of KelvaRAID2"}));
  // Each of the doubled drives once, in the order of their commits.
  EXPECT_EQ(Ends("krProtocolControllerForPhysicalDisk", "DeviceID", "DeviceID"),
            (Texts{"C1 CH2 I04:t\n of KelvaRAID1", "C1 CH2 I05:u\n of KelvaRAID1",
                   "C1 CH2 I04:t\n of KelvaRAID1", "C1 CH2 I05:u\n of KelvaRAID1"}));
}

TEST_F(Associations, TakeTheFirstOfSeveralControllersWithOneNumber) {
  Collect(Config("", ""), "");
  const auto controllers = repository_->GetClass("KVXSG_krSCSIProtocolController");
  for (const char* id : {"first", "second"}) {
    const auto instance = controllers->CreateInstance({});
    for (const char* key : {"SystemCreationClassName", "SystemName", "CreationClassname"}) {
      instance->SetPropertyValue(key, "x", {});
    }
    instance->SetPropertyValue("DeviceID", id, {});
    instance->SetPropertyValue("ControllerNum", "1", {});
    instance->Commit({});
  }
  Publish({"krLogicalDisk", "krProtocolControllerForUnit"});
  EXPECT_EQ(Ends("krProtocolControllerForUnit", "DeviceID", "DeviceID"),
            Texts{"KelvaRAID1LD0 of first"});
}

TEST_F(Associations, PublishVersionsAndWhereTheyRun) {
  Collect(Config("Firmware version : f1\nBoot block version : b1\nActual BIOS version : a1\n",
                 Device(" Hard disk", "2", "0123456789abcdefghijklmnopqrst") +
                     Device(" Hard disk", "3", "short") +
                     Device(" Processor device", "4", "0123456789abcdefghijklmnopqrst")),
          Config("Actual BIOS version : a2\n", ""));
  Publish({"krSCSIProtocolController", "krDiskDrive", "krFirmwareVersion", "krBootBlockVersion",
           "krDiskDriveVersion", "krBiosVersion", "krFirmwareOnController",
           "krBootBlockOnController", "krFirmwareOnDiskDrive", "krBiosOnController"});
  Texts versions;
  for (const auto& instance : repository_->GetCommitted()) {
    if (instance->class_name->find("Version") == std::string::npos) continue;
    std::string text;
    for (const auto& [name, value] : instance->properties) {
      text += *name + "=" + value.ToString() + ";";
    }
    versions.push_back(text);
  }
  const auto expected = [](const std::string& name, const std::string& version,
                           const std::string& id) {
    return "Name=" + name + ";Version=" + version +
           ";SoftwareElementState=3;SoftwareElementID=" + id + ";TargetOperatingSystem=66;";
  };
  const std::string drive = "C1 CH2 I02:0123456789abcdefghijklmnopqrst\n";
  EXPECT_EQ(versions, (Texts{expected("KelvaRAID Firmware", "f1\n", "1"),
                             expected("KelvaRAID Boot Block", "b1\n", "1"),
                             expected("KelvaRAID Disk", "hijk", "1-" + drive),
                             expected("KelvaRAID1 BIOS", "a1\n", "1"),
                             expected("KelvaRAID2 BIOS", "a2\n", "2")}));
  EXPECT_EQ(Ends("krFirmwareOnController", "DeviceID", "Name"),
            Texts{"KelvaRAID1 of KelvaRAID Firmware"});
  EXPECT_EQ(Ends("krBootBlockOnController", "DeviceID", "Name"),
            Texts{"KelvaRAID1 of KelvaRAID Boot Block"});
  EXPECT_EQ(Ends("krBiosOnController", "DeviceID", "Name"),
            (Texts{"KelvaRAID1 of KelvaRAID1 BIOS", "KelvaRAID2 of KelvaRAID2 BIOS"}));
  EXPECT_EQ(Ends("krFirmwareOnDiskDrive", "DeviceID", "SoftwareElementID"),
            Texts{drive + " of 1-" + drive});
}

TEST_F(Associations, KnowWhichTypesAndPropertiesCount) {
  // Ends that the tools give to no such device: a version for each, committed by hand.
  const Texts types = {"Hard disk", "Hard drive", "Processor device", "Enclosure",
                       "Unknown",   "Tape",       "hard disk",        "Processor"};
  host_.outputs["./kraid/kelvcmd getevent 1 device"] =
      "Device event table:\n1\n2\n| 2 | | 1 |\nCommand completed successfully\n";
  std::string devices;
  for (const std::string& type : types) {
    std::string device = Device(" " + type, "", type);
    devices += device.replace(device.find("SCSI ID :"), 9, "SCSI ID ");
  }
  Collect(Config("Actual BIOS version : a\n", devices), "");
  Publish({"krSCSIProtocolController", "krDiskDrive", "krSCSIDeviceData"});
  const auto commit = [&](const char* class_name, const std::string& name, const std::string& id) {
    const auto version = repository_->GetClass(class_name)->CreateInstance({});
    version->SetPropertyValue("Name", name, {});
    version->SetPropertyValue("SoftwareElementID", id, {});
    for (const char* key : {"Version", "SoftwareElementState", "TargetOperatingSystem"}) {
      version->SetPropertyValue(key, "x", {});
    }
    version->Commit({});
  };
  const auto disk = [](const std::string& type) { return "C1 CH2 I00:" + type + "\n"; };
  for (const std::string& type : types) {
    commit("KVXSG_krDiskDriveVersion", type, "1-" + disk(type));
  }
  commit("KVXSG_krBiosVersion", "another BIOS", "1");
  commit("KVXSG_krBiosVersion", "KelvaRAID1 BIOS", "by its name");
  Publish({"krFirmwareOnDiskDrive", "krBiosOnController", "ElementKrScsiDeviceData"});
  Texts with_firmware;
  for (const std::size_t i : {0U, 1U, 2U, 3U, 4U})
    with_firmware.push_back(disk(types[i]) + " of " + types[i]);
  EXPECT_EQ(Ends("krFirmwareOnDiskDrive", "DeviceID", "Name"), with_firmware);
  EXPECT_EQ(Ends("krBiosOnController", "DeviceID", "SoftwareElementID"),
            Texts{"KelvaRAID1 of by its name"});
  Texts with_statistics;
  for (const auto& instance : repository_->GetCommitted()) {
    if (*instance->class_name != "KVXSG_ElementKrScsiDeviceData") continue;
    with_statistics.push_back(
        instance->properties[1].value.GetReference().GetKeys()[3].second.ToString());
  }
  EXPECT_EQ(with_statistics,
            (Texts{disk(types[0]), disk(types[1]), disk(types[2]), disk(types[5])}));
}

TEST_F(Associations, NameFirmwareByTheDevicesType) {
  // Only disks get a firmware level from kelvcmd, so a type that holds several words shows what
  // comes first.
  const std::string id = "0123456789abcdefghijklmnopqrst";
  Collect(Config("", Device(" Unknown Hard disk", "1", id) +
                         Device("Hard disk Enclosure", "2", id) + Device(" hard disk", "3", id)),
          "");
  Publish({"krDiskDriveVersion"});
  EXPECT_EQ(All("krDiskDriveVersion", "Name"), (Texts{"KelvaRAID Disk", "KelvaRAID Disk"}));
}

TEST_F(Associations, TieStatisticsToTheirDrives) {
  // Channel 2 comes without a line end, and so has the SCSI ID to: a line without a colon has none.
  std::string device = Device(" Hard disk", "", "d");
  device.replace(device.find("SCSI ID :"), 9, "SCSI ID ");
  std::string enclosure = Device(" Enclosure", "", "e");
  enclosure.replace(enclosure.find("SCSI ID :"), 9, "SCSI ID ");
  host_.outputs["./kraid/kelvcmd getevent 1 device"] =
      "Device event table:\n1\n2\n| 2 | | 1 |\n| 2 | 5 | 1 |\n| 2 | | 2 |\n"
      "Command completed successfully\n";
  Collect(Config("", device + Device(" Hard disk", "5", "five") + enclosure), "");
  const std::string association = "ElementKrScsiDeviceData";
  const auto ends = [&] {
    Texts texts;
    for (const auto& instance : repository_->GetCommitted()) {
      if (*instance->class_name != "KVXSG_" + association) continue;
      EXPECT_EQ(*instance->properties[0].name, "Stats");
      EXPECT_EQ(*instance->properties[1].name, "ManagedElement");
      texts.push_back(instance->properties[0].value.ToString() + " of " +
                      instance->properties[1].value.GetReference().GetKeys()[3].second.ToString());
    }
    return texts;
  };
  Publish({"krSCSIDeviceData", association});
  EXPECT_EQ(ends(), Texts{});  // without a drive there is none
  Publish({"krDiskDrive", association});
  const std::string one = "KVXSG_krSCSIDeviceData.InstanceID=\"KelvaRAID:1C2S\" of C1 CH2 I00:d\n";
  EXPECT_EQ(ends(), (Texts{one, one}));  // each of the two rows
}

TEST_F(Associations, TieBadStripesToDisksByNumbersThatRunTogether) {
  const auto commit = [&](const char* class_name, const Texts& names, const Texts& values) {
    const auto instance = repository_->GetClass(class_name)->CreateInstance({});
    for (const char* key : {"SystemCreationClassName", "SystemName", "CreationClassname"}) {
      instance->SetPropertyValue(key, "x", {});
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
      instance->SetPropertyValue(names[i], values[i], {});
    }
    instance->Commit({});
  };
  for (const Texts& values : {Texts{"1", "12", "a"}, Texts{"11", "2", "b"}, Texts{"1", "3", "c"}}) {
    commit("KVXSG_krLogicalDisk", {"ControllerNum", "LogicalDriveNum", "DeviceID"}, values);
  }
  for (const Texts& values : {Texts{"1", "12", "A"}, Texts{"1", "1", "B"}, Texts{"11", "2", "C"}}) {
    commit("KVXSG_BadStripeData", {"ControllerNum", "LogicalDrive", "InstanceID"}, values);
  }
  Publish({"ElementBadStripeData"});
  Texts ends;
  for (const auto& instance : repository_->GetCommitted()) {
    if (*instance->class_name != "KVXSG_ElementBadStripeData") continue;
    ends.push_back(instance->Find("Stats")->GetReference().GetKeys()[0].second.ToString() +
                   instance->Find("ManagedElement")->GetReference().GetKeys()[3].second.ToString());
  }
  EXPECT_EQ(ends, (Texts{"Aa", "Ca", "Ab", "Cb"}));
}

TEST_F(Associations, FormDeviceIdentifiersFromNumbersAndTexts) {
  const struct {
    const char* scsi_id;
    const char* identifier;
  } cases[] = {
      {"5", "C1 CH2 I05:x\n"},          {" \t0123\r", "C1 CH2 I123:x\n"},
      {"none", "C1 CH2 I00:x\n"},       {"7,8", "C1 CH2 I07:x\n"},
      {"-3", "C1 CH2 I-3:x\n"},         {"", "C1 CH2 I00:x\n"},
      {"4294967297", "C1 CH2 I01:x\n"},
  };
  std::string devices;
  for (const auto& c : cases) devices += Device("", c.scsi_id, "x");
  Collect(Config("", devices), "");
  Publish({"krDiskDrive"});
  Texts expected;
  Texts info;
  for (const auto& c : cases) {
    expected.emplace_back(c.identifier);
    info.push_back("{\n, Channel:2|SCSI ID:" + std::string(c.scsi_id) + "\n}");
  }
  EXPECT_EQ(All("krDiskDrive", "DeviceID"), expected);
  EXPECT_EQ(All("krDiskDrive", "OtherIdentifyingInfo"), info);
  EXPECT_EQ(All("krDiskDrive", "Channel").front(), "2");
}

}  // namespace
