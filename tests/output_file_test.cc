#include "inventory/command/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>

#include "inventory/command/log_file.h"
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

  bool Do(const std::string& command) const {
    return std::system(("cd '" + folder_.string() + "' && " + command).c_str()) == 0;
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

/// Whether this is how it ended.
testing::AssertionResult Ends(const std::string& error, const std::string& expected) {
  const bool is_so = expected == "ok" ? error.empty() : error.starts_with(expected);
  return (is_so ? testing::AssertionSuccess() : testing::AssertionFailure()) << error;
}

TEST_F(OutputFileTest, AndTheLogGoWhereNobodyElseLeadsThem) {
  const bool is_root = geteuid() == 0;
  const bool has_mounts = is_root && unshare(CLONE_NEWNS) == 0 &&
                          mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  const std::string all =
      "find . -mindepth 1 ! -name before -printf '%p %i %s %m %u %l\\n' | sort ";
  const auto become = [is_root](unsigned id) {
    return !is_root || (seteuid(0) == 0 && setegid(id) == 0 && seteuid(id) == 0);
  };
  std::string skipped;
  umask(022);
  for (const auto& row : Rows("output_places.txt")) {
    ASSERT_EQ(row.size(), 6U) << row[0];
    const std::string &user = row[0], &setup = row[1], &path = row[2];
    const std::string &output_ends = row[3], &log_ends = row[4];
    std::string look = row[5];
    std::string name = user;
    name.append("|").append(setup);
    SCOPED_TRACE(name);
    const bool is_mount = setup.find("mount") != std::string::npos;
    if ((user != "any" && !is_root) || (is_mount && !has_mounts) ||
        !Do("chmod 755 . && rm -rf * && mkdir -m 1777 all && { " + setup + "; }")) {
      skipped.append("\n").append(name);
      continue;
    }
    Do(all + ">before");
    const unsigned id = user == "any" ? 0 : static_cast<unsigned>(std::stoul(user));
    ASSERT_TRUE(become(id));
    EXPECT_TRUE(log_ends == "-" || Ends(LogFile(FindPlace(folder_ / path)).GetError(), log_ends));
    OutputFile output(FindPlace(folder_ / path));
    EXPECT_TRUE(Ends(output.GetError(), output_ends));
    if (log_ends == "-" && output_ends == "ok") {
      output.Write("text");
      output.Finish();
      look.insert(0, "set -- ");
      look += "; [ \"$(stat -c '%u:%g %a ' $1; cat $1)\" = \"$2 $3 \ntext\" ]";
    } else if (log_ends != "ok" && output_ends != "ok") {
      EXPECT_TRUE(Do(all + "| diff - before"));  // nothing has changed
    }
    ASSERT_TRUE(become(0));
    EXPECT_TRUE(Do(look));
  }
  if (!skipped.empty()) GTEST_SKIP() << "not permitted here:" << skipped;
}

TEST_F(OutputFileTest, GoesOnWhereADescriptorStands) {
  Do("echo before >file; mkfifo pipe; ln -s /dev/fd/77 link");
  const standin::Descriptor file(open((folder_ / "file").c_str(), O_RDWR | O_APPEND | O_CLOEXEC));
  const standin::Descriptor reader(
      open((folder_ / "pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  for (const char* path : {"/dev/fd/77", "/proc/self/fd/../fd/77", "link", "pipe"}) {
    dup2(file.Get(), 77);  // as a shell has it, not to be closed by an exec
    OutputFile output(FindPlace(folder_ / path));
    LogFile log(FindPlace(folder_ / path));
    EXPECT_FALSE(AreInConflict(FindPlace("/dev/fd/77"), FindPlace("/dev/fd/77")));
    close(77);
    output.Write("o");
    output.Finish();
    log.Write(3, "l");
    EXPECT_EQ(output.GetError() + log.GetError(), "") << path;
  }
  EXPECT_EQ(ReadFile(folder_ / "file"), "before\no3\tl\no3\tl\no3\tl\n");
  char text[9] = "";
  EXPECT_EQ(read(reader.Get(), text, sizeof text - 1), 5);
  EXPECT_STREQ(text, "o3\tl\n");
  standin::Descriptor writer;
  EXPECT_EQ(OpenInPlace(FindPlace(folder_ / "pipe"), writer), "");
  EXPECT_EQ(fcntl(writer.Get(), F_GETFL) & O_NONBLOCK, 0);  // it waits for a slow reader
  dup2(reader.Get(), 77);
  for (const int number : {file.Get(), 77}) {  // its own, and one only to be read
    OutputFile output(FindPlace("/dev/fd/" + std::to_string(number)));
    EXPECT_EQ(output.GetError(), "Bad file descriptor") << number;
  }
  close(77);
}

TEST_F(OutputFileTest, AndTheLogAreNotOneFileByAnyPath) {
  Do("mkdir d; touch f d/g; ln -s d/../f link; ln -s d ahead; ln f d/hard");
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"f", "d/../f", true},   {"f", "link", true},
      {"f", "d/hard", true},   {"d/new", "ahead/new", true},
      {"new", "d/new", false}, {"f", "new", false},
      {"f", "d/g", false},     {"/dev/null", "/dev/null", false},
  };
  for (const auto& [one, other, are] : cases) {
    EXPECT_EQ(AreInConflict(FindPlace(folder_ / one), FindPlace(folder_ / other)), are) << other;
  }
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
