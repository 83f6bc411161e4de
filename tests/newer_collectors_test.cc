// The collectors of hrconf and arcconf, and the driver over all three.

#include <gtest/gtest.h>

#include <stdexcept>

#include "collect/arcconf_data.h"
#include "collect/hrconf_data.h"
#include "collect/kraid_collect_data.h"
#include "collect/return_string_data.h"
#include "model/array_stripe_order.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "tests/fake_host.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kHeading[] = "Controller information\n";
constexpr char kEnd[] = "Command completed successfully\n";

/// Number, drives, arrays and devices of each controller.
Texts Describe(const std::vector<KRaidController*>& controllers) {
  Texts texts;
  for (const KRaidController* controller : controllers) {
    std::string text = controller->GetControllerNum() + ":";
    for (const KRaidLogicalDevice* drive : controller->GetLogicalDevices()) {
      text += " LD" + drive->GetControllerNum() + "/" + drive->GetLogicalDriveNum();
    }
    for (const ArrayStripeOrder* order : controller->GetArrayStripeOrder()) {
      text += " A" + order->GetCollectionID();
    }
    for (const KRaidPhysicalDevice* device : controller->GetPhysicalDevices()) {
      text += " D" + device->GetControllerNum() + "/" + device->GetChannelNum() + "/" +
              device->GetDeviceNum() + "/" + device->GetScsiID();
    }
    texts.push_back(text);
  }
  return texts;
}

Texts CommandsOf(const std::vector<KRaidRawData*>& records) {
  Texts commands;
  for (const KRaidRawData* record : records) commands.push_back(record->GetCommand());
  return commands;
}

std::string HrDrive(const std::string& heading) {
  return heading + "Size : 1\nNumber of chunks : 2\n";
}

std::string Order(const char* drives) {
  return std::string("Stripe order (Channel,Device) :") + drives + "\n";
}

std::string Tape(const char* heading) { return std::string(heading) + "\nDevice is a Tape\n"; }

TEST(HrconfData, WalksDrivesAndTheirStripeOrders) {
  FakeHost host;
  host.outputs["./kraid/hrconf getconfig 1 al"] =
      std::string(kHeading) + "Logical drive information\nrule\n" +
      HrDrive("Logical drive number 12 \n") + "Read-ahead size : 5\n" + Order(" 0,0") +
      HrDrive("Logical drive number 3\r\n") + "no order here\n" +
      HrDrive("Logical drive number\n") + Order(" 0,3") + "end\n" +
      HrDrive("Logical drive number 5 \n") + kEnd;
  // Without a number of its own a drive has that of the controller before.
  host.outputs["./kraid/hrconf getconfig 2 al"] =
      std::string(kHeading) + "Logical drive information\nrule\n" +
      HrDrive("Logical drive number\n") + "filler\nend\n";
  host.outputs["./kraid/hrconf getconfig 3 al"] =
      std::string(kHeading) + "Logical drive information\nrule\nnone\n";
  HrconfData collector(nullptr);
  collector.InitData(5);
  EXPECT_EQ(Describe(collector.GetControllers()),
            (Texts{"6: LD6/12 LD6/3 LD6/3 AKelvaRaidCntrlr6LogicalDrv12 0,0\n "
                   "AKelvaRaidCntrlr6LogicalDrv3 0,3\n",
                   "7: LD7/3", "8:"}));
}

TEST(HrconfData, PassesOverOneSizeLineAndOtherHeadings) {
  FakeHost host;
  host.outputs["./kraid/hrconf getconfig 1 al"] =
      std::string(kHeading) + "Logical drive information\nrule\n" +
      HrDrive("Logical drive number 1 \n") + "a size\nb size\n" + Order(" 0,0") + "end\n" +
      "Physical device information\nrule\nChannel #1:\nmode\n" + Tape("Device #0") + kEnd;
  host.outputs["./kraid/hrconf getconfig 2 al"] =
      std::string(kHeading) + "Logical drive information\nrule\n" +
      HrDrive("Logical drive number\n") + "filler\nend\n";
  HrconfData collector(nullptr);
  collector.InitData(0);
  EXPECT_EQ(Describe(collector.GetControllers()), (Texts{"1: LD1/1", "2: LD2/1"}));
  // Each call begins without a number.
  host.outputs["./kraid/hrconf getconfig 1 al"] = "";
  collector.InitData(0);
  EXPECT_EQ(Describe(collector.GetControllers()).back(), "2: LD2/");
  host.outputs["./kraid/hrconf a 2 b"] = "printed";
  EXPECT_EQ(collector.GatherData("a", "b", 2), "printed");
}

