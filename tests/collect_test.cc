#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "collect/kelvcmd_data.h"
#include "collect/kraid_raw_data.h"
#include "model/array_stripe_order.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "tests/fake_host.h"

namespace {

using Texts = std::vector<std::string>;

std::string Command(const char* arguments) { return std::string("./kraid/kelvcmd ") + arguments; }

Texts NumbersOf(const std::vector<KRaidController*>& controllers) {
  Texts numbers;
  for (const KRaidController* controller : controllers) {
    numbers.push_back(controller->GetControllerNum());
  }
  return numbers;
}

TEST(KRaidRawData, KeepsTheCommandLineAsItWasPutTogether) {
  EXPECT_EQ(KRaidRawData("./t", "getstatus", 1, "device", "").GetCommand(),
            "./t getstatus 1 device");
  EXPECT_EQ(KRaidRawData("./t", "getconfig", 0, "al", "").GetCommand(), "./t getconfig  al");
  EXPECT_EQ(KRaidRawData("/log", "", 0, "", "").GetCommand(), "/log   ");
  EXPECT_EQ(KRaidRawData("./t", "a b", -1, "", "").GetCommand(), "./t a b -1 ");
}

TEST(KRaidRawData, KeepsTerminatedLinesWithoutTheirNewline) {
  const auto value_of = [](const std::string& output) {
    return KRaidRawData("t", "c", 1, "o", output).GetRawData();
  };
  EXPECT_EQ(value_of("a\n\nb\r\n").ToString(), "{a, , b\r}");
  EXPECT_EQ(value_of("a\nb").ToString(), "{a}");
  EXPECT_EQ(value_of("\n").GetArray().size(), 1U);
  EXPECT_TRUE(value_of("no newline").IsNull());
  EXPECT_TRUE(value_of("").IsNull());
}

TEST(KelvcmdData, WithoutTheToolEveryRunIsLoggedAndNothingIsKept) {
  FakeHost host;
  KelvcmdData collector(nullptr);
  collector.InitData(0);
  EXPECT_TRUE(collector.GetControllers().empty());
  EXPECT_TRUE(collector.GetRawDataVector().empty());
  ASSERT_EQ(host.runs.size(), 64U + 8U);
  const Texts first_controller(host.runs.begin(), host.runs.begin() + 8);
  EXPECT_EQ(first_controller, (Texts{Command("getconfig 1 al"), Command("getstatus 1 device"),
                                     Command("getbst 1 device"), Command("getevent 1 device"),
                                     Command("getevent 1 ddd"), Command("getevent 1 soft"),
                                     Command("getevent 1 hard"), Command("getsubstat 1 device")}));
  EXPECT_EQ(host.runs[63], Command("getsubstat 8 device"));
  EXPECT_EQ(host.runs[64], Command("getconfig 1 al"));
  EXPECT_EQ(host.runs[71], Command("getconfig 8 al"));
  ASSERT_EQ(host.log.size(), 2 * 72U);
  EXPECT_EQ(host.log[0],
            "3| KELVCMD is using Spawnprocess. Controller# :1 opt1: getconfig opt2: al");
  EXPECT_EQ(host.log[1], "3|Kelvcmd aborted: no such tool");
}

TEST(KelvcmdData, KeepsEveryOutputUnderTheNumberOfTheTool) {
  FakeHost host;
  host.outputs[Command("getconfig 2 al")] = kMinimalConfig;
  host.outputs[Command("getevent 2 soft")] = "text without a newline";
  host.outputs[Command("getbst 5 device")] = "no such controller\n";
  host.outputs[Command("getsubstat 2 device")] = "";
  KelvcmdData collector(nullptr);
  collector.InitData(3);
  Texts commands;
  for (const KRaidRawData* record : collector.GetRawDataVector()) {
    commands.push_back(record->GetCommand());
  }
  EXPECT_EQ(commands, (Texts{Command("getconfig 2 al"), Command("getevent 2 soft"),
                             Command("getbst 5 device")}));
  EXPECT_EQ(NumbersOf(collector.GetControllers()), Texts{"5"});
}

TEST(KelvcmdData, ParsesEachControllerByRunsOfItsOwn) {
  FakeHost host;
  host.outputs[Command("getconfig 3 al")] = kMinimalConfig;
  host.outputs[Command("getstatus 3 device")] = "Status : first\n";
  host.before_run = [&](const std::string&) {
    if (host.runs.size() > 64) host.outputs[Command("getstatus 3 device")] = "Status : second\n";
  };
  KelvcmdData collector(nullptr);
  collector.InitData(0);
  EXPECT_EQ(
      Texts(host.runs.begin() + 66, host.runs.begin() + 75),
      (Texts{Command("getconfig 3 al"), Command("getstatus 3 device"), Command("getbst 3 device"),
             Command("getevent 3 device"), Command("getevent 3 ddd"), Command("getevent 3 soft"),
             Command("getevent 3 hard"), Command("getsubstat 3 device"),
             Command("getconfig 4 al")}));
  ASSERT_EQ(NumbersOf(collector.GetControllers()), Texts{"3"});
  EXPECT_EQ(collector.GetControllers()[0]->GetControllerLastCommandStatus(), " second\n");
}

TEST(KelvcmdData, ReadsOnWhateverASectionLacks) {
  const struct {
    const char* what;
    std::string config;
    const char* ddd;
    std::size_t parse_runs;  // of this controller and the seven others
    std::size_t controllers;
  } cases[] = {
      {"no output", "", "", 8, 0},
      {"no controller section", "Physical device information\n", "", 8, 0},
      {"no device section: logs are read, nothing is published", "Controller information\n", "",
       8 + 6, 0},
      {"empty DDD log", kMinimalConfig, "heading\n+---+\n| None |\n", 8 + 4, 1},
      {"DDD log with entries", kMinimalConfig, "+---+\nCommand completed successfully\n", 8 + 7, 1},
      {"DDD log without a rule", kMinimalConfig, "No log\n", 8 + 7, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    FakeHost host;
    host.outputs[Command("getconfig 1 al")] = c.config;
    host.outputs[Command("getevent 1 ddd")] = c.ddd;
    KelvcmdData collector(nullptr);
    collector.InitData(0);
    EXPECT_EQ(host.runs.size(), 64 + c.parse_runs);
    EXPECT_EQ(collector.GetControllers().size(), c.controllers);
  }
}

std::string Drive(const std::string& heading) {
  return heading +
         "Status of logical drive : OKY\nRAID level : 5\nSize (in MB) : 1\n"
         "Write cache status : WB\nNumber of chunks : 3\nStripe-unit size : 16K\n"
         "Access blocked : No\nPart of array : A\n";
}

std::string Device(const std::string& id) {
  return "Target on SCSI ID " + id + "\nDevice is a Hard disk\nSCSI ID : " + id +
         "\nPFA (Yes/No) : No\nState : ONL\nSize (in MB)/(in sectors) : 1/2\nDevice ID : d\n";
}

constexpr char kDddRow[] = "1 | 03/15/2004 | 14:02:09 | 1 | 3 | 05 | Drive failed\n";

TEST(KelvcmdData, LetsAnOutputThatEndsTooEarlyEndTheCollection) {
  const std::pair<const char*, std::string> truncated[] = {
      {"getconfig 2 al", "Controller information\nLogical drive information\nrule\n"},
      {"getconfig 2 al", "Controller information\nArray A stripe order (Channel/SCSI ID) : 1\n"},
      {"getconfig 2 al", "Controller information\nPhysical device information\nrule\n#1:\nrule\n"},
      {"getbst 2 device", "Get bad stripe information\nLogical drive 1 - 17 stripes\n"},
      {"getevent 2 device", "Device event table:\nrule\nhead\n--\n| 1 |\n"},
      {"getevent 2 ddd", "+---\n"},
      {"getevent 2 ddd", std::string("+---\n") + kDddRow},
      {"getevent 2 ddd", "+---\n1 | 03/15 | 14:02:09 |\nCommand completed successfully\n"},
      {"getevent 2 soft", "Controller Soft Event Log\n1\n"},
      {"getevent 2 hard", "Controller Hard Event Log\n1\n"},
      {"getsubstat 2 device", "A:1\n"},
  };
  for (const auto& [command, output] : truncated) {
    SCOPED_TRACE(output);
    FakeHost host;
    host.outputs[Command("getconfig 1 al")] = kMinimalConfig;
    host.outputs[Command("getconfig 2 al")] = kMinimalConfig;
    host.outputs[Command(command)] = output;
    KelvcmdData collector(nullptr);
    EXPECT_THROW(collector.InitData(0), std::out_of_range);
    EXPECT_EQ(host.runs.back(), Command(command));
    // What was found stays: the second one, too, once its configuration is through.
    EXPECT_EQ(NumbersOf(collector.GetControllers()),
              std::string(command) == "getconfig 2 al" ? Texts{"1"} : (Texts{"1", "2"}));
  }
}

TEST(KelvcmdData, WalksTheLogs) {
  FakeHost host;
  host.outputs[Command("getconfig 1 al")] = kMinimalConfig;
  host.outputs[Command("getbst 1 device")] =
      "Get bad stripe information\nwhatever\nLogical drive 2 - 5 x\n-\nend\n- 7 x\n";
  host.outputs[Command("getevent 1 device")] =
      "Device event table:\n| a |\n| b |\nController | 0 |\n| 1 |\n-- | no row | --\n| 2 |\n"
      "Controller 1\n| 3 |\n";
  host.outputs[Command("getevent 1 ddd")] = std::string("| No |\n+---+\n") + kDddRow +
                                            "rule - | x\n--+---\n" +
                                            "1 | 08/09/2004 | 14:02:09 | 1 | 3 | 05 | No answer\n" +
                                            "1 | 99/99/2004 | 14:02:09 |\n" + kDddRow;
  host.outputs[Command("getevent 1 soft")] =
      "Controller Soft Event Log\n5\nCommand completed successfully\n";
  host.outputs[Command("getevent 1 hard")] =
      "Controller Hard Event Log\nCommand completed successfully\n";
  host.outputs[Command("getsubstat 1 device")] =
      "head\nA:9 C:1 \nother\nCommand completed successfully\nA:8 \n";
  KelvcmdData collector(nullptr);
  collector.InitData(4);
  ASSERT_EQ(collector.GetControllers().size(), 1U);
  const KRaidController& controller = *collector.GetControllers()[0];

  Texts bad_stripes;
  for (const KRaidBstData* record : controller.GetBstData()) {
    bad_stripes.push_back(record->GetControllerNum() + "/" + record->GetLogicalDriveNum() + "/" +
                          record->GetBadStripeNum());
  }
  // The first line is taken for a row, whatever it is.
  EXPECT_EQ(bad_stripes, (Texts{"5//", "5/2/5", "5//0"}));
  Texts channels;
  for (const KRaidEventData* record : controller.GetEventData()) {
    channels.push_back(record->GetControllerNum() + "/" + record->GetChannelValue());
  }
  EXPECT_EQ(channels, (Texts{"5/0", "5/1", "5/2"}));
  Texts entries;
  for (const KRaidEventDddData* record : controller.GetEventDddData()) {
    entries.push_back(record->GetControllerNum() + "/" + record->GetRecordIdValue());
  }
  EXPECT_EQ(entries, (Texts{"5/0001", "5/0002"}));
  EXPECT_EQ(std::count(host.log.begin(), host.log.end(),
                       "3|Time Stamp is junk: Quit DDD data collection"),
            1);
  // The junk ended its own log only.
  ASSERT_NE(controller.GetEventSoftData(), nullptr);
  ASSERT_NE(controller.GetEventHardData(), nullptr);
  EXPECT_EQ(controller.GetEventSoftData()->GetSoftEventValues(), std::vector<std::uint32_t>{5});
  EXPECT_TRUE(controller.GetEventHardData()->GetHardEventValues().empty());
  Texts statistics;
  for (const KRaidSubStatData* record : controller.GetSubStatData()) {
    statistics.push_back(record->GetInstanceIDValue());
  }
  EXPECT_EQ(statistics, (Texts{"KelvaRAID:9C1S", "KelvaRAID:CS"}));
}

TEST(KelvcmdData, LooksForTheEndOfTheDevicesBehindThem) {
  // The lines before the first device are stepped over, whatever they are.
  FakeHost host;
  host.outputs[Command("getconfig 1 al")] =
      "Controller information\nPhysical device information\nrule\n"
      "Command completed successfully\nrule\n" +
      Device("3") + "Command completed successfully\n";
  KelvcmdData collector(nullptr);
  collector.InitData(0);
  ASSERT_EQ(collector.GetControllers().size(), 1U);
  EXPECT_EQ(collector.GetControllers()[0]->GetPhysicalDevices().size(), 1U);
  host.outputs["./kraid/kelvcmd a 2 b"] = "printed";
  EXPECT_EQ(collector.GetDataFromTextFile("a", "b", 2), "printed");
}

TEST(KelvcmdData, ReadsTheLogsOfAControllerThatIsNotPublished) {
  FakeHost host;
  host.outputs[Command("getconfig 1 al")] = "Controller information\n";
  host.outputs[Command("getsubstat 1 device")] = "A:1\n";
  KelvcmdData collector(nullptr);
  EXPECT_THROW(collector.InitData(0), std::out_of_range);
}

constexpr char kNoDrives[] = "Controller information\n";
constexpr char kDriveSection[] = "Logical drive information\nrule\n";
constexpr char kNoDevices[] =
    "Physical device information\nrule\nChannel #9:\nrule\nCommand completed successfully\n";

/// What the collection makes of the outputs for controllers 1, 2 and so on.
std::vector<KRaidController*> Collect(KelvcmdData& collector, FakeHost& host,
                                      const Texts& outputs) {
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    host.outputs[Command("getconfig ") + std::to_string(i + 1) + " al"] = outputs[i];
  }
  collector.InitData(10);
  return collector.GetControllers();
}

TEST(KelvcmdData, CutsTheNumbersOfLogicalDrives) {
  FakeHost host;
  KelvcmdData collector(nullptr);
  const auto controllers =
      Collect(collector, host,
              {std::string(kNoDrives) + kDriveSection + Drive("Logical drive number 12\r\n") +
                   Drive("Logical drive number 34\n") + Drive("The Logical drive number 5 \n") +
                   Drive("Logical drive number \n") + "\n" + kNoDevices,
               // What follows the section's heading is taken for a drive, whatever it is. The
               // number of the controller before is still there.
               std::string(kNoDrives) + kDriveSection + Drive("Logical drive number 6 \n") +
                   Drive("Logical drive number\n") + "\n" + kNoDevices,
               std::string(kNoDrives) + kDriveSection + Drive("none\n") + "\n" + kNoDevices});
  ASSERT_EQ(controllers.size(), 3U);
  Texts numbers;
  for (const KRaidController* controller : controllers) {
    for (const KRaidLogicalDevice* drive : controller->GetLogicalDevices()) {
      numbers.push_back(drive->GetControllerNum() + "/" + drive->GetLogicalDriveNum());
    }
  }
  EXPECT_EQ(numbers, (Texts{"11/12", "11/3", "11/5", "11/", "12/6", "12/6", "13/6"}));
}

TEST(KelvcmdData, WalksStripeOrdersAndDevices) {
  const std::string orders =
      "Array A stripe order (Channel/SCSI ID) : 1,0\n 1,1\n"
      "Array B stripe order (Channel/SCSI ID) : 2,0\nend\n"
      "Array C stripe order (Channel/SCSI ID) : not reached\n";
  const std::string devices =
      "Physical device information\nrule\nChannel #1:\nrule\n" + Device("0") + Device("1") +
      "Channel: #22: Ultra\nrule\n" + Device("2") + "Channel\nrule\n" + Device("3") +
      "Channel #no colon\nrule\n" + Device("4") + "Command completed successfully\n";
  FakeHost host;
  KelvcmdData collector(nullptr);
  const auto controllers =
      Collect(collector, host,
              {kNoDrives + orders + devices,
               std::string(kNoDrives) + "Physical device information\nrule\nChannel\nrule\n" +
                   Device("5") + "Command completed successfully\n"});
  ASSERT_EQ(controllers.size(), 2U);
  Texts arrays;
  for (const ArrayStripeOrder* order : controllers[0]->GetArrayStripeOrder()) {
    arrays.push_back(order->GetCollectionID() + order->GetStripeOrder());
  }
  EXPECT_EQ(arrays, (Texts{"KelvaRAID11ArrayA 1,0\n1,1\n", "KelvaRAID11ArrayB 2,0\n"}));
  Texts places;
  for (const KRaidController* controller : controllers) {
    for (const KRaidPhysicalDevice* device : controller->GetPhysicalDevices()) {
      places.push_back(device->GetControllerNum() + "/" + device->GetChannelNum() +
                       device->GetScsiID());
    }
  }
  // A heading without "#" keeps the channel of the one before, over controllers, too; one without
  // ":" gives all the rest of its line.
  EXPECT_EQ(places, (Texts{"11/1 0\n", "11/1 1\n", "11/22 2\n", "11/22 3\n", "11/no colon\n 4\n",
                           "12/no colon\n 5\n"}));
}

}  // namespace
