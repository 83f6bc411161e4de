// What people and monitoring systems are told of a machine.

#include <gtest/gtest.h>

#include <cstdlib>

#include "inventory/print/check_line.h"
#include "inventory/print/flow.h"
#include "inventory/print/text_report.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

using NKVXHMZ20::TCIMDateTime;
using NKVXHMZ20::TCIMValue;

constexpr char kControllers[] = "KVXSG_krSCSIProtocolController";
constexpr char kDisks[] = "KVXSG_krLogicalDisk";
constexpr char kDrives[] = "KVXSG_krDiskDrive";
constexpr char kGroups[] = "KVXSG_krDiskGroup";
constexpr char kCounters[] = "KVXSG_krSCSIDeviceData";
constexpr char kBadStripes[] = "KVXSG_BadStripeData";
constexpr char kDddLog[] = "KVXSG_LogRecord_krDDD";
constexpr char kManagerLog[] = "KVXSG_LogRecord_RAIDMgrEvent";

const Problem kAbsent = {"./kraid/hrconf", "not there", Problem::Extent::kAbsentTool};
const Problem kFailed = {"./kraid/hrconf", "was ended by signal 11"};
const Problem kUseless = {"./kraid/hrconf", "all failed", Problem::Extent::kTool};
const Problem kThrew = {"./kraid/kelvcmd", "too short", Problem::Extent::kCollection};

/// A controller with one device in this state; null: none.
void CommitDevice(standin::Repository& repository, const char* state) {
  if (state == nullptr) return;
  Commit(repository, kControllers, {{"ControllerNum", "1"}});
  Commit(repository, kDrives,
         {{"ControllerNum", "1"}, {"Channel", "1"}, {"ScsiId", "0"}, {"State", state}});
}

/// All that the layout has a rule for and the sample machine does not show.
void CommitOddMachine(standin::Repository& repository) {
  const std::string wide(65, 'w');
  const std::pair<const char*, Properties> instances[] = {
      {kControllers,
       {{"ControllerNum", "1"},
        {"ControllerName", "db\n"},
        {"DefunctDiskDriveCnt", "5\n"},
        {"LogicalDriveStatusCnt", "4/1/2\n"},
        {"ControllerBatteryStatus", "Okay\n"},
        {"ControllerBatteryCapacity", "90 %"},
        {"LastCmdStatus", " Successful\n"},
        {"NumberOfRemainingStripes", " 0\n"}}},
      {kGroups, {{"ControllerNum", "1"}, {"Array", "A"}, {"StripeOrder", "1,0"}}},
      {kDisks,
       {{"ControllerNum", "1"},
        {"LogicalDriveNum", "1"},
        {"PartOfArray", "A"},
        {"AccessBlocked", " Yes\n"}}},
      {kBadStripes, {{"ControllerNum", "1"}, {"LogicalDrive", "1"}, {"NumBadStripes", "17"}}},
      {kBadStripes, {{"ControllerNum", "1"}, {"LogicalDrive", "8"}, {"NumBadStripes", "3"}}},
      {kDrives,
       {{"ControllerNum", "1"},
        {"ReportedChannel", "1,0"},
        {"State", "\x1b[2J\xc2\x9b\xff\tgr\xc3\xbcn"},
        {"PFA", " Yes\n"},
        {"DeviceCode", wide}}},
      {kCounters, {{"ControllerNum", "1"}, {"Channel", "4"}, {"ScsiId", "4"}, {"Misc", "6"}}},
      // Two drives on the same disks, a drive's array of which there is nothing, and the rest.
      {kDisks, {{"ControllerNum", "1"}, {"LogicalDriveNum", wide}, {"DriveList", " 0,0 0,9\n"}}},
      {kDisks, {{"ControllerNum", "1"}, {"LogicalDriveNum", "3"}, {"DriveList", " 0,0\n"}}},
      {kGroups, {{"ControllerNum", "1"}, {"CollectionID", "LogicalDrv7"}, {"StripeOrder", "0,8"}}},
      {kDrives, {{"ControllerNum", "1"}, {"ReportedChannel", "0,0"}, {"State", "Online"}}},
      {kDrives, {{"ControllerNum", "7"}, {"ReportedChannel", "0,1"}, {"State", "Rebuilding"}}},
      {kDddLog, {{"Controller", "1"}, {"ID", "2"}, {"Reason", "0B"}, {"Descrip", "Bus hung"}}},
      {"KVXSG_LogRecord_HardEvent",
       {{"ControllerNum", "1"},
        {"HexHardEvent", ArrayOf(TCIMValue::kUint32, {TCIMValue(std::uint32_t{0xC0040204})})}}},
      {kManagerLog,
       {{"MessageTimestamp", TCIMValue(TCIMDateTime(2005, 3, 14, 1, 2, 3, 0, 345))},
        {"Severity", "ERR"},
        {"MachineName", "h"},
        {"Message", "one\n"}}},
      {kManagerLog, {{"Message", "two"}}},
  };
  for (const auto& [class_name, properties] : instances) Commit(repository, class_name, properties);
}

