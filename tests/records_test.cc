// The records of all tools: outputs in, fields out.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <sstream>
#include <stdexcept>

#include "hmz/exception.h"
#include "model/array_stripe_order.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_controller.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "model/markers.h"
#include "schema/published_texts.h"
#include "tests/machine_files.h"

namespace {

using A = ArrayStripeOrder;
using B = KRaidBstData;
using D = KRaidEventDddData;
using E = KRaidEventData;
using K = KRaidController;
using L = KRaidLogicalDevice;
using P = KRaidPhysicalDevice;
using S = KRaidSubStatData;
using W = KRaidEventSoftData;

/// Names and values.
using Field = std::pair<std::string, std::string>;
using Fields = std::vector<Field>;

template <class... T>
Fields Join(const T&... fields) {
  return {fields...};
}

#define F(name) Field(#name, record.Get##name())

Fields FieldsOf(const A& record) {
  return Join(F(ControllerNum), F(CollectionID), F(ArrayData), F(StripeOrder));
}

Fields FieldsOf(const B& record) {
  return Join(F(ControllerNum), F(LogicalDriveNum), F(BadStripeNum));
}

Fields FieldsOf(const D& record) {
  return Join(F(ControllerNum), F(DateValue), F(TimeValue), F(ChannelValue), F(IdValue),
              F(ReasonValue), F(DescriptionValue), F(RecordIdValue));
}

Fields FieldsOf(const E& record) {
  return Join(F(ControllerNum), F(ChannelValue), F(ScsiIDValue), F(ParityValue), F(SoftValue),
              F(HardValue), F(PFAValue), F(MiscValue));
}

Fields FieldsOf(const K& record) {
  return Join(Field("Found", record.GetControllerFound() ? "yes" : ""), F(ControllerNum),
              F(ControllerDeviceID), F(ControllerType), F(ControllerStatus),
              F(ControllerChannelDescription), F(ControllerFRU), F(controllerSerialNumber),
              F(ControllerPartNumber), F(ControllerActualBiosVersion), F(ControllerFirmwareVersion),
              F(ControllerBootBlockVersion), F(ControllerDeviceDriverVersion),
              F(ControllerSlotInformation), F(ClusterSolutionVersion), F(ControllerCopybackEnabled),
              F(ControllerVPD), F(ControllerECVersion), F(BatteryStatus), F(BatteryOverTemp),
              F(BatteryCapacity), F(BatteryFRU), F(BatteryTimeRemaining), F(ControllerName),
              F(ControllerSCSIChannelDescription), F(ControllerInitiatorsIDs),
              F(ControllerMaximumPhysicalDevices), F(ControllerDefuncDiskDriveCount),
              F(ControllerLogicalDrives), F(ControllerReadaheadCacheSetting),
              F(ControllerStripeUnitSize), F(ControllerRebuildRate), F(ControllerHotSwapRebuild),
              F(ControllerDataScrubbing), F(HotSpareCopyBack), F(ControllerPartOfCluster),
              F(ControllerUnattendedMode), F(ControllerConcurrentCommandsSupported),
              F(ControllerConfigurationUpdateCount), F(ControllerCurrentMostRecentOperation),
              F(ControllerLogicalDrive), F(ControllerBackgroundOperationActive),
              F(ControllerLastCommandStatus), F(ControllerLogicalDriveSizeInStripes),
              F(ControllerNumberOfRemainingStripes));
}

Fields FieldsOf(const L& record) {
  return Join(F(ControllerNum), F(LogicalDriveNum), F(LogicalDriveName), F(StatusOfLogicalDrive),
              F(AdditionalInformation), F(RaidLevel), F(Size), F(ReadCacheStatus),
              F(WriteCacheStatus), F(WriteCacheSetting), F(NumberOfChunks), F(StripeUnitSize),
              F(AccessBlocked), F(PartOfArray), F(PartOfMergeGroup), F(LogicalDriveList));
}

Fields FieldsOf(const P& record) {
  return Join(F(ControllerNum), F(ChannelNum), F(DeviceNum), F(DeviceType), F(ScsiID), F(Pfa),
              F(State), F(Size), F(Fru), F(DeviceID), F(DeviceCode), F(FirmwareVer),
              F(DeviceSerialNum), F(TransferSpeed), F(ReportedChannel), F(Enclosure), F(Vendor),
              F(Model), F(WorldWideName), F(WriteCache));
}

Fields FieldsOf(const S& record) {
  return Join(F(ControllerNum), F(ChannelValue), F(ScsiIDValue), F(ParamsValue), F(Req_OffValue),
              F(Max_Txer_PValue), F(Cur_Txer_PValue), F(InstanceIDValue));
}

Fields FieldsOf(const W& record) {
  std::string values;
  for (const auto value : record.GetSoftEventValues()) values += std::to_string(value) + " ";
  return Join(F(ControllerNum), F(NumberOfEntriesValue), F(RecordIdValue), Field("Values", values));
}

#undef F

const Fields kOutOfRange = {{"out_of_range", "yes"}};

/// What a record makes of an output, the cursor on the given line of it: its fields, and how many
/// lines were read, that one included. Its texts are "1", "2" and "3", in the order in which it
/// takes them.
template <class Record, auto kRead>
Fields Read(const std::string& text, std::size_t line) {
  Record record(nullptr);
  if constexpr (requires { (record.*kRead)(text, 1); }) {
    (record.*kRead)(text, 1);
    return FieldsOf(record);
  } else {
    CollectedData cursor(nullptr, text);
    for (std::size_t i = 0; i < line; ++i) cursor.GetNextLine();
    try {
      if constexpr (requires { (record.*kRead)(&cursor); }) {
        (record.*kRead)(&cursor);
      } else if constexpr (requires { (record.*kRead)(&cursor, "1"); }) {
        (record.*kRead)(&cursor, "1");
      } else if constexpr (requires { (record.*kRead)(&cursor, "1", 26); }) {
        (record.*kRead)(&cursor, "1", 26);
      } else if constexpr (requires { (record.*kRead)(&cursor, "1", "2"); }) {
        (record.*kRead)(&cursor, "1", "2");
      } else {
        (record.*kRead)(&cursor, "1", "2", "3");
      }
    } catch (const std::out_of_range&) {
      return kOutOfRange;
    } catch (const NKVXHMZ20::THMZException&) {
      return {{"junk", "yes"}};
    }
    Fields fields = FieldsOf(record);
    auto lines = std::count(text.begin(), text.end(), '\n') - static_cast<std::ptrdiff_t>(line);
    try {
      for (;; --lines) cursor.GetNextLine();
    } catch (const std::out_of_range&) {
      fields.emplace_back("lines", std::to_string(lines));
    }
    return fields;
  }
}

using Reader = Fields (*)(const std::string& text, std::size_t line);

/// Where records begin: at each line with the mark in the outputs of a command.
constexpr struct {
  const char* command;
  const char* mark;
  Reader read;
} kPlaces[] = {
    {"kelvcmd getconfig", kControllerHeading, Read<K, &K::SetConfigData>},
    {"kelvcmd getconfig", kLogicalDriveLabel, Read<L, &L::SetConfigData>},
    {"kelvcmd getconfig", " stripe order", Read<A, &A::SetConfigData>},
    {"kelvcmd getconfig", "Target", Read<P, &P::SetConfigData>},
    {"kelvcmd getstatus", "operation:", Read<K, &K::AddStatusData>},
    {"kelvcmd getbst", "", Read<B, &B::SetConfigData>},
    {"kelvcmd getevent 1 device", "", Read<E, &E::SetConfigData>},
    {"kelvcmd getevent 1 ddd", "", Read<D, &D::SetConfigData>},
    {"kelvcmd getevent 1 soft", "Event Log", Read<W, &W::SetConfigData>},
    {"kelvcmd getsubstat", "", Read<S, &S::SetConfigData>},
    {"hrconf getconfig", kControllerHeading, Read<K, &K::SetConfigHrconfData>},
    {"hrconf getconfig", kLogicalDriveLabel, Read<L, &L::SetConfigHrconfData>},
    {"hrconf getconfig", "Stripe order", Read<A, &A::SetConfigHrconfData>},
    {"hrconf getconfig", "Device #", Read<P, &P::SetConfigHrconfData>},
    {"arcconf getconfig", kControllerHeading, Read<K, &K::SetConfigArcconfData>},
    {"arcconf getconfig", kLogicalDriveLabel, Read<L, &L::SetConfigArcconfData>},
    {"arcconf getconfig", "Stripe order", Read<A, &A::SetConfigArcConfData>},
    {"arcconf getconfig", "Device #", Read<P, &P::SetConfigArcconfData>},
};

/// The fields that `other` has not, "\n" as "$"; the names of those that are empty.
std::string Differences(const Fields& fields, const Fields& other) {
  std::string text;
  for (const auto& [name, value] : fields) {
    if (std::count(other.begin(), other.end(), Field(name, value)) > 0) continue;
    text += " " + name + (value.empty() ? "" : "='" + value + "'");
  }
  std::replace(text.begin(), text.end(), '\n', '$');
  return text;
}

/// What becomes of each record of an output: how many lines it needs and its fields, then what is
/// different when a line is missing ("-") or its label has lost its last character ("~").
std::string LineCuts(const std::string& output, const char* mark, Reader read) {
  std::vector<std::string> lines;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) lines.push_back(line + "\n");
  std::string report;
  std::string up_to;
  for (std::size_t start = 0; start < lines.size(); ++start) {
    up_to += lines[start];
    if (lines[start].find(mark) == std::string::npos) continue;
    const Fields whole = read(output, start);
    Fields empty = whole;
    for (Field& field : empty) field.second.clear();
    std::size_t needed = 1;
    std::string beginning = up_to;
    for (; needed < lines.size() - start && read(beginning, start) == kOutOfRange; ++needed) {
      beginning += lines[start + needed];
    }
    report += "  " + lines[start] + "    " + std::to_string(needed) + ":" +
              Differences(whole, empty) + "\n";
    for (std::size_t i = start; i < lines.size(); ++i) {
      const std::string label = lines[i].substr(0, lines[i].find_first_of(":\n"));
      std::vector<std::string> cut = lines;
      const auto add = [&](const char* how, const std::string& other) {
        cut[i] = other;
        const std::string text = std::accumulate(cut.begin(), cut.end(), std::string());
        const std::string differences = Differences(read(text, start), whole);
        if (differences.empty()) return;
        report.append("    ").append(how).append(label).append(":").append(differences) += "\n";
      };
      if (i > start) add("-", "");
      if (!label.empty()) add("~", std::string(lines[i]).erase(label.size() - 1, 1));
    }
  }
  return report;
}

