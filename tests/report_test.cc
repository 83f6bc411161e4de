// What people and monitoring systems are told of a machine.

#include <gtest/gtest.h>

#include "inventory/print/check_line.h"
#include "inventory/print/flow.h"
#include "inventory/print/text_report.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

constexpr char kControllers[] = "KVXSG_krSCSIProtocolController";
constexpr char kDisks[] = "KVXSG_krLogicalDisk";
constexpr char kDrives[] = "KVXSG_krDiskDrive";

/// A property of the instances of one class that is not as it is in a machine without faults.
struct Change {
  const char* class_name = "";
  const char* property = "";
  const char* value = "";
};

/// A machine of one controller with an array of one logical drive and one device, all fine.
void CommitMachine(standin::Repository& repository, const Change& change) {
  const std::pair<const char*, Properties> instances[] = {
      {kControllers,
       {{"ControllerNum", "1"},
        {"ControllerName", "db\n"},
        {"DefunctDiskDriveCnt", "0\n"},
        {"LogicalDriveStatusCnt", "1/0/0\n"},
        {"ControllerStatus", "Okay\n"},
        {"ControllerBatteryStatus", "Okay\n"},
        {"ControllerBatteryOverTemp", "No\n"},
        {"Current_MostRecentOperation", " Rebuild\n"},
        {"Logical_Drive", " 1\n"},
        {"BackgroundOperationActive", " No\n"},
        {"LastCmdStatus", " Successful\n"}}},
      {kDisks,
       {{"ControllerNum", "1"},
        {"LogicalDriveNum", "1"},
        {"LogicalDriveStatus", " Okay (OKY)\n"},
        {"AccessBlocked", " No\n"},
        {"PartOfArray", " A\n"}}},
      {"KVXSG_krDiskGroup",
       {{"CollectionID", "KelvaRAID1ArrayA"},
        {"ControllerNum", "1"},
        {"Array", "A"},
        {"StripeOrder", " 1,0\n"}}},
      {kDrives,
       {{"ControllerNum", "1"},
        {"Channel", "1"},
        {"ScsiId", " 0\n"},
        {"State", " Online (ONL)\n"},
        {"PFA", " No\n"}}},
      {"KVXSG_BadStripeData",
       {{"ControllerNum", "1"}, {"LogicalDrive", "1"}, {"NumBadStripes", "0"}}},
      {"KVXSG_krSCSIDeviceData",
       {{"ControllerNum", "1"},
        {"Channel", "1"},
        {"ScsiId", "0"},
        {"PFA", "0"},
        {"NumHardErrors", "7"}}},
  };
  for (auto [class_name, properties] : instances) {
    for (auto& [name, value] : properties) {
      if (std::string(class_name) == change.class_name && name == change.property) {
        value = change.value;
      }
    }
    Commit(repository, class_name, properties);
  }
}

std::string CheckLine(const Report& report, CheckStatus& status) {
  return Printed([&](Sink& output) { status = PrintCheck(report, output); });
}

TEST(Check, TellsWhatNeedsAttentionAndHowMuch) {
  const struct {
    Change change;
    CheckStatus status;
    const char* text;
  } cases[] = {
      {{},
       kCheckOk,
       "KRAID OK - 1 controller, 1 logical drive, 1 device, all fine | controllers=1"},
      {{kDrives, "State", " Defunct (DDD)\n"},
       kCheckCritical,
       "KRAID CRITICAL - 1 critical, 0 warnings: controller 1 (db), device 1,0: Defunct (DDD) |"},
      {{kDrives, "State", "a|b"}, kCheckWarning, ": a/b | controllers"},
      {{kDrives, "State", " Rebuilding (RBL)\n"}, kCheckWarning, " rebuilds=1;"},
      {{"KVXSG_krSCSIDeviceData", "PFA", "2"}, kCheckWarning, " predicted_failures=1;"},
      {{"KVXSG_BadStripeData", "NumBadStripes", "17"},
       kCheckWarning,
       " drives_with_bad_stripes=1;"},
      {{kControllers, "DefunctDiskDriveCnt", "2\n"},
       kCheckCritical,
       " | controllers=1;;;0 logical_drives=1;;;0 devices=1;;;0 failed_devices=2;"},
      {{kControllers, "LogicalDriveStatusCnt", "3/1/1\n"}, kCheckCritical, "degraded_drives=2;"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.change.property) + " " + c.change.value);
    standin::Repository repository;
    CommitMachine(repository, c.change);
    CheckStatus status = kCheckUnknown;
    const std::string line = CheckLine({"h", 0, {}, repository}, status);
    EXPECT_EQ(status, c.status);
    EXPECT_NE(line.find(c.text), std::string::npos) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_EQ(std::count(line.begin(), line.end(), '|'), 1);
  }
}