std::string Text(const Report& report, const Display& display = {}) {
  return Printed([&](Sink& output) { PrintText(report, "/r", display, output); });
}

std::string CheckLine(const Report& report, CheckStatus* status = nullptr) {
  return Printed([&](Sink& output) {
    const CheckStatus result = PrintCheck(report, output);
    if (status != nullptr) *status = result;
  });
}

TEST(TextReport, ShowsTheSampleMachineInAnyWidth) {
  const auto repository = PublishSampleMachine();
  const Report report{
      "harbor1", 0, {{"./kraid/absent", "", Problem::Extent::kAbsentTool}}, *repository};
  CompareExpected("sample/report_60.txt", Text(report, {60, false, false}));
  CompareExpected("sample/report_200.txt", Text(report, {200, true, true}));
  CompareExpected("sample/check.txt", CheckLine(report));
}

TEST(TextReport, HidesNothingOfAnOddMachine) {
  standin::Repository repository;
  CommitOddMachine(repository);
  const Report report{"h\n", 0, {kFailed, kThrew}, repository};
  CompareExpected("odd_values/report.txt", Text(report));
  CompareExpected("odd_values/report_40.txt", Text(report, {40, true, true}));
  CompareExpected("odd_values/check.txt", CheckLine(report));
}

TEST(TextReport, SaysFirstHowItIs) {
  const struct {
    const char* state;
    std::vector<Problem> problems;
    const char* start;
  } cases[] = {
      {"Online", {kAbsent}, "1 device;\x1b[0m \x1b[32mnothing needs attention\x1b[0m\n\nNot inst"},
      {"Online", {kFailed}, "\x1b[33mnothing needs attention; not all was collected\x1b[0m\n\n"},
      {"Strange", {}, "\x1b[33m1 needs attention\x1b[0m\n\n\x1b[33mWARNING   \x1b[0mcontroller 1,"},
      {"Defunct", {kFailed}, "\x1b[1;31m1 needs attention; not all was collected\x1b[0m\n\n\x1b["},
      {nullptr,
       {kAbsent, kAbsent},
       "\x1b[33mno controller was found\x1b[0m\n\nNot installed in /r: ./kraid/hrconf, "
       "./kraid/hrconf\n\nThe tools kelvcmd, hrconf and arcconf are looked for in /r/kraid; "},
  };
  for (const auto& c : cases) {
    standin::Repository repository;
    CommitDevice(repository, c.state);
    const std::string text =
        Text({"h", 0, c.problems, repository}, {Display::kUnlimited, true, false});
    EXPECT_NE(text.find(c.start), std::string::npos) << text;
  }
}

