#include "inventory/base/readable.h"

#include <gtest/gtest.h>

#include "inventory/base/times.h"

namespace {

#define HIDDEN_C1 "<U+0080><U+009F>\u00a0"
#define HIDDEN "<U+202E><U+2066><U+061C><U+200F><U+2028>"
#define REPLACED "\xef\xbf\xbd"  // U+FFFD

TEST(Readable, LetsNoControlReachATerminal) {
  const struct {
    std::string text;
    std::string lines;
    std::string one_line;
    std::string blanks;
    std::string readable;
  } cases[] = {
      {"a\tb\nc\r", "a\tb\nc?", "a\tb?c?", "a b c ", "a b c"},
      {" \v x \f\n  y\n", " ? x ?\n  y\n", " ? x ??  y?", "   x     y ", "x y"},
      {"\x1b[2J\x7f\b", "?[2J??", "?[2J??", "?[2J??", "?[2J??"},
      {std::string("\0a", 2), "?a", "?a", "?a", "?a"},
      {"\x1f \x0e", "? ?", "? ?", "? ?", "? ?"},
      {"\u0080\u009f\u00a0", HIDDEN_C1, HIDDEN_C1, HIDDEN_C1, HIDDEN_C1},
      {"\u202e\u2066\u061c\u200f\u2028\n", HIDDEN "\n", HIDDEN "?", HIDDEN " ", HIDDEN},
      {"\u2027\u202f\u200d", "\u2027\u202f\u200d", "\u2027\u202f\u200d", "\u2027\u202f\u200d",
       "\u2027\u202f\u200d"},
      // Its last byte is that of a control.
      {"\xe1\x82\x80", "\xe1\x82\x80", "\xe1\x82\x80", "\xe1\x82\x80", "\xe1\x82\x80"},
      // No UTF-8: a raw control of the second set, half a character, at the end, too.
      {"\x9b"
       "1\xc3(\xc2",
       REPLACED "1" REPLACED "(" REPLACED, REPLACED "1" REPLACED "(" REPLACED,
       REPLACED "1" REPLACED "(" REPLACED, REPLACED "1" REPLACED "(" REPLACED},
      {"", "", "", "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Sanitized(c.text, Layout::kLines), c.lines);
    EXPECT_EQ(Sanitized(c.text, Layout::kOneLine), c.one_line);
    EXPECT_EQ(Sanitized(c.text, Layout::kBlanks), c.blanks);
    EXPECT_EQ(Readable(c.text), c.readable);
  }
}

TEST(Readable, TakesALargeTextAsOne) {
  const std::string characters[] = {"\xf0\x9f\x98\x80", "\xe2\x94\x9c", "\xc3", "\xf0\x9f\x98",
                                    "\x80"};
  for (std::size_t before = 65530; before <= 65536; ++before) {
    for (const std::string& character : characters) {
      std::string odd;
      for (int i = 0; i < 4; ++i) odd += character;
      const std::string blank(before, ' ');
      const std::string text = odd + "x";
      EXPECT_TRUE(ValidUtf8(blank + text) == blank + ValidUtf8(text)) << before << odd;
    }
  }
}

TEST(Readable, CountsColumnsAndThings) {
  EXPECT_EQ(ReadableLine("  a   b\t\n"), "  a   b");
  EXPECT_EQ(WidthOf("a\xc3\xbc\xe2\x94\x9c"), 3U);
  EXPECT_EQ(Counted(0, "device") + Counted(1, "device") + Counted(2, "device"),
            "0 devices1 device2 devices");
  EXPECT_EQ(Lower("AZ@[az\xc3\x9c"), "az@[az\xc3\x9c");
}

TEST(Rfc3339, HoldsWhatACalendarHas) {
  using NKVXHMZ20::TCIMDateTime;
  const std::pair<TCIMDateTime, const char*> cases[] = {
      {{2026, 3, 8, 4, 0, 5, 999999, 60}, "2026-03-08T04:00:05+01:00"},
      {{2024, 2, 29, 23, 59, 59, 0, -570}, "2024-02-29T23:59:59-09:30"},
      {{2026, 2, 29, 0, 0, 0, 0, 0}, ""},
      {{2026, 1, 1, 24, 0, 0, 0, 0}, ""},
      {{}, ""},
  };
  for (const auto& [time, text] : cases) EXPECT_EQ(Rfc3339(time), text) << time.ToString();
  EXPECT_EQ(SecondsText(std::chrono::milliseconds(12034)), "12.034");
}

}  // namespace
