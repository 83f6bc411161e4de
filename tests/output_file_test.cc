#include "inventory/command/output_file.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <set>

#include "tests/machine_files.h"

namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class OutputFileTest : public testing::Test {
 protected:
  OutputFileTest() {
    std::string pattern = testing::TempDir() + "kraid-XXXXXX";
    folder_ = mkdtemp(pattern.data());
  }
  ~OutputFileTest() override { fs::remove_all(folder_); }

  Names All() const {
    Names names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  fs::path folder_;
};

TEST_F(OutputFileTest, GivesAFileItsContentWholeOrNotAtAll) {
  std::ofstream(folder_ / "old") << "before";
  fs::permissions(folder_ / "old", fs::perms(0640));
  fs::create_symlink("old", folder_ / "link");
  fs::create_symlink("new", folder_ / "ahead");
  umask(027);
  for (const char* name : {"link", "ahead"}) {
    const Names names = All();
    OutputFile(FindPlace(folder_ / name)).Write("not finished");
    EXPECT_EQ(All(), names);
    OutputFile output(FindPlace(folder_ / name));
    output.Write("half, ");
    EXPECT_EQ(ReadFile(folder_ / name), *name == 'l' ? "before" : "");
    output.Write("whole");
    output.Finish();
    EXPECT_EQ(output.GetError(), "");
    EXPECT_EQ(ReadFile(folder_ / name), "half, whole");
    EXPECT_EQ(fs::status(folder_ / name).permissions(), fs::perms(0640));
  }
  EXPECT_TRUE(fs::is_symlink(folder_ / "link") && fs::is_symlink(folder_ / "ahead"));
  EXPECT_EQ(All(), (Names{"ahead", "link", "new", "old"}));
}

TEST_F(OutputFileTest, TellsWhatFailed) {
  fs::create_symlink("loop", folder_ / "loop");
  const std::pair<fs::path, const char*> cases[] = {
      {folder_ / "absent/file", "No such file or directory"},
      {folder_ / "loop", "Too many levels of symbolic links"},
      {folder_ / std::string(5000, 'x'), "File name too long"},
      {folder_, "Is a directory"},
      {"/dev/full", "No space left on device"},
  };
  for (const auto& [path, error] : cases) {
    OutputFile output(FindPlace(path));
    output.Write("text");
    output.Finish();
    EXPECT_EQ(output.GetError(), error) << path;
  }
  EXPECT_EQ(All(), Names{"loop"});
}

TEST_F(OutputFileTest, OfSeveralGoWithTheSignalThatEndsTheProgram) {
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    for (const bool is_ignored : {false, true}) {
      const pid_t child = fork();
      if (child == 0) {
        prctl(PR_SET_DUMPABLE, 0);  // no core file
        signal(number, is_ignored ? SIG_IGN : SIG_DFL);
        CleanUpOnSignals();
        {
          OutputFile first(FindPlace(folder_ / "1"));
          OutputFile second(FindPlace(folder_ / "2"));
          OutputFile third(FindPlace(folder_ / "3"));
          second.Write("of the second");
          first.Write("of the first");
          second.Finish();
          raise(number);
          first.Finish();
        }
        _exit(0);
      }
      int status = 0;
      waitpid(child, &status, 0);
      EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, is_ignored ? 0 : number);
      EXPECT_EQ(All(), is_ignored ? (Names{"1", "2"}) : Names{"2"});
      EXPECT_EQ(ReadFile(folder_ / "2"), "of the second");
      EXPECT_EQ(ReadFile(folder_ / "1"), is_ignored ? "of the first" : "");
      fs::remove(folder_ / "1");
      fs::remove(folder_ / "2");
    }
  }
}

}  // namespace
