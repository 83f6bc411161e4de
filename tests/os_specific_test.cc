#include "hmz/os_specific.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <vector>

#include "standin/host_services.h"

namespace {

using NKVXHMZ20::TOSSpecific;

TEST(OsSpecific, CapturesWhatCanBeRead) {
  std::string pattern = testing::TempDir() + "kraid-XXXXXX";
  const std::filesystem::path folder = mkdtemp(pattern.data());
  const std::string text = std::string(200'000, 'x') + std::string("\0\r\nend", 6);
  std::ofstream(folder / "file", std::ios::binary) << text;
  EXPECT_EQ(TOSSpecific::CaptureFile(folder / "file"), text);
  EXPECT_EQ(TOSSpecific::CaptureFile(folder / "absent"), "");
  EXPECT_EQ(TOSSpecific::CaptureFile(folder), "");
  EXPECT_TRUE(TOSSpecific::FileExists(folder));
  EXPECT_FALSE(TOSSpecific::FileExists(folder / "file" / "below"));
  std::filesystem::remove_all(folder);
}

/// Both services, which have to agree, and what they tell of a cut.
std::string ReadTwice(const std::string& path, std::string& cut) {
  standin::HostServices services = standin::Services();
  services.file_cut = [&cut](const standin::FileCut& file) {
    cut = std::to_string(file.read) + "/" + std::to_string(file.size);
  };
  const standin::ScopedServices in_force(services);
  std::string captured = TOSSpecific::CaptureFile(path);
  errno = 0;
  std::FILE* const file = NKVXHMZ20::OpenHostFile(path);
  if (file == nullptr) return errno == ENOENT && captured.empty() ? "nothing" : "no ENOENT";
  std::string text(captured.size() + 1, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file));
  std::fclose(file);
  EXPECT_TRUE(text == captured);
  return captured;
}

TEST(OsSpecific, ReadsTheNewestEndOfRegularFilesOnly) {
  std::string pattern = testing::TempDir() + "kraid-XXXXXX";
  const std::filesystem::path folder = mkdtemp(pattern.data());
  mkfifo((folder / "pipe").c_str(), 0600);
  mknod((folder / "socket").c_str(), S_IFSOCK | 0600, 0);  // opening it has an error of its own
  std::ofstream(folder / "file") << "text";
  std::string cut;
  for (const auto& [target, text] : {std::pair("/dev/zero", "nothing"),
                                     {"pipe", "nothing"},
                                     {"socket", "nothing"},
                                     {"absent", "nothing"},
                                     {".", "nothing"},
                                     {"file", "text"}}) {
    std::filesystem::remove(folder / "link");
    std::filesystem::create_symlink(target, folder / "link");
    EXPECT_EQ(ReadTwice(folder / "link", cut), text) << target;
  }
  const std::size_t most = standin::RegularFile::kMostRead;
  const struct {
    std::size_t size;
    std::vector<std::size_t> line_ends;
    std::size_t read;
  } cases[] = {
      {most, {5}, most},
      {most + 10, {}, most},
      {most + 10, {9, 12}, most},  // a line begins where the window does
      {most + 10, {10, 12}, most - 1},
      {most + 10, {65'545, most}, most - 65'536},
      {most + 10, {most + 9}, most},
  };
  for (const auto& c : cases) {
    std::ofstream file(folder / "file", std::ios::binary);
    for (const std::size_t end : c.line_ends) file.seekp(static_cast<std::streamoff>(end)) << '\n';
    file.close();
    std::filesystem::resize_file(folder / "file", c.size);
    cut.clear();
    EXPECT_EQ(ReadTwice(folder / "file", cut).size(), c.read);
    EXPECT_EQ(cut, c.size == most ? "" : std::to_string(c.read) + "/" + std::to_string(c.size));
  }
  std::ofstream(folder / "file") << std::string(500'003, '\n');
  EXPECT_EQ(ReadTwice(folder / "file", cut).size(), 500'000U);
  EXPECT_EQ(cut, "500000/500003");
  std::filesystem::remove_all(folder);
}

TEST(OsSpecific, TellsTheLocalTimeWithItsOffset) {
  for (const auto& [zone, offset] : {std::pair("XST+3:30", "-210"), std::pair("XST-5", "+300")}) {
    setenv("TZ", zone, 1);
    tzset();
    const std::time_t now = std::time(nullptr);
    char expected[20];
    std::strftime(expected, sizeof expected, "%Y%m%d%H%M", std::localtime(&now));
    const std::string text = TOSSpecific::GetLocalTime().ToString();
    EXPECT_EQ(text.size(), 25U);
    EXPECT_TRUE(text.ends_with(offset)) << text;
    EXPECT_GE(text.substr(0, 12), expected);
  }
  unsetenv("TZ");
  tzset();
}

}  // namespace
