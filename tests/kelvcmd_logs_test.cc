// The records that kelvcmd's "getbst", "getevent" and "getsubstat" fill.

#include <gtest/gtest.h>

#include <stdexcept>

#include "hmz/exception.h"
#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "model/kraid_sub_stat_data.h"
#include "tests/fake_host.h"

namespace {

TEST(BadStripes, CutTheNumbersOfTheirLine) {
  const struct {
    const char* line;
    const char* numbers;
  } cases[] = {
      {"  Logical drive 1 - 17 stripes\n", "1/17"},
      {"Logical drive 12 - 3\n", "12/0"},  // the cut takes the only digit
      {"Logical drive 12 - 34\n", "12/3"},
      {"Logical drive 2 -17 x\n", "2/17"},
      {"Logical drive x - none \n", "0/0"},
      {"Logical drive 1\n", "0/"},
      {"Logical drive \n", "0/"},
      {"about - 5 \n", "/5"},
      {"about -5\n", "/0"},
      {"neither\n", "/"},
      {"see Logical drive 3 - 4 - 5 x\n", "3/4"},
      {"Logical drive 4294967297 - 1 x\n", "1/1"},
  };
  for (const auto& c : cases) {
    CollectedData cursor(nullptr, c.line);
    KRaidBstData record(nullptr);
    record.SetConfigData(&cursor, "7");
    EXPECT_EQ(record.GetLogicalDriveNum() + "/" + record.GetBadStripeNum(), c.numbers) << c.line;
    EXPECT_EQ(record.GetControllerNum(), "7");
    EXPECT_EQ(cursor.GetCurrentLine(), c.line);  // it stayed
  }
}

TEST(DeviceEvents, CutSevenColumnsAndTrimSomeOfThem) {
  const struct {
    const char* line;
    const char* columns;
  } cases[] = {
      {"A | 1 | 2 | 0 | 5 | 0 | 1 | 0 |\n", "1;2;0;5;0;1;0;"},
      // All with two blanks at the end: parity, hard and misc keep one.
      {"A | a  | b  | c  | d  | e  | f  | g  |\n", "a;b;c ;d;e ;f;g ;"},
      {"|12|3 | |    ||x|y |\n", "1;3;;;;;y;"},
      {"A | 1 | 2 | 3\n", "1;2;;;;;;"},  // no closing bar, no column
      {"A | 1\n", ";;;;;;;"},
      {"no bars\n", ";;;;;;;"},
      {"A | 1 | 2 | 3 | 4 | 5 | 6 | 7 | 8 |\n", "1;2;3;4;5;6;7;"},
  };
  using E = KRaidEventData;
  FakeHost host;
  for (const auto& c : cases) {
    CollectedData cursor(nullptr, c.line);
    E record(nullptr);
    record.SetConfigData(&cursor, "7");
    std::string columns;
    for (const auto getter :
         {&E::GetChannelValue, &E::GetScsiIDValue, &E::GetParityValue, &E::GetSoftValue,
          &E::GetHardValue, &E::GetPFAValue, &E::GetMiscValue}) {
      columns += (record.*getter)() + ";";
    }
    EXPECT_EQ(columns, c.columns) << c.line;
    EXPECT_EQ(record.GetStatisticTimeValue().ToString(), "20240517102030.000400+120");
  }
}

TEST(SubStatistics, ReadTheKeysInTheirOrder) {
  const struct {
    const char* line;
    const char* values;
  } cases[] = {
      {"A:1 C:0 I:5 PARAMS:3 REQ-OFF:15 MAX-TXER-P:40 CUR-TXER-P:41 \n",
       "1;0;5;3;15;40;41;KelvaRAID:1C0S5"},
      {"A:1 C:0 PARAMS:3 REQ-OFF:15 MAX-TXER-P:40 CUR-TXER-P:41 \n",
       "1;0;;3;15;40;41;KelvaRAID:1C0S"},
      // A key out of its order is not found behind the one before.
      {"C:0 A:1 I:5 CUR-TXER-P:9 \n", "1;;5;;;;9;KelvaRAID:1CS5"},
      {"A: C:0 I:\t5 CUR-TXER-P:\n", ";0;\t5;;;;;KelvaRAID:C0S\t5"},
      {"A:1 C:last\n", "1;last\n;;;;;;KelvaRAID:1Clast\nS"},
      {"nothing\n", ";;;;;;;KelvaRAID:CS"},
      {"A:1 CUR-TXER-P:12\n", "1;;;;;;1;KelvaRAID:1CS"},
  };
  using S = KRaidSubStatData;
  FakeHost host;
  for (const auto& c : cases) {
    CollectedData cursor(nullptr, c.line);
    S record(nullptr);
    record.SetConfigData(&cursor, "7");  // not used: the row has the number
    std::string values;
    for (const auto getter :
         {&S::GetControllerNum, &S::GetChannelValue, &S::GetScsiIDValue, &S::GetParamsValue,
          &S::GetReq_OffValue, &S::GetMax_Txer_PValue, &S::GetCur_Txer_PValue}) {
      values += (record.*getter)() + ";";
    }
    EXPECT_EQ(values + record.GetInstanceIDValue(), c.values) << c.line;
    EXPECT_EQ(record.GetStatisticTimeValue().ToString(), "20240517102030.000400+120");
  }
}

TEST(DddEvents, CutColumnsAndPutTheTimeTogether) {
  using D = KRaidEventDddData;
  CollectedData cursor(nullptr,
                       "1 |  03/15/2004 | 14:02:09 | 1 | 3  | 05 |  Drive failed | twice \n");
  D record(nullptr);
  EXPECT_EQ(record.GetDateTimeValue(), nullptr);
  record.SetConfigData(&cursor, "7", 26);
  std::string values;
  for (const auto getter :
       {&D::GetControllerNum, &D::GetDateValue, &D::GetTimeValue, &D::GetChannelValue,
        &D::GetIdValue, &D::GetReasonValue, &D::GetDescriptionValue, &D::GetRecordIdValue}) {
    values += (record.*getter)() + ";";
  }
  EXPECT_EQ(values, "7;03/15/2004;14:02:09;1;3 ;05;Drive failed | twice ;001a;");
  EXPECT_EQ(record.GetDateTimeValue()->ToString(), "20040315140209.000000+000");
  record.SetConfigData(&cursor, "7", 0x12345);
  EXPECT_EQ(record.GetRecordIdValue(), "12345");
}

TEST(DddEvents, TellJunkFromTextThatIsTooShort) {
  const auto read = [](const char* line) {
    CollectedData cursor(nullptr, line);
    KRaidEventDddData(nullptr).SetConfigData(&cursor, "1", 1);
  };
  EXPECT_THROW(read("1 | 13/15/2004 | 14:02:09 | 1 | 3 | 05 | x\n"), NKVXHMZ20::THMZException);
  EXPECT_THROW(read("1 | mm/dd/ | 14:02:09 | 1 | 3 | 05 | x\n"), NKVXHMZ20::THMZException);
  EXPECT_THROW(read("1 | 03/15 | 14:02:09 | 1 | 3 | 05 | x\n"), std::out_of_range);
  EXPECT_THROW(read("1 | 03/15/2004 | 14:02 | 1 | 3 | 05 | x\n"), std::out_of_range);
  EXPECT_THROW(read("\n"), std::out_of_range);
  EXPECT_NO_THROW(read("1 | 03/15/2004 | 14:02:09 | 1 | 3\n"));
}

TEST(EventWords, ReadHexadecimalNumbersUpToTheCompletion) {
  const std::string end = "Command completed successfully.\n";
  const struct {
    std::string log;
    std::vector<std::uint32_t> values;
  } cases[] = {
      {"-----------\n0000001A\n  ff\n", {26, 255}},
      {"", {}},
      {"0x10 text\nno 5\n\nentry\n-1\n", {16, 14, 4294967295}},
      {"1 ------------\n----------\n2 ----------\nFFFFFFFF\n123456789\n",
       {2, 4294967295, 0x23456789}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.log);
    CollectedData cursor(nullptr, "Controller Soft Event Log: 4\n" + c.log + end);
    KRaidEventSoftData record(nullptr);
    record.SetConfigData(&cursor, "7");
    EXPECT_EQ(record.GetSoftEventValues(), c.values);
    EXPECT_EQ(cursor.GetCurrentLine(), end);
    EXPECT_EQ(record.GetControllerNum() + record.GetNumberOfEntriesValue() +
                  record.GetRecordIdValue() + record.GetDateTimeValue()->ToString(),
              "7Controller Soft Event Log: 4\n120000101010101.000001+001");
  }
  CollectedData cursor(nullptr, "Controller Hard Event Log\n1\n");
  KRaidEventHardData record(nullptr);
  EXPECT_THROW(record.SetConfigData(&cursor, "7"), std::out_of_range);
}

}  // namespace