TEST(Check, JudgesTheMachineAndTheCollection) {
  const struct {
    const char* state;
    std::vector<Problem> problems;
    CheckStatus status;
    const char* start;
  } cases[] = {
      {nullptr, {kAbsent}, kCheckUnknown, "UNKNOWN - no controller was found | controllers=0;;;0"},
      {nullptr,
       {kFailed},
       kCheckUnknown,
       "UNKNOWN - no controller was found; 0 critical, 1 warning: ./kraid/hrconf: was ended by"},
      {nullptr, {kThrew}, kCheckUnknown, "UNKNOWN - ./kraid/kelvcmd: too short; no controller was"},
      {"Online",
       {kAbsent},
       kCheckOk,
       "OK - 1 controller, 0 logical drives, 1 device, all fine | controllers=1;;;0 logical_d"},
      {"Online", {kFailed}, kCheckWarning, "WARNING - 0 critical, 1 warning: ./kraid/hrconf: was"},
      {"Online", {kUseless}, kCheckUnknown, "UNKNOWN - 0 critical, 1 warning: ./kraid/hrconf: all"},
      {"Online", {kThrew}, kCheckUnknown, "UNKNOWN - ./kraid/kelvcmd: too short |"},
      {"a|b",
       {kFailed},
       kCheckWarning,
       "WARNING - 0 critical, 2 warnings: controller 1, device 1,0: a/b; ./kraid/hrconf: was"},
      {"Defunct",
       {kUseless},
       kCheckCritical,
       "CRITICAL - 1 critical, 1 warning: controller 1, device 1,0: Defunct; ./kraid/hrconf: all"},
      {"Defunct", {kThrew}, kCheckUnknown, "UNKNOWN - ./kraid/kelvcmd: too short; 1 critical, 0"},
  };
  for (const auto& c : cases) {
    standin::Repository repository;
    CommitDevice(repository, c.state);
    CheckStatus status = kCheckOk;
    const std::string line = CheckLine({"h", 0, c.problems, repository}, &status);
    EXPECT_EQ(status, c.status) << line;
    EXPECT_TRUE(line.starts_with(std::string("KRAID ") + c.start)) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_EQ(std::count(line.begin(), line.end(), '|'), 1) << line;
  }
  EXPECT_EQ(UnknownCheckLine("a|b\nc"), "KRAID UNKNOWN - a/b c\n");
}

TEST(Check, NamesAsMuchAsALineCanHold) {
  standin::Repository repository;
  CommitDevice(repository, "Online");
  const std::string bytes(300, '\x80');  // each is U+FFFD, of three bytes
  std::vector<Problem> problems(9, {"", std::string(300, '-')});
  const std::string cut = ": " + std::string(198, '-') + "...";
  std::string line = CheckLine({"h", 0, problems, repository});
  EXPECT_NE(line.find(" 9 warnings: " + cut + "; " + cut), std::string::npos) << line;
  EXPECT_NE(line.find(cut + "; and 1 more |"), std::string::npos) << line;
  EXPECT_LT(line.size(), 2000U);
  problems.resize(8, {"", ""});
  problems[7] = {bytes, "", Problem::Extent::kCollection};
  problems.push_back({"", "8"});
  line = CheckLine({"h", 0, problems, repository});
  EXPECT_NE(line.find("\xbd...; 0 critical, 8 warnings: :"), std::string::npos) << line;
  EXPECT_NE(line.find("; : 8 |"), std::string::npos) << line;
}

TEST(TextWriter, BreaksLinesAtTheWidth) {
  const std::pair<const char*, const char*> cases[] = {
      {"one two three four five", "start: one two three\n  four five\n"},
      {"eleven four", "start: eleven four\n"},
      {"\xc3\xa4\xc3\xb6\xc3\xbc three four", "start: \xc3\xa4\xc3\xb6\xc3\xbc three\n  four\n"},
      {"0123456789abcdefghijklmnop", "start: 0123456789abc\n  defghijklmnop\n"},
      {"", "start:\n"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(Printed([&](Sink& output) {
                TextWriter({20, false, true}, output).FlowWords({{"start: "}}, "  ", text);
              }),
              expected);
  }
}

TEST(Display, TakesItsWidthAndCharactersFromTheEnvironment) {
  const std::pair<const char*, std::size_t> widths[] = {
      {"80", 80},
      {"39", 40},
      {"41", 41},
      {"0", Display::kUnlimited},
      {"", Display::kUnlimited},
      {"80x", Display::kUnlimited},
      {"-80", Display::kUnlimited},
      {"99999999999999999999999", Display::kUnlimited},
  };
  for (const auto& [columns, width] : widths) {
    setenv("COLUMNS", columns, 1);
    EXPECT_EQ(FindDisplay(Color::kNever, true).width, width) << columns;
  }
  unsetenv("COLUMNS");
  for (const char* locale : {"C.UTF-8", "C"}) {
    setenv("LC_ALL", locale, 1);
    const Display display = FindDisplay(Color::kAlways, true);
    EXPECT_EQ(display.utf8, locale != std::string("C"));
    EXPECT_TRUE(display.color);
    EXPECT_FALSE(FindDisplay(Color::kAuto, true).color);
  }
}

}  // namespace
