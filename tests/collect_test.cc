// The collectors of the three tools and the driver over them.

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "collect/arcconf_data.h"
#include "collect/hrconf_data.h"
#include "collect/kelvcmd_data.h"
#include "collect/kraid_collect_data.h"
#include "collect/return_string_data.h"
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

/// What each controller holds: its number and status, logical drives (L), arrays (A), physical
/// devices (P), bad stripes (B), device events (E), DDD log (D), soft and hard log (S, H) and
/// statistics (T), by the fields that the walk gives them; "\n" as "$".
Texts Describe(const std::vector<KRaidController*>& controllers) {
  Texts texts;
  for (const KRaidController* controller : controllers) {
    std::string text = controller->GetControllerNum() + ":";
    text += controller->GetControllerLastCommandStatus();
    const auto add = [&text](const char* mark, const auto& records, auto... getters) {
      for (const auto* record : records) {
        text += mark;
        (text.append("/").append((record->*getters)()), ...);
      }
    };
    using P = KRaidPhysicalDevice;
    add(" L", controller->GetLogicalDevices(), &KRaidLogicalDevice::GetLogicalDriveNum);
    add(" A", controller->GetArrayStripeOrder(), &ArrayStripeOrder::GetCollectionID);
    add(" P", controller->GetPhysicalDevices(), &P::GetChannelNum, &P::GetDeviceNum, &P::GetScsiID);
    add(" B", controller->GetBstData(), &KRaidBstData::GetLogicalDriveNum,
        &KRaidBstData::GetBadStripeNum);
    add(" E", controller->GetEventData(), &KRaidEventData::GetChannelValue);
    add(" D", controller->GetEventDddData(), &KRaidEventDddData::GetRecordIdValue);
    if (const auto* soft = controller->GetEventSoftData(); soft != nullptr) {
      text += " S" + std::to_string(soft->GetSoftEventValues().size());
    }
    if (const auto* hard = controller->GetEventHardData(); hard != nullptr) {
      text += " H" + std::to_string(hard->GetHardEventValues().size());
    }
    add(" T", controller->GetSubStatData(), &KRaidSubStatData::GetInstanceIDValue);
    std::replace(text.begin(), text.end(), '\n', '$');
    texts.push_back(text);
  }
  return texts;
}

TEST(KRaidRawData, KeepsTheCommandLineAndTheTerminatedLines) {
  EXPECT_EQ(KRaidRawData("./t", "getconfig", 0, "al", "").GetCommand(), "./t getconfig  al");
  EXPECT_EQ(KRaidRawData("./t", "a b", -1, "", "").GetCommand(), "./t a b -1 ");
  const auto value_of = [](const std::string& output) {
    return KRaidRawData("t", "c", 1, "o", output).GetRawData();
  };
  EXPECT_EQ(value_of("a\n\nb\r\nc").ToString(), "{a, , b\r}");
  EXPECT_EQ(value_of("\n").GetArray().size(), 1U);
  EXPECT_TRUE(value_of("no newline").IsNull());
}

TEST(KelvcmdData, ParsesEachControllerByRunsOfItsOwn) {
  FakeHost host;
  host.outputs = {{Command("getconfig 3 al"), kMinimalConfig},
                  {Command("getstatus 3 device"), "Status : first\n"}};
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
  EXPECT_EQ(Describe(collector.GetControllers()), Texts{"3: second$"});
}

