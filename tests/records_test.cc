// The records of all tools: lines in, fields out.

#include <gtest/gtest.h>

#include <stdexcept>

#include "hmz/exception.h"
#include "model/array_stripe_order.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "tests/fields.h"

namespace {

using A = ArrayStripeOrder;
using B = KRaidBstData;
using D = KRaidEventDddData;
using E = KRaidEventData;
using L = KRaidLogicalDevice;
using P = KRaidPhysicalDevice;
using S = KRaidSubStatData;

constexpr char kNext[] = "next\n";

/// What a record makes of a text on whose first line the cursor stands: the fields, then the line
/// that is read next, if kNext stands at the end. `arguments` follow the cursor.
template <auto kRead, class Record, class... Arguments>
std::string Read(const std::string& text,
                 std::initializer_list<std::string (Record::*)() const> getters,
                 Arguments... arguments) {
  CollectedData cursor(nullptr, text);
  Record record(nullptr);
  try {
    (record.*kRead)(&cursor, arguments...);
    const std::string fields = Fields<Record>(record, getters);
    return text.ends_with(kNext) ? fields + cursor.GetNextLine() : fields;
  } catch (const std::out_of_range&) {
    return "out of range";
  } catch (const NKVXHMZ20::THMZException&) {
    return "junk";
  }
}

/// Texts, and what becomes of them.
using Cases = std::vector<std::pair<std::string, std::string>>;

template <auto kRead, class Record, class... Arguments>
void Expect(std::initializer_list<std::string (Record::*)() const> getters, const Cases& cases,
            Arguments... arguments) {
  for (const auto& [text, outcome] : cases) {
    EXPECT_EQ((Read<kRead, Record>(text, getters, arguments...)), outcome) << text;
  }
}

using Reader = std::string (*)(const std::string& text);

template <auto kRead>
std::string Drive(const std::string& text) {
  return Read<kRead, L>(
      text,
      {&L::GetLogicalDriveName, &L::GetStatusOfLogicalDrive, &L::GetAdditionalInformation,
       &L::GetRaidLevel, &L::GetSize, &L::GetReadCacheStatus, &L::GetWriteCacheStatus,
       &L::GetWriteCacheSetting, &L::GetNumberOfChunks, &L::GetStripeUnitSize, &L::GetAccessBlocked,
       &L::GetPartOfArray, &L::GetPartOfMergeGroup, &L::GetLogicalDriveList},
      "7", "2");
}

template <auto kRead, class... Label>
std::string Device(const std::string& text, Label... label) {
  return Read<kRead, P>(text,
                        {&P::GetDeviceType, &P::GetScsiID, &P::GetPfa, &P::GetState, &P::GetSize,
                         &P::GetFru, &P::GetTransferSpeed, &P::GetReportedChannel, &P::GetEnclosure,
                         &P::GetVendor, &P::GetModel, &P::GetWriteCache, &P::GetWorldWideName,
                         &P::GetFirmwareVer, &P::GetDeviceSerialNum, &P::GetDeviceID},
                        "2", "1", label...);
}

constexpr Reader kKelvcmdDevice = [](const std::string& text) {
  return Device<&P::SetConfigData>(text);
};
constexpr Reader kHrconfDevice = [](const std::string& text) {
  return Device<&P::SetConfigHrconfData>(text, "Device #3");
};
constexpr Reader kArcconfDevice = [](const std::string& text) {
  return Device<&P::SetConfigArcconfData>(text, "Device #3");
};

TEST(Records, KnowWhichOfTheirLinesMayBeMissing) {
  const struct {
    Reader read;
    std::string head;
    std::vector<std::string> labels;  // with "?" in front where the line may be missing
  } formats[] = {
      {Drive<&L::SetConfigData>,
       "Logical drive number 7 \n",
       {"Status of logical drive", "?Additional information", "RAID level", "Size (in MB)",
        "Write cache status", "Number of chunks", "Stripe-unit size", "Access blocked",
        "Part of array", "?Part of merge group"}},
      {Drive<&L::SetConfigHrconfData>,
       "Logical drive number 7 \n",
       {"?Logical drive name", "?RAID level", "?Status of logical drive", "?Additional information",
        "Size", "?Write cache status", "Number of chunks", "?Stripe-unit size"}},
      {Drive<&L::SetConfigArcconfData>,
       "Logical drive number 7 \n",
       {"Logical drive name", "RAID level", "Status of logical drive", "Size", "Read-cache mode",
        "Write-cache mode", "Write-cache setting", "Number of chunks", "?Stripe-unit size",
        "?Drive(s)"}},
      {kKelvcmdDevice,
       "Target\nDevice is a Processor device\n",
       {"SCSI ID", "PFA (Yes/No)", "State", "Size (in MB)/(in sectors)", "Device ID",
        "?FRU part number"}},
      {kHrconfDevice,
       "Device #3\nDevice is a Hard drive\n",
       {"State", "Transfer Speed", "?Reported Channel", "?Reported Enclosure", "Vendor", "Model",
        "Firmware", "?Serial number", "?World-wide name", "Size", "Write Cache", "FRU", "PFA"}},
      {kArcconfDevice,
       "Device #3\nDevice is a Hard drive\n",
       {"State", "Transfer Speed", "Reported Channel", "?Reported Enclosure", "Vendor", "Model",
        "Firmware", "?Serial no.", "?World-wide name", "Size", "Write Cache", "FRU", "PFA"}},
      {kHrconfDevice,
       "Device #3\nDevice is a Enclosure\n",
       {"State", "?Transfer Speed", "?Reported Channel", "Vendor", "Model", "Firmware"}},
      {kArcconfDevice,
       "Device #3\nDevice is a Unknown\n",
       {"State", "?Reported Channel", "Vendor", "Model", "Firmware"}},
  };
  for (const auto& format : formats) {
    const std::vector<std::string>& labels = format.labels;
    /// The record, with another text in the place of one line.
    const auto outcome = [&format, &labels](std::size_t place, const std::string& other) {
      std::string text = format.head;
      for (std::size_t i = 0; i < labels.size(); ++i) {
        const std::string line =
            labels[i].substr(labels[i].starts_with('?') ? 1 : 0) + " : " + std::to_string(i) + "\n";
        text += i == place ? other : line;
      }
      return format.read(text + "first\nsecond\nnext\n");
    };
    const std::string whole = outcome(labels.size(), "");
    EXPECT_TRUE(whole.ends_with("|first\n")) << whole;
    for (std::size_t i = 0; i < labels.size(); ++i) {
      SCOPED_TRACE(format.head + labels[i]);
      const std::string value = " " + std::to_string(i) + "$";
      ASSERT_NE(whole.find(value), std::string::npos) << whole;
      std::string expected = whole;
      expected.erase(whole.find(value), value.size());
      if (labels[i].starts_with('?')) {
        EXPECT_EQ(outcome(i, ""), expected);
      } else {
        EXPECT_NE(outcome(i, ""), expected);  // those behind it are read in a wrong place
        EXPECT_EQ(outcome(i, "other : x\n"), expected);
      }
    }
    EXPECT_EQ(format.read(format.head), "out of range");
  }
  // The output may not end where a line may be missing, either.
  EXPECT_EQ(Drive<&L::SetConfigHrconfData>("heading\nSize : 9\nNumber of chunks : 3\n"),
            "out of range");
}

TEST(LogicalDevice, LooksItselfUpInAWholeText) {
  CollectedData cursor(nullptr, "h\nSize : 9\nNumber of chunks : 3\nnext\n");
  L drive(nullptr);
  drive.SetConfigHrconfData(&cursor, "2", "1");
  const std::string text =
      "Logical drive number 1\nSize : 0 \nLogical drive number 2\nSize : 10 \nFew :5\nEnd : x";
  EXPECT_EQ(drive.ParseLogicalDeviceData("Size", text), "10");
  for (const char* label : {"Few", "End", "Absent"}) {
    EXPECT_EQ(drive.ParseLogicalDeviceData(label, text), "") << label;
  }
  EXPECT_EQ(drive.ParseLogicalDeviceData("Size", "Logical drive number 1\nSize : 0 \n"), "");
}

TEST(PhysicalDevice, SplitsTheIdentificationByItsType) {
  const auto with = [](const std::string& type, const std::string& id) {
    return "t\nDevice is a" + type + "\n1\n2\n3\n4\nDevice ID :" + id + "\nnext\n";
  };
  const std::string id = "0123456789abcdefghijklmnopq";
  Expect<&P::SetConfigData, P>(
      {&P::GetDeviceCode, &P::GetFirmwareVer, &P::GetDeviceSerialNum},
      {{with("Hard disk", id + "rstuvwx"), "0123456789abcdef|hijk|klmnopqr|next\n"},
       {with("Hard disk", id), "0123456789abcdef|hijk|klmnopq$|next\n"},
       {with("Hard disk", "0123456789abcdefghijklmnop"), "0123456789abcdef|||next\n"},
       {with("Hard disk", "x"), "x$|||next\n"},
       {with("Tape or Hard disk", id), id + "$|||next\n"},
       {with("Processor device", id), "|||next\n"}},
      "1", "2");
}

TEST(PhysicalDevice, ReadsTheLinesOfItsKind) {
  const Cases cases = {
      // The serial number's label is not hrconf's: the line stands where the size has to.
      {"#3\nDevice is a Hard drive\n1\n2\n3\n4\n5\nSerial no. : s\nWrite Cache : c\n7\n8\nnext\n",
       " Hard drive$||||||||||| c$||||Controller: 1Device #3|next\n"},
      // Unknown before all else: such a device has no speed.
      {"#3\nDevice is a Unknown Enclosure\nState : s\nTransfer Speed : t\nModel : m\n5\nnext\n",
       " Unknown Enclosure$||| s$||||||| m$|||||Controller: 1Device #3|next\n"},
      {"#3\nDevice is a Tape\nnext\n", " Tape$|||||||||||||||Controller: 1Device #3|next\n"},
      {"#3\nState : s\nnext\n", "|||||||||||||||Controller: 1Device #3|next\n"},
  };
  for (const auto& [text, outcome] : cases) EXPECT_EQ(kHrconfDevice(text), outcome) << text;
}

TEST(StripeOrder, OfKelvcmdTakesOneLineMoreWhenItBeginsWithADigit) {
  const std::string label = " stripe order (Channel/SCSI ID)";
  Expect<&A::SetConfigData, A>(
      {&A::GetControllerNum, &A::GetCollectionID, &A::GetArrayData, &A::GetStripeOrder},
      {{"Array B" + label + " : 1,0 1,1\n  \t2,0\n3,next\n",  // the third line is lost
        "2|KelvaRAID2ArrayB|B| 1,0 1,1$2,0$|3,next\n"},
       {"Array B" + label + " : 1,0\n\nnext\n", "2|KelvaRAID2ArrayB|B| 1,0$|\n"},
       {"Array B" + label + " : 1,0\nnext\n", "2|KelvaRAID2ArrayB|B| 1,0$|next\n"},
       {label + " : 1,0\nnext\n", "2|KelvaRAID2Array|| 1,0$|next\n"},
       {"Array B" + label + "\nnext\n", "2|KelvaRAID2ArrayB|B||next\n"},
       {"Array B stripe order\nnext\n", "2||||next\n"},
       {"Array B" + label + " : 1,0\n", "out of range"}},
      "2");
}

template <auto kRead>
void ExpectNewerOrders() {
  const std::string line = "Stripe order (Channel,Device) : 0,0\n";
  Expect<kRead, A>({&A::GetCollectionID, &A::GetArrayData, &A::GetStripeOrder},
                   {{line + " 0,1\n\t0,2\nnext\n",
                     "KelvaRaidCntrlr2LogicalDrv7 0,0$ 0,1$ 0,2$|Stripe order (Channel,Device) : "
                     "0,0$| 0,0$ 0,1$ 0,2$|next\n"},
                    {"Stripe order : 0,0\nnext\n", "|||next\n"},
                    {line + "0,1\n", "out of range"},
                    {line + std::string("\0\n", 2) + "next\n", "out of range"}},
                   "2", "7");
}

TEST(StripeOrder, OfTheNewerToolsTakesAllLinesThatBeginWithADigit) {
  ExpectNewerOrders<&A::SetConfigHrconfData>();
  ExpectNewerOrders<&A::SetConfigArcConfData>();
}

TEST(BadStripes, CutTheNumbersOfTheirLine) {
  Expect<&B::SetConfigData, B>({&B::GetControllerNum, &B::GetLogicalDriveNum, &B::GetBadStripeNum},
                               {{"  Logical drive 1 - 17 stripes\nnext\n", "7|1|17|next\n"},
                                {"Logical drive 12 - 3\n", "7|12|0|"},  // the only digit is cut
                                {"Logical drive 12 - 34\n", "7|12|3|"},
                                {"Logical drive 2 -17 x\n", "7|2|17|"},
                                {"Logical drive x - none \n", "7|0|0|"},
                                {"Logical drive \n", "7|0||"},
                                {"about - 5 \n", "7||5|"},
                                {"about -5\n", "7||0|"},
                                {"neither\n", "7|||"},
                                {"see Logical drive 3 - 4 - 5 x\n", "7|3|4|"},
                                {"Logical drive 4294967297 - 1 x\n", "7|1|1|"}},
                               "7");
}

TEST(DeviceEvents, CutSevenColumnsAndTrimSomeOfThem) {
  Expect<&E::SetConfigData, E>(
      {&E::GetChannelValue, &E::GetScsiIDValue, &E::GetParityValue, &E::GetSoftValue,
       &E::GetHardValue, &E::GetPFAValue, &E::GetMiscValue},
      {// All with two blanks at the end: parity, hard and misc keep one.
       {"A | a  | b  | c  | d  | e  | f  | g  |\nnext\n", "a|b|c |d|e |f|g |next\n"},
       {"|12|3 | |    ||x|y |\n", "1|3|||||y|"},
       {"A | 1 | 2 | 3\n", "1|2||||||"},  // no closing bar, no column
       {"no bars\n", "|||||||"},
       {"A | 1 | 2 | 3 | 4 | 5 | 6 | 7 | 8 |\n", "1|2|3|4|5|6|7|"}},
      "7");
}

TEST(SubStatistics, ReadTheKeysInTheirOrder) {
  Expect<&S::SetConfigData, S>(
      {&S::GetControllerNum, &S::GetChannelValue, &S::GetScsiIDValue, &S::GetParamsValue,
       &S::GetReq_OffValue, &S::GetMax_Txer_PValue, &S::GetCur_Txer_PValue, &S::GetInstanceIDValue},
      {{"A:1 C:0 PARAMS:3 REQ-OFF:15 MAX-TXER-P:40 CUR-TXER-P:41 \nnext\n",
        "1|0||3|15|40|41|KelvaRAID:1C0S|next\n"},
       // A key out of its order is not found behind the one before.
       {"C:0 A:1 I:5 CUR-TXER-P:9 \n", "1||5||||9|KelvaRAID:1CS5|"},
       {"A: C:0 I:\t5 CUR-TXER-P:\n", "|0|\t5|||||KelvaRAID:C0S\t5|"},
       {"A:1 C:last\n", "1|last$||||||KelvaRAID:1Clast$S|"},
       {"nothing\n", "|||||||KelvaRAID:CS|"},
       {"A:1 CUR-TXER-P:12\n", "1||||||1|KelvaRAID:1CS|"}},
      "not used");
}

TEST(DddEvents, CutColumnsAndTellJunkFromTextThatIsTooShort) {
  Expect<&D::SetConfigData, D>(
      {&D::GetControllerNum, &D::GetDateValue, &D::GetTimeValue, &D::GetChannelValue,
       &D::GetIdValue, &D::GetReasonValue, &D::GetDescriptionValue, &D::GetRecordIdValue},
      {{"1 |  03/15/2004 | 14:02:09 | 1 | 3  | 05 |  Drive failed | twice \nnext\n",
        "7|03/15/2004|14:02:09|1|3 |05|Drive failed | twice |001a|next\n"},
       {"1 | 03/15/2004 | 14:02:09 | 1 | 3\n", "7|03/15/2004|14:02:09|1||||001a|"},
       {"1 | 13/15/2004 | 14:02:09 | 1 | 3 | 05 | x\n", "junk"},
       {"1 | mm/dd/ | 14:02:09 | 1 | 3 | 05 | x\n", "junk"},
       {"1 | 03/15 | 14:02:09 | 1 | 3 | 05 | x\n", "out of range"},
       {"1 | 03/15/2004 | 14:02 | 1 | 3 | 05 | x\n", "out of range"},
       {"\n", "out of range"}},
      "7", 26);
}

TEST(EventWords, ReadHexadecimalNumbersUpToTheCompletion) {
  const std::pair<const char*, std::vector<std::uint32_t>> logs[] = {
      {"-----------\n0000001A\n  ff\n", {26, 255}},
      {"0x10 text\nno 5\n\nentry\n-1\n", {16, 14, 4294967295}},
      {"1 ------------\n----------\n2 ----------\nFFFFFFFF\n123456789\n",
       {2, 4294967295, 0x23456789}},
  };
  for (const auto& [log, values] : logs) {
    CollectedData cursor(nullptr, std::string("Controller Soft Event Log: 4\n") + log +
                                      "Command completed successfully.\nnext\n");
    KRaidEventSoftData record(nullptr);
    record.SetConfigData(&cursor, "7");
    EXPECT_EQ(record.GetSoftEventValues(), values) << log;
    EXPECT_EQ(cursor.GetNextLine(), "next\n");
    EXPECT_EQ(record.GetNumberOfEntriesValue(), "Controller Soft Event Log: 4\n");
  }
}

}  // namespace
