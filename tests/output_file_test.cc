#include "inventory/command/output_file.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <csignal>
#include <functional>
#include <set>

#include "tests/machine_files.h"

namespace {

namespace fs = std::filesystem;

class OutputFileTest : public testing::Test {
 protected:
  OutputFileTest() {
    std::string pattern = testing::TempDir() + "kraid-XXXXXX";
    folder_ = mkdtemp(pattern.data());
  }
  ~OutputFileTest() override { fs::remove_all(folder_); }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  /// How a child process ended that ran this: the signal, or 0.
  static int EndOf(const std::function<void()>& run) {
    const pid_t child = fork();
    if (child == 0) {
      run();
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
  }

  fs::path folder_;
};

TEST_F(OutputFileTest, GivesAFileItsContentWholeOrNotAtAll) {
  std::ofstream(folder_ / "old") << "before";
  fs::permissions(folder_ / "old", fs::perms(0640));
  fs::create_symlink("old", folder_ / "link");
  fs::create_symlink("new", folder_ / "ahead");
  for (const char* name : {"link", "ahead"}) {
    const std::set<std::string> names = Names();
    OutputFile(folder_ / name).Write("not finished");
    EXPECT_EQ(Names(), names);
    OutputFile output(folder_ / name);
    output.Write("half, ");
    EXPECT_EQ(ReadFile(folder_ / name), *name == 'l' ? "before" : "");
    output.Write("whole");
    output.Finish();
    EXPECT_EQ(output.GetError(), "");
    EXPECT_EQ(ReadFile(folder_ / name), "half, whole");
    EXPECT_TRUE(fs::is_symlink(folder_ / name));
  }
  EXPECT_EQ(fs::status(folder_ / "old").permissions(), fs::perms(0640));
  const mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(fs::status(folder_ / "new").permissions(), fs::perms(0666 & ~mask));
  EXPECT_EQ(Names(), (std::set<std::string>{"ahead", "link", "new", "old"}));
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
    OutputFile output(path);
    output.Write("text");
    output.Finish();
    EXPECT_EQ(output.GetError(), error) << path;
    EXPECT_FALSE(output.IsBrokenPipe());
  }
  OutputFile overtaken(folder_ / "file");
  fs::create_directory(folder_ / "file");
  overtaken.Finish();
  EXPECT_EQ(overtaken.GetError(), "Is a directory");
}

TEST_F(OutputFileTest, MayBeOneOfSeveral) {
  const auto write_three = [this](bool finish_last) {
    OutputFile first(folder_ / "first");
    OutputFile second(folder_ / "second");
    first.Write("of the first");
    {
      OutputFile third(folder_ / "third");
      first.Finish();
      EXPECT_EQ(Names().count("first"), 1U);
      EXPECT_EQ(Names().size(), 3U);
      third.Write("of the third");
    }
    second.Write("of the second");
    if (finish_last) second.Finish();
  };
  write_three(false);
  EXPECT_EQ(Names(), std::set<std::string>{"first"});
  write_three(true);
  EXPECT_EQ(Names(), (std::set<std::string>{"first", "second"}));
  EXPECT_EQ(ReadFile(folder_ / "first"), "of the first");
  EXPECT_EQ(ReadFile(folder_ / "second"), "of the second");
}

TEST_F(OutputFileTest, GoesWithTheSignalThatEndsTheProgram) {
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    for (const bool is_ignored : {false, true}) {
      const int end = EndOf([&] {
        prctl(PR_SET_DUMPABLE, 0);  // no core file
        signal(number, is_ignored ? SIG_IGN : SIG_DFL);
        CleanUpOnSignals();
        OutputFile first(folder_ / "first");
        OutputFile second(folder_ / "second");
        OutputFile finished(folder_ / "finished");
        finished.Finish();
        raise(number);
        if (Names().size() != 3) _exit(1);
      });
      EXPECT_EQ(end, is_ignored ? 0 : number);
      EXPECT_EQ(Names(), std::set<std::string>{"finished"});
    }
  }
}

}  // namespace