TEST(HrconfData, WalksChannelsAndTheirDevices) {
  FakeHost host;
  host.outputs["./kraid/hrconf getconfig 1 al"] =
      std::string(kHeading) + "Physical drive information\nrule\nblank\nChannel #1: x\nmode\n" +
      "Initiator at SCSI ID 7\n" + Tape(" Device #0   ") + Tape("Device #15  more") +
      "Channel #22:\nmode\n" + Tape("Device #3") +
      "Channel #no colon\nmode\nInitiator at SCSI ID 7\n" + Tape("Device #4") + kEnd +
      Tape("Device #5");
  HrconfData collector(nullptr);
  collector.InitData(0);
  EXPECT_EQ(Describe(collector.GetControllers()),
            Texts{"1: D1/1/Device #0   /0   \n D1/1/Device #15  /15  more\n"
                  " D1/22/Device #3\n/3\n D1/no colon\n/Device #4\n/4\n"});
}

TEST(HrconfData, KeepsOutputsAndReadsTheStatusInAnyCase) {
  FakeHost host;
  host.outputs["./kraid/hrconf getconfig 1 al"] = kHeading;
  host.outputs["./kraid/hrconf getstatus 1 device"] = "Status : fine\n";
  host.outputs["./kraid/hrconf getconfig 4 al"] = kHeading;
  host.outputs["./kraid/hrconf getconfig 6 al"] = "Controller 6 is not present.\n";
  HrconfData collector(nullptr);
  collector.InitData(2);
  EXPECT_EQ(CommandsOf(collector.GetRawDataVector()),
            (Texts{"./kraid/hrconf getconfig 1 al", "./kraid/hrconf getstatus 1 device",
                   "./kraid/hrconf getconfig 4 al", "./kraid/hrconf getconfig 6 al"}));
  EXPECT_EQ(Describe(collector.GetControllers()), (Texts{"3:", "6:"}));
  EXPECT_EQ(collector.GetControllers()[0]->GetControllerLastCommandStatus(), " fine\n");
  EXPECT_EQ(collector.GetControllers()[1]->GetControllerLastCommandStatus(), "");
  ASSERT_EQ(host.runs.size(), 16U + 8U + 2U);
  EXPECT_EQ(Texts(host.runs.begin(), host.runs.begin() + 3),
            (Texts{"./kraid/hrconf getconfig 1 al", "./kraid/hrconf getstatus 1 device",
                   "./kraid/hrconf getconfig 2 al"}));
  EXPECT_EQ(Texts(host.runs.begin() + 16, host.runs.begin() + 19),
            (Texts{"./kraid/hrconf getconfig 1 al", "./kraid/hrconf getstatus 1 device",
                   "./kraid/hrconf getconfig 2 al"}));
  EXPECT_EQ(host.log[2], "3| HRCCONF  using Spawnprocess. Controller# :2 opt1: getconfig opt2: al");
  EXPECT_EQ(host.log[3], "3|hrconf aborted: no such tool");
}

std::string ArcDrive(const std::string& heading) {
  return heading +
         "Logical drive name : n\nRAID level : 5\nStatus of logical drive : ok\nSize : 9\n"
         "Read-cache mode : r\nWrite-cache mode : w\nWrite-cache setting : s\n"
         "Number of chunks : 3\n";
}

TEST(ArcconfData, WalksDrivesWithAndWithoutStripeOrders) {
  FakeHost host;
  host.outputs["./kraid/arcconf getconfig 1 al"] =
      std::string(kHeading) + "Logical drive information\nrule\n" +
      ArcDrive("Logical drive number 12 \n") + ArcDrive("Logical drive number 3 \n") +
      Order(" 0,0") + "0,1\nfiller\n" + ArcDrive("Logical drive number 5 \n") + "filler\n" +
      ArcDrive("Logical drive number: 6 \n") + Order(" 0,6") +
      // One line behind a stripe order is passed over, whatever it is.
      ArcDrive("Logical drive number 7 \n") + kEnd;
  ArcconfData collector(nullptr);
  collector.InitData(5);
  EXPECT_EQ(Describe(collector.GetControllers()),
            Texts{"6: LD6/12 LD6/3 LD6/5 LD6/ 6 AKelvaRaidCntrlr6LogicalDrv3 0,0\n 0,1\n "
                  "AKelvaRaidCntrlr6LogicalDrv 6 0,6\n"});
}

TEST(ArcconfData, WalksDevicesOfGroupsThatTellOfThem) {
  const std::string devices = "rule\nDevices on channel 0\n" + Tape(" Device #0") +
                              Tape("Device #11    ") + "Channel #1:\n" + Tape("Device #2") +
                              "other\n" + Tape("Device #3") + Tape("Device #5") +
                              Tape("no Device here\nDevice #4") + kEnd;
  FakeHost host;
  host.outputs["./kraid/arcconf getconfig 1 al"] =
      std::string(kHeading) + "Physical drive information\nnot read\nDevices\n" +
      Tape("Device #9") + "Physical device information\n" + devices;
  host.outputs["./kraid/arcconf getconfig 2 al"] =
      std::string(kHeading) + "Physical drive information\n" + devices;
  ArcconfData collector(nullptr);
  collector.InitData(0);
  EXPECT_EQ(Describe(collector.GetControllers()),
            (Texts{"1: D1//Device #0\n/ D1//Device #11  / D1//Device #5\n/ D1//Device #4\n/",
                   "2: D2//Device #0\n/ D2//Device #11  / D2//Device #5\n/ D2//Device #4\n/"}));
  EXPECT_EQ(collector.GetControllers()[0]->GetPhysicalDevices()[0]->GetDeviceID(),
            "Controller: Device #0\n");
}