TEST(Check, KnowsWhenItDoesNotKnow) {
  standin::Repository nothing;
  standin::Repository machine;
  CommitMachine(machine, {kDrives, "State", "Defunct"});
  const Problem absent = {"./kraid/hrconf", "not there", Problem::Extent::kAbsentTool};
  const Problem failed = {"./kraid/hrconf", "was ended by signal 11"};
  const Problem useless = {"./kraid/hrconf", "all failed", Problem::Extent::kTool};
  const Problem threw = {"./kraid/kelvcmd", "too short", Problem::Extent::kCollection};
  const struct {
    standin::Repository& repository;
    std::vector<Problem> problems;
    CheckStatus status;
    const char* start;
  } cases[] = {
      {nothing, {absent}, kCheckUnknown, "KRAID UNKNOWN - no controller was found | c"},
      {nothing, {failed}, kCheckUnknown, "KRAID UNKNOWN - no controller was found; 0 critical, 1"},
      {machine, {absent}, kCheckCritical, "KRAID CRITICAL - 1 critical, 0 warnings"},
      {machine, {failed}, kCheckCritical, "KRAID CRITICAL - 1 critical, 1 warning: "},
      {machine, {useless}, kCheckCritical, "KRAID CRITICAL - 1 critical, 1 warning: "},
      {machine,
       {threw},
       kCheckUnknown,
       "KRAID UNKNOWN - ./kraid/kelvcmd: too short; 1 critical, 0 warnings: controller 1"},
  };
  for (const auto& c : cases) {
    CheckStatus status = kCheckOk;
    const std::string line = CheckLine({"h", 0, c.problems, c.repository}, status);
    EXPECT_EQ(status, c.status);
    EXPECT_TRUE(line.starts_with(c.start)) << line;
  }
  standin::Repository fine;
  CommitMachine(fine, {});
  CheckStatus status = kCheckOk;
  EXPECT_TRUE(CheckLine({"h", 0, {failed}, fine}, status).starts_with("KRAID WARNING - 0 cr"));
  EXPECT_TRUE(CheckLine({"h", 0, {useless}, fine}, status).starts_with("KRAID UNKNOWN - 0 cr"));
}

TEST(Check, NamesAsMuchAsALineCanHold) {
  standin::Repository repository;
  CommitMachine(repository, {kDrives, "State", "Defunct"});
  for (int i = 1; i < 10; ++i) {
    Commit(repository, kDrives,
           {{"ControllerNum", "1"},
            {"ScsiId", std::to_string(i)},
            {"State", "Defunct" + std::string(1000, '-')}});
  }
  Commit(repository, kControllers, {{"ControllerNum", "2"}, {"DefunctDiskDriveCnt", "1\n"}});
  CheckStatus status = kCheckUnknown;
  const std::string line = CheckLine({"h", 0, {}, repository}, status);
  EXPECT_LT(line.size(), 2500U);
  EXPECT_NE(line.find("; controller 1 (db), device ?,7: Defunct--"), std::string::npos) << line;
  EXPECT_EQ(line.find("device ?,8"), std::string::npos) << line;
  EXPECT_NE(line.find("; and 3 more |"), std::string::npos) << line;  // controller 2 is one of them
}

std::string Text(const Report& report, const Display& display = {}) {
  return Printed([&](Sink& output) { PrintText(report, "/r", display, output); });
}

