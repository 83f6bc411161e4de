// The RAID manager's event log, its time stamps included.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "raidmgr/collect_raid_mgr_data.h"
#include "tests/fake_host.h"

namespace {

using namespace std::string_literals;  // NOLINT(google-build-using-namespace): for the NULs
using Texts = std::vector<std::string>;

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
    std::string time = log.GetTimeStamp().ToString();
    return time.erase(time.find('.'), 7) + ";" + log.GetRecordId() + ";" + log.GetSeverity() + ";" +
           log.GetMachineName() + ";" + log.GetMessage();
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

const std::string kNow = "20240517102030+120";
const std::string kFirst = kNow + ";1;INF;;SpawnedProcess: ./kraid/krmgr.sh ";

TEST_F(ManagerLog, GivesItsEntriesOneByOne) {
  CollectRaidMgrData log(nullptr, ManagerFolder("all_kinds"));
  EXPECT_TRUE(log.GetInitialized());
  ASSERT_EQ(log.GetRawRaidMgrLog().size(), 1U);
  EXPECT_EQ(log.GetRawRaidMgrLog()[0]->GetCommand(),
            ManagerFolder("all_kinds") + "KelvEvtA.log   ");
  const Texts entries = Entries(log);
  EXPECT_EQ(log.GetRawRaidMgrLog()[0]->GetRawData().GetCount(), entries.size() - 1);
  std::string report;
  for (const std::string& entry : entries) {
    report += entry + (entry.ends_with('\n') ? "" : "|\n");
  }
  CompareExpected("all_kinds/manager_entries.txt", report);
  // The line's end was read, the file's not yet: the second call says nothing, the third does.
  EXPECT_EQ(Entry(log), "20050107130203+540;1;;m2;last\n");
  EXPECT_TRUE(host_.log.empty());
  EXPECT_FALSE(log.GetNextRaidMgrLogLine());
  EXPECT_EQ(Entry(log), kNow + ";1;INF;m2;No RAID Manager log entries.");
  EXPECT_EQ(host_.log, Texts{"3|Unexpected end of file reached."});
}

TEST_F(ManagerLog, ReadsLongLinesInPiecesAndEndsWithAMadeUpEntryWithoutALastNewline) {
  const std::string head = "2005/01/05 13:02:03 JST\tINF\tm\t";
  const std::string fits(511 - head.size(), 'x');
  CollectRaidMgrData log(nullptr, With(head + fits + "\n" + head + "end"));
  EXPECT_EQ(Entries(log), (Texts{kFirst, "20050105130203+540;1;INF;m;" + fits,
                                 "00000000000000+000;1;;;", "20050105130203+540;1;INF;m;end"}));
  EXPECT_EQ(Entry(log), kNow + ";1;INF;m;No RAID Manager log entries.");

  // As many as are read at once: the end of the file is not met yet.
  CollectRaidMgrData one_piece(nullptr, With(head + fits));
  EXPECT_EQ(Entries(one_piece), (Texts{kFirst, "20050105130203+540;1;INF;m;" + fits}));
  EXPECT_EQ(Entry(one_piece), "20050105130203+540;1;INF;m;" + fits);
}

TEST_F(ManagerLog, CutsLinesWithNulsAtTheirTabsOnly) {
  CollectRaidMgrData log(nullptr, With(std::string(600, '\0') + "2005/01/05\tERR\tm1\tfirst\n" +
                                       "2005/01/06\tE\0R\0 \t\0m\t\0second\0\n"s));
  EXPECT_EQ(Entries(log),
            (Texts{kFirst, "00000000000000+000;1;;;", "00000000000000+000;1;ERR;m1;first\n",
                   "20050106000000+000;1;E\0R\0;\0m;\0second\0\n"s}));
}

TEST_F(ManagerLog, OfNothingHasNoEntries) {
  CollectRaidMgrData empty(nullptr, With(""));
  EXPECT_TRUE(empty.GetInitialized());
  EXPECT_TRUE(empty.GetRawRaidMgrLog().empty());
  EXPECT_EQ(Entries(empty), Texts{kFirst});
  empty.CloseRaidMgrLog();
  EXPECT_EQ(Entries(empty), Texts{kFirst});

  std::filesystem::remove(folder_ / "KelvEvtA.log");
  CollectRaidMgrData without_log(nullptr, folder_.string() + "/");
  EXPECT_FALSE(without_log.GetInitialized());
  EXPECT_EQ(Entries(without_log), Texts{kFirst});
  EXPECT_EQ(host_.log, Texts{"3|" + (folder_ / "KelvEvtA.logKelvEvtA.log not found.").string()});

  CollectRaidMgrData without_manager(nullptr, "/absent/");
  EXPECT_FALSE(without_manager.GetInitialized());
  EXPECT_EQ(Entries(without_manager),
            Texts{kNow + ";1;INF;;Kelvmgr path of /usr/KelvMgr not found"});
  EXPECT_EQ(host_.log.size(), 1U);
}

}  // namespace
