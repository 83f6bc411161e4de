#include "hmz/os_specific.h"

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>

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
