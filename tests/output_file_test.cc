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
    return std::system(("cd '" + folder_.string() + "'; " + command).c_str()) == 0;
  }
  /// Leaves in the folder what this makes, and "all", to which all may write.
  bool Begin(const std::string& setup) const {
    return Do("chmod 755 .; rm -rf *; mkdir -m 1777 all; " + setup);
  }

  /// What is there beforehand, the path of output and log, why they are refused and change nothing.
  struct Refusal {
    const char* setup;
    const char* path;
    const char* why;
    bool is_log_only = false;
  };
  void ExpectRefusals(std::initializer_list<Refusal> cases) const {
    const std::string all = "find all d f p v mine -printf '%p %i %s %m %u %l\\n' 2>&1 | ";
    for (const Refusal& c : cases) {
      Begin(c.setup);
      Do(all + "cat >before");
      const FilePlace place = FindPlace(folder_ / c.path);
      EXPECT_TRUE(LogFile(place).GetError().starts_with(c.why)) << LogFile(place).GetError();
      const std::string error = OutputFile(FindPlace(folder_ / c.path)).GetError();
      EXPECT_EQ(error.starts_with(c.why), !c.is_log_only) << error;
      EXPECT_TRUE(Do(all + "diff - before")) << c.setup;
    }
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

TEST_F(OutputFileTest, AndTheLogKeepAwayFromWhatOthersPlanted) {
  if (geteuid() != 0) GTEST_SKIP() << "nobody but root can plant files of others";
  ExpectRefusals({
      {"echo x >v; ln -s ../v all/p; chown -h 65534 all/p", "all/p",
       "the link p is somebody else's"},
      {"ln -s ../v all/p; chown -h 65534 all/p; ln -s all/p mine", "mine", "the link p is"},
      {"mkdir d; ln -s ../d all/p; chown -h 65534 all/p", "all/p/../new", "the link p is"},
      {"echo x >all/p; chown 65534 all/p", "all/p", "it is somebody else's, in a folder for all"},
      {"mkfifo all/p; chown 65534 all/p", "all/p", "it is somebody else's, in a folder for all"},
      {"echo x >v; ln v all/p", "all/p", "it is a hard link, in a folder for all", true},
  });
}

TEST_F(OutputFileTest, SaysBeforehandWhatCannotBe) {
  ExpectRefusals({{"mkfifo p", "p", "nobody reads from this pipe"},
                  {"true", "new/", "No such file or directory"},
                  {"touch f", "f/../new", "Not a directory"},
                  {"true", "/dev/fd/987", "No such file or directory"}});
  if (geteuid() != 0 || unshare(CLONE_NEWNS) != 0 ||
      mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
    GTEST_SKIP() << "no mounts of its own are permitted";
  }
  const std::tuple<const char*, uid_t, const char*, const char*, const char*> cases[] = {
      {"touch f g; mount --bind g f", 0, "f", "it is mounted there from", "umount f"},
      {"echo x >all/f; chmod 666 all/f", 65534, "all/f", "its folder or its owner keeps", "true"},
      {"mkdir a; chattr +a a", 0, "a/new", "its folder is closed", "chattr -a a"},
  };
  for (const auto& [setup, user, path, why, end] : cases) {
    if (!Begin(setup)) GTEST_SKIP() << "not permitted: " << setup;
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_TRUE(OutputFile(FindPlace(folder_ / path)).GetError().starts_with(why)) << setup;
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_TRUE(Do(end));
  }
}

TEST_F(OutputFileTest, KeepsOwnerAndPermissionsAsFarAsTheyMayBe) {
  if (geteuid() != 0) GTEST_SKIP() << "nobody but root has files of several users";
  const struct {
    const char* setup;
    uid_t user;
    const char* path;
    const char* file;  // which is to be written,
    const char* look;  // and what it looks like then
  } cases[] = {
      {"echo x >f; chown 65534:65534 f; chmod 6751 f", 0, "f", "f", "65534:65534 640"},
      {"echo x >f; chmod 4755 f", 0, "f", "f", "0:0 644"},
      {"chmod 777 .; echo x >f; chmod 600 f", 65534, "f", "f", "65534:65534 644"},
      {"chmod 777 .; echo x >f; chown 65534 f; chmod 664 f", 65534, "f", "f", "65534:65534 604"},
      {"ln -s ../v all/p", 0, "all/p", "v", "0:0 644"},
      {"chmod 777 .; ln -s all/../v mine; chown -h 65534 mine", 0, "mine", "v", "0:0 644"},
      {"mkdir -p d/e; ln -s d/e a", 0, "a/../f", "d/f", "0:0 644"},
  };
  umask(022);
  for (const auto& c : cases) {
    ASSERT_TRUE(Begin(c.setup) && setegid(c.user) == 0 && seteuid(c.user) == 0);
    OutputFile output(FindPlace(folder_ / c.path));
    output.Write("text");
    output.Finish();
    ASSERT_TRUE(seteuid(0) == 0 && setegid(0) == 0);
    EXPECT_EQ(output.GetError(), "") << c.setup;
    EXPECT_EQ(ReadFile(folder_ / c.file), "text") << c.setup;
    Do("stat -c '%u:%g %a' " + std::string(c.file) + " >look");
    EXPECT_EQ(ReadFile(folder_ / "look"), c.look + std::string("\n")) << c.setup;
  }
}

TEST_F(OutputFileTest, GoesOnWhereADescriptorStands) {
  Begin("echo before >file; mkfifo pipe; ln -s /dev/fd/77 link");
  const Descriptor file(open((folder_ / "file").c_str(), O_RDWR | O_APPEND | O_CLOEXEC));
  const Descriptor reader(open((folder_ / "pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
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
  Descriptor writer;
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
  Begin("mkdir d; touch f d/g; ln -s d/../f link; ln -s d ahead; ln f d/hard");
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
