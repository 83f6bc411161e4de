// The RAID manager's event log and its time stamps.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "raidmgr/collect_raid_mgr_data.h"
#include "raidmgr/log_time_stamp.h"
#include "tests/fake_host.h"

namespace {

using Texts = std::vector<std::string>;

TEST(LogTimeStamp, IsReadInThreeLayouts) {
  const std::pair<const char*, const char*> cases[] = {
      {"January 5, 2005 1:02:03 PM EST", "20050105130203-300"},
      {"March 15, 2004 12:00:00 AM EST", "20040315000000-300"},
      {"March 15, 2004 12:30:00 PM EST", "20040315123000-300"},
      {"March 15, 2004 14:30:00 EST", "20040315143000+000"},  // the zone loses its E
      {"March 15, 2004 1:30:00 PST", "20040315133000+000"},   // and this one is half a PM
      {"March 15, 2004 12:30:00 AST", "20040315003000+000"},
      {"Xyz 5, 2005 1:02:03 PM EST", "20050005130203-300"},
      {"March 15, 2004 13:00:00 AM EST", "20040315130000-300"},  // only 12 becomes 0
      {"2005/08/09 08:09:08 JST", "20050809080908+540"},         // no octal numbers
      {"2005/1/5 13:02:03 JST ", "20050105130203+000"},          // a blank is part of the zone
      {"2005/01/05 13:02:03", "20050105130203+000"},
      {"05 Jan 2005 13:02:03 CET", "20050005130203+060"},
      {"5 July 2005 13:02:03 est", "20050705130203+000"},
      {"5 July", "00000705000000+000"},
      {"70000 May 70000 70000:1:2 EST", "446405446444640102-300"},
      {"", "00000000000000+000"},
      {"2005/", "20050000000000+000"},
      {"     ", "00000000000000+000"},
  };
  for (const auto& [field, expected] : cases) {  // without the fraction
    std::string time = ParseLogTimeStamp(field).ToString();
    EXPECT_EQ(time.erase(time.find('.'), 7), expected) << field;
  }
}

TEST(LogTimeStamp, KnowsMonthsByTheirLetters) {
  const char* names[] = {"January", "February", "March",     "April",   "May",      "June",
                         "July",    "August",   "September", "October", "November", "December"};
  for (int i = 0; i < 12; ++i) EXPECT_EQ(MonthStrToInt(names[i]), i + 1) << names[i];
  const std::pair<const char*, int> others[] = {{"Jan", 0}, {"Feb", 2}, {"Mar", 3}, {"Jun", 0},
                                                {"Jul", 0}, {"Aug", 8}, {"D", 12},  {"A", 0},
                                                {"", 0},    {"may", 0}, {"1", 0}};
  for (const auto& [name, month] : others) EXPECT_EQ(MonthStrToInt(name), month) << name;
}

TEST(LogTimeStamp, TakesTheFirstZoneOfAName) {
  std::istringstream zones(
      "ADT -3 EDT -4 AST -4 EST -5 CDT -5 CST -6 MDT -6 MST -7 PDT -7 PST -8 AKDT -8 "
      "ALA -9 AKST -9 HAW -10 A 1 BST 1 CET 1 FWT 1 MET 1 MEWT 1 SWT 1 EET 2 B 2 C 3 "
      "ZP4 4 ZP5 5 ZP6 6 WAST 7 CCT 8 AWST 8 ACDT 9 JST 9 ACST 10 EAST 10 AEST 10 "
      "AEDT 11 IDLE 12 NZST 12 NZT 12 est 0 UTC 0");
  std::string zone;
  int hours = 0;
  while (zones >> zone >> hours) EXPECT_EQ(UtcStrToInt(zone), hours) << zone;
  EXPECT_EQ(zone, "UTC");
}

class ManagerLog : public testing::Test {
 protected:
  ManagerLog() {
    std::string pattern = testing::TempDir() + "kraid-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    std::ofstream(folder_ / "KelvMgr.sh") << "#!/bin/sh\n";
  }
  ~ManagerLog() override { std::filesystem::remove_all(folder_); }