TEST(NewerCollectors, LetAnOutputThatEndsTooEarlyEndTheCollection) {
  const std::string drives = std::string(kHeading) + "Logical drive information\nrule\n";
  const std::string devices = std::string(kHeading) + "Physical drive information\nrule\n";
  for (const std::string& output :
       {drives, drives + HrDrive("Logical drive number 1 \n"), devices,
        devices + "Channel #1:\nmode\nInitiator at SCSI ID 7\n" + Tape("Device #0")}) {
    SCOPED_TRACE(output);
    FakeHost host;
    for (const std::string tool : {"./kraid/hrconf", "./kraid/arcconf"}) {
      host.outputs[tool + " getconfig 1 al"] = kHeading;
      host.outputs[tool + " getconfig 2 al"] = output;
    }
    HrconfData hrconf(nullptr);
    EXPECT_THROW(hrconf.InitData(0), std::out_of_range);
    EXPECT_EQ(host.runs.back(), "./kraid/hrconf getconfig 2 al");
    ArcconfData arcconf(nullptr);
    EXPECT_THROW(arcconf.InitData(0), std::out_of_range);
    EXPECT_EQ(host.runs.back(), "./kraid/arcconf getconfig 2 al");
    // What was found stays.
    EXPECT_EQ(Describe(hrconf.GetControllers()), Texts{"1:"});
    EXPECT_EQ(Describe(arcconf.GetControllers()), Texts{"1:"});
    EXPECT_EQ(arcconf.GetRawDataVector().size(), 2U);
    EXPECT_EQ(host.log.back(),
              "3| ARCCONF  using Spawnprocess. Controller# :2 opt1: getconfig opt2: al");
  }
  FakeHost host;
  host.outputs["./kraid/arcconf a 2 b"] = "printed";
  EXPECT_EQ(ArcconfData(nullptr).GatherData("a", "b", 2), "printed");
}

TEST(KraidCollectData, NumbersControllersOnFromToolToTool) {
  FakeHost host;
  host.outputs["./kraid/kelvcmd getconfig 2 al"] = kMinimalConfig;
  host.outputs["./kraid/kelvcmd getconfig 3 al"] = kMinimalConfig;
  host.outputs["./kraid/hrconf getconfig 1 al"] = kHeading;
  host.outputs["./kraid/arcconf getconfig 1 al"] = kHeading;
  host.outputs["./kraid/arcconf getconfig 4 al"] = kHeading;
  KraidCollectData driver(nullptr);
  driver.InitData();
  // By the count of those before, not by their highest number.
  EXPECT_EQ(Describe(driver.GetControllers()), (Texts{"2:", "3:", "3:", "4:", "7:"}));
  EXPECT_EQ(CommandsOf(driver.GetKraidRawDataV()),
            (Texts{"./kraid/kelvcmd getconfig 2 al", "./kraid/kelvcmd getconfig 3 al",
                   "./kraid/hrconf getconfig 1 al", "./kraid/arcconf getconfig 1 al",
                   "./kraid/arcconf getconfig 4 al"}));
  driver.GetControllers().clear();  // a copy
  driver.InitData();
  EXPECT_EQ(Describe(driver.GetControllers()),
            (Texts{"2:", "3:", "3:", "4:", "7:", "2:", "3:", "8:", "9:", "12:"}));
  EXPECT_EQ(host.log.back(), "3|ArcConf Aborted: no such tool");
}

TEST(ReturnStringData, CutsAQuotedValue) {
  const struct {
    const char* text;
    int length;
    const char* value;
    const char* printed;
  } cases[] = {
      {"", 5, "", ""},
      {"x marker=value\" rest", 20, "value", "offset of marker is : 5\n"},
      {"marker=value\" rest", 3, "val", "offset of marker is : -1\n"},
      {"marker=value", 20, "value", "offset of marker is : -1\n"},
      {"marker=\"", 20, "", "offset of marker is : 0\n"},
      {"marker=", 20, "", "offset of marker is : -1\n"},
      {"no mark\"er", 20, "k", "offset of marker is : 1\n"},  // from the marker's length on
  };
  for (const auto& c : cases) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(ReturnStringData("marker", c.text, c.length), c.value) << c.text;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.printed) << c.text;
  }
  EXPECT_THROW(ReturnStringData("marker", "marker", 5), std::out_of_range);
  EXPECT_THROW(ReturnStringData("marker", "none", 5), std::out_of_range);
}

}  // namespace
