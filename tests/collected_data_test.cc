#include "model/collected_data.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using C = CollectedData;

TEST(CollectedData, CutsTextIntoTerminatedLines) {
  C cursor(nullptr, {"a\r\n\n0\0b\nno end", 14});
  EXPECT_EQ(cursor.GetCurrentLine(), "a\r\n");
  EXPECT_EQ(cursor.GetNextLine(), "\n");
  EXPECT_EQ(cursor.GetNextLine(), std::string("0\0b\n", 4));
  EXPECT_THROW(cursor.GetNextLine(), std::out_of_range);
  testing::internal::CaptureStdout();
  C(nullptr, "a\n\n b\nlost").DisplayAll();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\n\n b\n");
}

TEST(CollectedData, CutsValuesAtTheFirstColon) {
  const std::pair<const char*, const char*> cases[] = {
      {"Time : 10:20:30\n", " 10:20:30\n"},
      {"No colon here\n", ""},
      {"Size :\n", "\n"},
      {"Size:5", "5"},
      {"Size:", ""},
      {"a\nb: c\nd\n", " c\n"},
  };
  for (const auto& [line, value] : cases) EXPECT_EQ(C::ParseLine(line), value) << line;
}

TEST(CollectedData, FindsTheFirstLineOfTheWholeOutput) {
  C cursor(nullptr, "0\n1\n2\nBattery Status : OK\n4\n5\nStatus : Okay\n");
  for (int i = 0; i < 5; ++i) cursor.GetNextLine();
  EXPECT_EQ(cursor.FindLine("Status"), "Battery Status : OK\n");
  EXPECT_EQ(cursor.FindLine("status"), "");
  EXPECT_EQ(cursor.FindParseLine("absent"), "");
  EXPECT_EQ(cursor.ParseLine(), " OK\n");  // it stayed
  EXPECT_EQ(cursor.FindParseLine("Status : Ok"), " Okay\n");
  EXPECT_EQ(cursor.GetCurrentLine(), "Status : Okay\n");
}

TEST(CollectedData, ThrowsOutsideTheOutputAndKeepsTheStep) {
  C cursor(nullptr, "only\n");
  try {
    cursor.GetNextLine();
    ADD_FAILURE();
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "vector");
  }
  EXPECT_THROW(cursor.GetCurrentLine(), std::out_of_range);
  EXPECT_THROW(cursor.ParseLine(), std::out_of_range);
  EXPECT_THROW(cursor.GetProperty("x"), std::out_of_range);
  for (int i = 0; i < 3; ++i) cursor.decrementLinePtr();  // 0 + 2 steps - 3
  EXPECT_THROW(cursor.GetCurrentLine(), std::out_of_range);
  EXPECT_EQ(cursor.GetNextLine(), "only\n");
}

TEST(CollectedData, StepsBackFromWhereverItStands) {
  C cursor(nullptr, "\n1\n2\nlost");
  for (const char* label : {"", "1"}) {
    EXPECT_EQ(cursor.FindLine(label), std::string(label) + "\n");
    while (cursor.GetCurrentLine() != "2\n") cursor.GetNextLine();
    for (int i = 0; i < 2; ++i) EXPECT_THROW(cursor.GetNextLine(), std::out_of_range);
  }
  cursor.decrementLinePtr();  // from the second one behind the end
  for (const char* line : {"2\n", "1\n", "\n"}) {
    cursor.decrementLinePtr();
    EXPECT_EQ(cursor.GetCurrentLine(), line);
  }
  const std::pair<const char*, const char*> cases[] = {
      {"2\n", "2\n"}, {"\n", "\n"}, {"", "\n"}, {"1\n\n", ""}, {"\n1\n2", ""}, {"lost", ""}};
  for (const auto& [label, line] : cases) EXPECT_EQ(cursor.FindLine(label), line) << label;
  EXPECT_EQ(C(nullptr, "no line").FindLine(""), "");
}

TEST(CollectedData, RemovesBlanksTabsAndNewlinesOnly) {
  const struct {
    std::string text;
    std::string without_leading;
    std::string without_trailing;
  } cases[] = {
      {"  \tx y \n", "x y \n", "  \tx y"},
      {"   ", " ", ""},  // the last character always stays in front
      {"", "", ""},
      {"\r x\r", "\r x\r", "\r x\r"},
      {std::string(" a\0b ", 5), "a", " a"},  // read up to the first NUL
  };
  for (const auto& c : cases) {
    EXPECT_EQ(C::krRemoveLeadingWhiteSpace(c.text), c.without_leading);
    EXPECT_EQ(C::krRemoveTrailingWhiteSpace(c.text), c.without_trailing);
  }
}

}  // namespace