TEST(TextReport, HidesNothingThatBelongsNowhere) {
  standin::Repository repository;
  CommitMachine(repository, {"KVXSG_BadStripeData", "LogicalDrive", "9"});
  const std::pair<const char*, Properties> strays[] = {
      {"KVXSG_BadStripeData",
       {{"ControllerNum", "1"}, {"LogicalDrive", "8"}, {"NumBadStripes", "3"}}},
      {"KVXSG_krSCSIDeviceData",
       {{"ControllerNum", "1"}, {"Channel", "4"}, {"ScsiId", "4"}, {"NumSoftErrors", "6"}}},
      {kDrives, {{"ControllerNum", "7"}, {"Channel", "0"}, {"ScsiId", "1"}, {"Size", "0/0"}}},
      {kDisks, {{"ControllerNum", "7"}, {"LogicalDriveNum", "2"}, {"Size", " 5\n"}}},
  };
  for (const auto& [name, properties] : strays) Commit(repository, name, properties);
  EXPECT_EQ(
      Text({"host", 0, {{"tool", "why\nnot"}}, repository}),
      R"(host: 2 controllers, 2 logical drives, 2 devices; 3 need attention; not all was collected

WARNING   controller 1 (db), logical drive 8: 3 bad stripes
WARNING   controller 7, logical drive 2: no state is reported
WARNING   controller 7, device 0,1: no state is reported

NOT COLLECTED  tool: why not

Controller 1 "db": type not reported
  Status: Okay   Firmware: not reported   BIOS: not reported   Driver: not reported   Battery: Okay
  Rebuild of logical drive 1: Successful

  NAME                STATE         PFA  ERRORS
  Array A
  |- Logical drive 1  Okay (OKY)
  `- 1,0              Online (ONL)  No   7 hard
  Logical drive 8     not listed         3 bad stripes
  4,4                 not listed         6 soft

Controller 7: type not reported
  Status: not reported   Firmware: not reported   BIOS: not reported   Driver: not reported   Battery: not reported

  NAME             STATE         SIZE
  Logical drive 2  not reported  5 MB
  In no array
  `- 0,1           not reported
)");
}

TEST(TextReport, ShowsArraysWhoseDisksAreSharedOrAbsent) {
  standin::Repository repository;
  for (const char* number : {"1", "2"}) {
    Commit(repository, kDisks,
           {{"ControllerNum", "1"},
            {"LogicalDriveNum", number},
            {"LogicalDriveStatus", "Okay"},
            {"DriveList", " 0,0 0,9\n"}});
  }
  Commit(repository, kDrives,
         {{"ControllerNum", "1"}, {"ReportedChannel", " 0,0\n"}, {"State", " Online\n"}});
  const std::string text = Text({"host", 0, {}, repository});
  EXPECT_EQ(text.substr(text.find("  NAME")), R"(  NAME             STATE
  Logical drive 1  Okay
  |- 0,0           Online
  `- 0,9           missing
  Logical drive 2  Okay
  |- 0,9           missing
  `- 0,0           see above
)");
  EXPECT_NE(text.find("; 1 needs attention\n"), std::string::npos) << text;
}

TEST(TextReport, OfTheSampleMachineIsAsItWas) {
  const auto repository = PublishSampleMachine();
  const Report report{
      "harbor1", 0, {{"./kraid/absent", "", Problem::Extent::kAbsentTool}}, *repository};
  CompareExpected("sample/report_60.txt", Text(report, {60, false, false}));
  CompareExpected("sample/report_200.txt", Text(report, {200, true, true}));
}

TEST(TextReport, LetsNoTextOfAToolReachTheTerminalAsCodes) {
  standin::Repository repository;
  CommitMachine(repository, {kDrives, "State", "\x1b[2J\xc2\x9b\xff\tgr\xc3\xbcn"});
  const std::string utf8 = Text({"h", 0, {}, repository}, {Display::kUnlimited, false, true});
  EXPECT_NE(utf8.find("?[2J?\xef\xbf\xbd gr\xc3\xbcn"), std::string::npos) << utf8;
  const std::string ascii = Text({"h", 0, {}, repository});
  EXPECT_NE(ascii.find("?[2J?? gr?n"), std::string::npos) << ascii;
}

TEST(TextWriter, BreaksLinesAtTheWidth) {
  const auto flow = [](const std::string& text) {
    return Printed([&](Sink& output) {
      TextWriter(Display{20, false, true}, output).FlowWords({{"start: "}}, "  ", text);
    });
  };
  EXPECT_EQ(flow("one two three four five"), "start: one two three\n  four five\n");
  EXPECT_EQ(flow("eleven four"), "start: eleven four\n");
  EXPECT_EQ(flow("\xc3\xa4\xc3\xb6\xc3\xbc three four"),
            "start: \xc3\xa4\xc3\xb6\xc3\xbc three\n  four\n");
  EXPECT_EQ(flow("0123456789abcdefghijklmnop"), "start: 0123456789abc\n  defghijklmnop\n");
  EXPECT_EQ(flow(""), "start:\n");
}

}  // namespace