TEST(Records, ReadWholeAndCutOutputs) {
  for (const std::string machine : {"one_of_each", "all_kinds"}) {
    std::string report;
    for (const auto& [command, output] : ToolOutputs(machine)) {
      for (const auto& [of, mark, read] : kPlaces) {
        if (command.find(of) != std::string::npos) {
          report += command + "\n" + LineCuts(output, mark, read);
        }
      }
    }
    CompareExpected(machine + "/line_cuts.txt", report);
  }
}

TEST(Records, TakeANulForTheEndOfALineOnlyWhereTheyTrim) {
  using namespace std::string_literals;  // NOLINT(google-build-using-namespace)
  const struct {
    Reader read;
    std::string text;
    const char* fields;
  } cases[] = {
      {Read<B, &B::SetConfigData>, "Logical drive 1 - 17 st\0ripes\n"s,
       " ControllerNum='1' LogicalDriveNum='1' BadStripeNum='17' lines='1'"},
      {Read<B, &B::SetConfigData>, "about -17\0 more\n"s,
       " ControllerNum='1' LogicalDriveNum BadStripeNum='17' lines='1'"},
      // Nothing is left of the line in which the list may go on.
      {Read<A, &A::SetConfigHrconfData>, "Stripe order (Channel,Device) : 0,0\n\0\nnext\n"s,
       " out_of_range='yes'"},
      {Read<A, &A::SetConfigData>, "B stripe order (Channel/SCSI ID) : 0,0\n\0\nnext\n"s,
       " ControllerNum='1' CollectionID='KelvaRAID1ArrayB' ArrayData='B' StripeOrder=' 0,0$' "
       "lines='1'"},
  };
  for (const auto& [read, text, fields] : cases) EXPECT_EQ(Differences(read(text, 0), {}), fields);
}

TEST(LogicalDevice, LooksItselfUpInAWholeText) {
  CollectedData cursor(nullptr, "h\nSize : 9\nNumber of chunks : 3\nnext\n");
  L drive(nullptr);
  drive.SetConfigHrconfData(&cursor, "2", "1");
  const std::string other = "Logical drive number 1\nSize : 0 \n";
  const std::string text = other + "Logical drive number 2\nSize : 10 \nFew :5\nEnd : x";
  EXPECT_EQ(drive.ParseLogicalDeviceData("Size", text), "10");
  EXPECT_EQ(drive.ParseLogicalDeviceData("Few", text), "");
  EXPECT_EQ(drive.ParseLogicalDeviceData("End", text), "x");
  EXPECT_EQ(drive.ParseLogicalDeviceData("Absent", text), "");
  EXPECT_EQ(drive.ParseLogicalDeviceData("Size", other), "");
}

}  // namespace