TEST(KelvcmdData, ReadsOnWhateverASectionLacks) {
  const struct {
    const char* what;
    std::string config;
    const char* ddd;
    std::size_t parse_runs;  // of this controller and the seven others
    std::size_t controllers;
  } cases[] = {
      {"no controller section", "Physical device information\n", "", 8, 0},
      {"no device section: logs are read, nothing is published", "Controller information\n", "",
       8 + 6, 0},
      {"empty DDD log", kMinimalConfig, "heading\n+---+\n| No entry |\n", 8 + 4, 1},
      {"DDD log with entries", kMinimalConfig, "+---+\nCommand completed successfully\n", 8 + 7, 1},
      {"DDD log without a rule", kMinimalConfig, "No log\n", 8 + 7, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    FakeHost host;
    host.outputs = {{Command("getconfig 1 al"), c.config}, {Command("getevent 1 ddd"), c.ddd}};
    KelvcmdData collector(nullptr);
    collector.InitData(0);
    EXPECT_EQ(host.runs.size(), 64 + c.parse_runs);
    EXPECT_EQ(collector.GetControllers().size(), c.controllers);
  }
}

/// What the collection makes of the outputs in data/odd: twice, as no call may know of the one
/// before.
template <class Collector>
Texts CollectOddOutputs(FakeHost& host) {
  host.Load("odd");
  Collector collector(nullptr);
  collector.InitData(10);
  Texts found = Describe(collector.GetControllers());
  collector.InitData(10);
  Texts both = found;
  both.insert(both.end(), found.begin(), found.end());
  EXPECT_EQ(Describe(collector.GetControllers()), both);
  return found;
}

TEST(KelvcmdData, WalksItsSections) {
  FakeHost host;
  EXPECT_EQ(
      CollectOddOutputs<KelvcmdData>(host),
      (Texts{
          // What follows the section's heading is taken for a drive, whatever it is. A number loses
          // its last character: a carriage return, a blank or a digit.
          "11: L/ L/12 L/3 L/5 L/"
          // The list of an array may have a second line; another line ends the arrays.
          " A/KelvaRAID11ArrayA A/KelvaRAID11ArrayB"
          // A channel's heading without "#" keeps the channel; without ":" it gives all the rest.
          " P/// 9$ P/1// 0$ P/1// 1$ P/22// 2$ P/22// 3$ P/no colon$// 4$"
          // The first line is taken for a row here, too, and so in the device events.
          " B// B/2/5 B//0 E/0 E/1 E/2"
          // The junk entry ends its own log only.
          " D/0001 D/0002 S1 H0 T/KelvaRAID:9C1S T/KelvaRAID:CS",
          // Numbers and channels live on to the next controller.
          "12: fine$ L/6 L/6 P/no colon$// 5$",
          // The end of the devices is looked for behind them only.
          "13: L/6 P/no colon$// 3$"}));
  EXPECT_EQ(std::count(host.log.begin(), host.log.end(),
                       "3|Time Stamp is junk: Quit DDD data collection"),
            2);
}

TEST(HrconfData, WalksItsSections) {
  FakeHost host;
  EXPECT_EQ(
      CollectOddOutputs<HrconfData>(host),
      (Texts{// A drive without a number has that of the one before; one line with "size" is passed
             // over, and one line in the place of a stripe order.
             "11: fine$ L/ L/12 L/3 L/3 A/KelvaRaidCntrlr11LogicalDrv 0,9$"
             " A/KelvaRaidCntrlr11LogicalDrv12 0,0$ A/KelvaRaidCntrlr11LogicalDrv3 0,3$"
             // The label of a device is twelve characters long, its SCSI ID all that is behind it.
             " P/1/Device #0   /0   $ P/1/Device #15  /15  more$ P/22/Device #3$/3$"
             " P/no colon$/Device #4$/4$",
             "12: L/3", "13:",
             // Only one "size", and no devices under the heading of the other tools.
             "15: L/1"}));
}

TEST(ArcconfData, WalksItsSections) {
  FakeHost host;
  EXPECT_EQ(CollectOddOutputs<ArcconfData>(host),
            (Texts{// One line behind a stripe order is passed over, be it the heading of drive 7.
                   "11: L/12 L/3 L/5 L/ 6 A/KelvaRaidCntrlr11LogicalDrv3 0,0$ 0,1$"
                   " A/KelvaRaidCntrlr11LogicalDrv 6 0,6$"
                   // Only devices behind a line that tells of one, be it their own; "device" goes
                   // before "drive".
                   " P//Device #0$/ P//Device #11  / P//Device #5$/ P//Device #4$/",
                   "12: P//Device #0$/ P//Device #11  / P//Device #5$/ P//Device #4$/"}));
}

/// How many controllers were found when an exception ended the collection.
template <class Collector>
std::size_t CountUntilTheEnd() {
  Collector collector(nullptr);
  EXPECT_THROW(collector.InitData(0), std::out_of_range);
  return collector.GetControllers().size();
}

TEST(Collectors, LetAnOutputThatEndsTooEarlyEndTheCollection) {
  constexpr auto kKelvcmd = CountUntilTheEnd<KelvcmdData>;
  constexpr auto kHrconf = CountUntilTheEnd<HrconfData>;
  constexpr auto kArcconf = CountUntilTheEnd<ArcconfData>;
  const std::string heading = "Controller information\n";
  const std::string drives = heading + "Logical drive information\nrule\n";
  const std::string devices = heading + "Physical drive information\nrule\n";
  const struct {
    std::size_t (*count)();
    const char* run;
    std::string output;
  } cases[] = {
      {kKelvcmd, "kelvcmd getconfig 2 al", drives},
      {kKelvcmd, "kelvcmd getconfig 2 al", heading + "A stripe order (Channel/SCSI ID)\n"},
      {kKelvcmd, "kelvcmd getconfig 2 al", heading + "Physical device information\n1\n2\n3\n"},
      {kKelvcmd, "kelvcmd getevent 2 ddd", "+---\n1 | 03/15/2004 | 14:02:09 | 1 |\n"},
      {kKelvcmd, "kelvcmd getevent 2 ddd",  // a text that is too short
       "+---\n1 | 03/15 | 14:02:09 |\nCommand completed successfully\n"},
      {kKelvcmd, "kelvcmd getsubstat 2 device", "A:1\n"},
      {kHrconf, "hrconf getconfig 2 al", drives},
      {kHrconf, "hrconf getconfig 2 al",
       drives + "Logical drive number 1 \nSize : 1\nNumber of chunks : 2\n"},
      {kHrconf, "hrconf getconfig 2 al", devices},
      {kArcconf, "arcconf getconfig 2 al", drives},
      {kArcconf, "arcconf getconfig 2 al", devices},
  };
  for (const auto& [count, run, output] : cases) {
    SCOPED_TRACE(run + output);
    FakeHost host;
    for (const std::string tool : {"kelvcmd", "hrconf", "arcconf"}) {
      host.outputs["./kraid/" + tool + " getconfig 1 al"] = kMinimalConfig;
      host.outputs["./kraid/" + tool + " getconfig 2 al"] = kMinimalConfig;
    }
    host.outputs[std::string("./kraid/") + run] = output;
    // What was found stays: the second one, too, once its configuration is through.
    EXPECT_EQ(count(), std::string(run).ends_with("config 2 al") ? 1U : 2U);
    EXPECT_EQ(host.runs.back(), std::string("./kraid/") + run);
  }
}

TEST(KraidCollectData, NumbersControllersOnButKeepsOutputsUnderTheNumbersOfTheTools) {
  FakeHost host;
  host.outputs = {{"./kraid/kelvcmd getconfig 2 al", kMinimalConfig},
                  {"./kraid/kelvcmd getevent 2 soft", "text without a newline"},
                  {"./kraid/kelvcmd getsubstat 2 device", ""},
                  {"./kraid/kelvcmd getconfig 3 al", kMinimalConfig},
                  {"./kraid/hrconf getconfig 2 al", kMinimalConfig},
                  {"./kraid/hrconf getconfig 6 al", "no such controller\n"},
                  {"./kraid/arcconf getconfig 1 al", kMinimalConfig},
                  {"./kraid/arcconf getconfig 4 al", kMinimalConfig}};
  KraidCollectData driver(nullptr);
  driver.InitData();
  // By the count of those before, not by their highest number.
  EXPECT_EQ(Describe(driver.GetControllers()), (Texts{"2:", "3:", "4:", "4:", "7:"}));
  Texts commands;
  for (const KRaidRawData* record : driver.GetKraidRawDataV()) {
    commands.push_back(record->GetCommand());
  }
  EXPECT_EQ(commands, (Texts{"./kraid/kelvcmd getconfig 2 al", "./kraid/kelvcmd getevent 2 soft",
                             "./kraid/kelvcmd getconfig 3 al", "./kraid/hrconf getconfig 2 al",
                             "./kraid/hrconf getconfig 6 al", "./kraid/arcconf getconfig 1 al",
                             "./kraid/arcconf getconfig 4 al"}));
  driver.GetControllers().clear();  // a copy
  driver.InitData();
  EXPECT_EQ(Describe(driver.GetControllers()),
            (Texts{"2:", "3:", "4:", "4:", "7:", "2:", "3:", "9:", "9:", "12:"}));
  EXPECT_EQ(host.log.back(), "3|ArcConf Aborted: no such tool");
  EXPECT_EQ(KelvcmdData(nullptr).GetDataFromTextFile("getconfig", "al", 3), kMinimalConfig);
  EXPECT_EQ(HrconfData(nullptr).GatherData("getconfig", "al", 2), kMinimalConfig);
  EXPECT_EQ(ArcconfData(nullptr).GatherData("getconfig", "al", 4), kMinimalConfig);
}

TEST(KraidCollectData, CollectsRecordsThatDisplayAll) {
  FakeHost host;
  host.Load("one_of_each");
  KraidCollectData driver(nullptr);
  driver.InitData();
  testing::internal::CaptureStdout();
  for (const KRaidController* controller : driver.GetControllers()) {
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

TEST(ReturnStringData, CutsAQuotedValue) {
  const std::tuple<const char*, int, const char*, const char*> cases[] = {
      {"", 5, "", ""},
      {"x marker=value\" rest", 20, "value", "offset of marker is : 5\n"},
      {"marker=value\" rest", 3, "val", "offset of marker is : -1\n"},
      {"marker=", 20, "", "offset of marker is : -1\n"},
      {"no mark\"er", 20, "k", "offset of marker is : 1\n"},  // from the marker's length on
  };
  for (const auto& [text, length, value, printed] : cases) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(ReturnStringData("marker", text, length), value) << text;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), printed) << text;
  }
  EXPECT_THROW(ReturnStringData("marker", "marker", 5), std::out_of_range);
}

}  // namespace
