// The collectors of the three tools and the driver over them.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
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

/// What a controller holds, on one line: its number and status, logical drives (L), arrays (A),
/// physical devices (P), bad stripes (B), device events (E), DDD log (D), soft and hard log (S, H)
/// and statistics (T), by the fields that the walk gives them; "\n" as "$".
std::string Describe(const KRaidController* controller) {
  std::string text;
  const auto add = [&text](const char* mark, const auto& records, auto... getters) {
    for (const auto* record : records) {
      text += mark;
      (text.append("/").append((record->*getters)()), ...);
    }
  };
  using K = KRaidController;
  using P = KRaidPhysicalDevice;
  add("", std::vector{controller}, &K::GetControllerNum, &K::GetControllerLastCommandStatus);
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
  return text + "\n";
}

/// By the names of the tools.
std::map<std::string, std::unique_ptr<ToolCollector>> AllCollectors() {
  std::map<std::string, std::unique_ptr<ToolCollector>> collectors;
  collectors["kelvcmd"] = std::make_unique<KelvcmdData>(nullptr);
  collectors["hrconf"] = std::make_unique<HrconfData>(nullptr);
  collectors["arcconf"] = std::make_unique<ArcconfData>(nullptr);
  return collectors;
}

TEST(KRaidRawData, KeepsTheCommandLineAndTheTerminatedLines) {
  EXPECT_EQ(KRaidRawData("./t", "getconfig", 0, "al", "").GetCommand(), "./t getconfig  al");
  EXPECT_EQ(KRaidRawData("./t", "a b", -1, "", "").GetCommand(), "./t a b -1 ");
  const auto value_of = [](const std::string& output) {
    return KRaidRawData("t", "c", 1, "o", output).GetRawData();
  };
  EXPECT_EQ(value_of("a\n\nb\r\nc").ToString(), "{a, , b\r}");
  EXPECT_EQ(value_of("\n").GetCount(), 1U);
  EXPECT_TRUE(value_of("no newline").IsNull());
}

// What to look for in the outputs and in what is expected of them: tests/machines/odd/README.md.
TEST(Collectors, WalkTheirSections) {
  FakeHost host;
  host.Load("odd");
  std::string found;
  for (const auto& [name, collector] : AllCollectors()) {
    host.log.clear();
    collector->InitData(10);
    for (const std::string& message : host.log) found += message + "\n";
    collector->InitData(10);  // which may know nothing of the first one's walks
    for (const auto* controller : collector->GetControllers()) found += Describe(controller);
  }
  CompareExpected("odd/collected.txt", found);
}

/// How many tools ran, where a walk ran off the end of an output, and what was found last.
std::string Outcome(FakeHost& host, ToolCollector& collector) {
  host.runs.clear();
  std::string end;
  try {
    collector.InitData(0);
  } catch (const std::out_of_range&) {
    end = " ends in " + host.runs.back();
  }
  return std::to_string(host.runs.size()) + end + ": " +
         Describe(collector.GetControllers().back());
}

// Of the second of two equal controllers, each line of each output: without it, with its first half
// alone, with nothing from it on.
TEST(Collectors, ReadOnOrEndWhereLinesAreMissing) {
  FakeHost host;
  const auto whole = ToolOutputs("one_of_each");
  std::string found;
  for (const auto& [command, output] : whole) {
    const std::string tool = command.substr(0, command.find(' ')).substr(sizeof("./kraid"));
    std::size_t end = 0;
    for (std::size_t begin = 0; begin < output.size(); begin = end) {
      end = output.find('\n', begin) + 1;
      found += tool + command.substr(command.find(' ')) + ": " + output.substr(begin, end - begin);
      for (const std::string& damaged :
           {output.substr(0, begin) + output.substr(end),
            output.substr(0, (begin + end) / 2) + output.substr(end - 1),
            output.substr(0, begin)}) {
        host.outputs = whole;
        for (const auto& [first, text] : whole) {
          std::string second = first;
          second.replace(second.find(" 1 "), 3, " 2 ");
          host.outputs[second] = first == command ? damaged : text;
        }
        found += "  " + Outcome(host, *AllCollectors()[tool]);
      }
    }
  }
  CompareExpected("one_of_each/damaged_outputs.txt", found);
}

TEST(Collectors, RunTheToolsOnceMoreToReadTheirOutputs) {
  FakeHost host;
  const std::string status = "./kraid/kelvcmd getstatus 3 device";
  host.outputs = {{"./kraid/kelvcmd getconfig 3 al", kMinimalConfig}, {status, "Status : first\n"}};
  host.before_run = [&](const std::string&) {
    if (host.runs.size() > 64) host.outputs[status] = "Status : second\n";
  };
  KelvcmdData collector(nullptr);
  collector.InitData(0);
  EXPECT_EQ(collector.GetRawDataVector().at(1)->GetRawData().ToString(), "{Status : first}");
  EXPECT_EQ(Describe(collector.GetControllers().at(0)), "/3/ second$\n");
}

// By the count of those before, not by their highest number; outputs keep the tools' numbers.
TEST(KraidCollectData, NumbersControllersBehindThoseOfTheToolsBefore) {
  FakeHost host;
  host.Load("gaps");
  KraidCollectData driver(nullptr);
  std::string found;
  for (int call = 0; call < 2; ++call) {
    driver.InitData();
    for (const auto* controller : driver.GetControllers()) found += Describe(controller);
    for (const auto* record : driver.GetKraidRawDataV()) found += record->GetCommand() + "\n";
    driver.GetControllers().clear();  // a copy
  }
  CompareExpected("gaps/collected.txt", found);
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
