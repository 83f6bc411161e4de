// The parts of the command that need no whole run of it.

#include <gtest/gtest.h>

#include "hmz/exception.h"
#include "inventory/command/class_list.h"
#include "inventory/command/log_file.h"
#include "inventory/command/tool_runs.h"
#include "tests/machine_files.h"

namespace {

TEST(LogFile, HasOneLineForEachMessage) {
  const std::string path = testing::TempDir() + "kraid-log";
  LogFile log(path);
  log.Write(3, "first\\line\nsecond\ttab");
  log.Write(-1, "");
  EXPECT_EQ(ReadFile(path), "3\tfirst\\\\line\\nsecond\ttab\n-1\t\n");
  EXPECT_EQ(log.GetError(), "");
}

TEST(ToolRuns, CountsTheFailuresOfEachToolByReason) {
  standin::ProcessLimits limits;
  limits.time = std::chrono::milliseconds(200);
  limits.grace = std::chrono::milliseconds(200);
  ToolRuns tools(limits, false);
  EXPECT_EQ(tools.Run("/bin/sh", {"-c", "echo fine; exit 7"}), "fine\n");
  for (const char* script : {"kill -9 $$", "sleep 5", "kill -9 $$"}) {
    EXPECT_THROW(tools.Run("/bin/sh", {"-c", script}), NKVXHMZ20::THMZException);
  }
  EXPECT_THROW(tools.Run("./absent", {"x"}), NKVXHMZ20::THMZException);
  EXPECT_EQ(tools.GetLastRun(), "./absent x");
  const std::vector<Problem> problems = tools.GetProblems();
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_EQ(problems[0].what, "/bin/sh");
  EXPECT_TRUE(problems[0].why.starts_with("3 of 4 runs failed: was ended by signal 9"))
      << problems[0].why;
  EXPECT_NE(problems[0].why.find(" (2); was stopped after"), std::string::npos) << problems[0].why;
  EXPECT_EQ(problems[1].why, "1 of 1 runs failed: cannot be started: No such file or directory");
}

TEST(ClassList, FindsTheNearestName) {
  const std::pair<const char*, const char*> cases[] = {
      {"KVXSG_krDiskDrive", "KVXSG_krDiskDrive"},  {"krdiskdrive", "KVXSG_krDiskDrive"},
      {"KVXSG_krDiskDrives", "KVXSG_krDiskDrive"}, {"DiskGroup", "KVXSG_DiskGroup"},
      {"softevent", "KVXSG_LogRecord_SoftEvent"},  {"KVXSG_RawData", "KVXSG_krRawData"},
  };
  for (const auto& [name, nearest] : cases) EXPECT_EQ(NearestClass(name), nearest);
}

}  // namespace