  /// The manager's directory, with this log.
  std::string With(const std::string& log) const {
    std::ofstream(folder_ / "KelvEvtA.log", std::ios::binary) << log;
    return folder_.string() + "/";
  }

  static std::string Entry(const CollectRaidMgrData& log) {
    return log.GetTimeStamp().ToString().substr(0, 8) + ";" + log.GetRecordId() + ";" +
           log.GetSeverity() + ";" + log.GetMachineName() + ";" + log.GetMessage();
  }

  /// The current entry and all that follow.
  static Texts Entries(CollectRaidMgrData& log) {
    Texts entries = {Entry(log)};
    while (log.GetNextRaidMgrLogLine()) entries.push_back(Entry(log));
    return entries;
  }

  FakeHost host_;
  std::filesystem::path folder_;
};

constexpr char kFirst[] = "20240517;1;INF;;SpawnedProcess: ./kraid/krmgr.sh ";

TEST_F(ManagerLog, GivesItsEntriesOneByOne) {
  CollectRaidMgrData log(nullptr, With("2005/01/05 13:02:03 JST\tINF   \t m1 \tfirst\ttext\n"
                                       "2005/01/06 13:02:03 JST\tERR\n"
                                       "\t\t\t\n\n"
                                       "2005/01/07 13:02:03 JST\t \tm2\tlast\n"));
  EXPECT_TRUE(log.GetInitialized());
  ASSERT_EQ(log.GetRawRaidMgrLog().size(), 1U);
  EXPECT_EQ(log.GetRawRaidMgrLog()[0]->GetCommand(), (folder_ / "KelvEvtA.log").string() + "   ");
  EXPECT_EQ(log.GetRawRaidMgrLog()[0]->GetRawData().GetArray().size(), 5U);
  EXPECT_EQ(Entries(log), (Texts{kFirst, "20050105;1;INF; m1 ;first", "20050106;1;ERR;;",
                                 "00000000;1;;;\n", "00000000;1;;;", "20050107;1;;m2;last\n"}));
  // The line's end was read, the file's not yet: the second call says nothing, the third does.
  EXPECT_EQ(Entry(log), "20050107;1;;m2;last\n");
  EXPECT_TRUE(host_.log.empty());
  EXPECT_FALSE(log.GetNextRaidMgrLogLine());
  EXPECT_EQ(Entry(log), "20240517;1;INF;m2;No RAID Manager log entries.");
  EXPECT_EQ(host_.log, Texts{"3|Unexpected end of file reached."});
}

TEST_F(ManagerLog, ReadsLongLinesInPiecesAndEndsWithAMadeUpEntryWithoutALastNewline) {
  const std::string head = "2005/01/05 13:02:03 JST\tINF\tm\t";
  const std::string fits(511 - head.size(), 'x');
  CollectRaidMgrData log(nullptr, With(head + fits + "\n" + head + "end"));
  EXPECT_EQ(Entries(log),
            (Texts{kFirst, "20050105;1;INF;m;" + fits, "00000000;1;;;", "20050105;1;INF;m;end"}));
  EXPECT_EQ(Entry(log), "20240517;1;INF;m;No RAID Manager log entries.");
}

TEST_F(ManagerLog, OfNothingHasNoEntries) {
  CollectRaidMgrData empty(nullptr, With(""));
  EXPECT_TRUE(empty.GetInitialized());
  EXPECT_TRUE(empty.GetRawRaidMgrLog().empty());
  EXPECT_EQ(Entries(empty), Texts{kFirst});

  std::filesystem::remove(folder_ / "KelvEvtA.log");
  CollectRaidMgrData without_log(nullptr, folder_.string() + "/");
  EXPECT_FALSE(without_log.GetInitialized());
  EXPECT_EQ(Entry(without_log), kFirst);
  EXPECT_EQ(host_.log, Texts{"3|" + (folder_ / "KelvEvtA.logKelvEvtA.log not found.").string()});

  CollectRaidMgrData without_manager(nullptr, "/absent/");
  EXPECT_FALSE(without_manager.GetInitialized());
  EXPECT_EQ(Entry(without_manager), "20240517;1;INF;;Kelvmgr path of /usr/KelvMgr not found");
  EXPECT_EQ(host_.log.size(), 1U);
}

}  // namespace
