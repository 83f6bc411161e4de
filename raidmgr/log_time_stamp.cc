#include "raidmgr/log_time_stamp.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// The character at that place, NUL behind the end.
char At(std::string_view text, std::size_t index) {
  return index < text.size() ? text[index] : '\0';
}

/// From `index` up to `end` or the end of the text; `index` is then there.
std::string_view CopyUpTo(char end, std::string_view text, std::size_t& index) {
  const std::size_t begin = std::min(index, text.size());
  index = std::min(text.find(end, begin), text.size());
  return text.substr(begin, index - begin);
}

/// The number at the start in base 10, 0 when there is none.
long Number(std::string_view text) { return std::strtol(std::string(text).c_str(), nullptr, 10); }

unsigned short Short(std::string_view text) { return static_cast<unsigned short>(Number(text)); }

}  // namespace

void krTimeStrToInt(std::string_view text, std::size_t& index, unsigned short& hour,
                    unsigned short& minute, unsigned short& second) {
  ++index;
  hour = Short(CopyUpTo(':', text, index));
  ++index;
  minute = Short(CopyUpTo(':', text, index));
  ++index;
  second = Short(CopyUpTo(' ', text, index));
}

unsigned short MonthStrToInt(std::string_view name) {
  // By single letters: a three-letter "Jan", "Jun" or "Jul" has no fourth one and is not known.
  constexpr std::size_t kNone = 0;
  static constexpr struct {
    char first;
    std::size_t position;  // kNone: the first letter is enough
    char letter;
    unsigned short month;
  } kMonths[] = {
      {'A', 1, 'p', 4}, {'A', 1, 'u', 8},       {'D', kNone, '\0', 12}, {'F', kNone, '\0', 2},
      {'J', 3, 'u', 1}, {'J', 3, 'y', 7},       {'J', 3, 'e', 6},       {'M', 2, 'r', 3},
      {'M', 2, 'y', 5}, {'N', kNone, '\0', 11}, {'O', kNone, '\0', 10}, {'S', kNone, '\0', 9},
  };
  for (const auto& row : kMonths) {
    if (At(name, 0) == row.first &&
        (row.position == kNone || At(name, row.position) == row.letter)) {
      return row.month;
    }
  }
  return 0;
}

int UtcStrToInt(std::string_view zone) {
  // The first match counts, so the later "ADT", "BST" and "CDT" are never reached. They, and values
  // that differ from common usage, are left as they are.
  static constexpr struct {
    std::string_view zone;
    int hours;
  } kZones[] = {
      {"ADT", -3},  {"EDT", -4},  {"AST", -4},  {"EST", -5},  {"CDT", -5},  {"CST", -6},
      {"MDT", -6},  {"MST", -7},  {"PDT", -7},  {"PST", -8},  {"ADT", -8},  {"AKDT", -8},
      {"ALA", -9},  {"AKST", -9}, {"HAW", -10}, {"A", 1},     {"BST", 1},   {"CET", 1},
      {"FWT", 1},   {"MET", 1},   {"MEWT", 1},  {"SWT", 1},   {"EET", 2},   {"B", 2},
      {"BST", 3},   {"C", 3},     {"ZP4", 4},   {"ZP5", 5},   {"ZP6", 6},   {"WAST", 7},
      {"CCT", 8},   {"AWST", 8},  {"ACDT", 9},  {"JST", 9},   {"ACST", 10}, {"EAST", 10},
      {"AEST", 10}, {"CDT", 10},  {"AEDT", 11}, {"IDLE", 12}, {"NZST", 12}, {"NZT", 12},
  };
  for (const auto& row : kZones) {
    if (zone == row.zone) return row.hours;
  }
  return 0;
}

NKVXHMZ20::TCIMDateTime ParseLogTimeStamp(std::string_view field) {
  unsigned short year = 0;
  unsigned short month = 0;
  std::uint32_t day = 0;
  unsigned short hour = 0;
  unsigned short minute = 0;
  unsigned short second = 0;
  std::size_t i = 0;
  if (!IsDigit(At(field, 0))) {
    month = MonthStrToInt(CopyUpTo(' ', field, i));
    ++i;
    day = static_cast<std::uint32_t>(Number(CopyUpTo(',', field, i)));
    i += 2;
    year = Short(CopyUpTo(' ', field, i));
    krTimeStrToInt(field, i, hour, minute, second);
    ++i;
    // Without AM or PM this is the zone's first letter already: one that begins with A or P is
    // taken for it, and any other loses its first letter below. That is meant.
    if (At(field, i) == 'P') {
      if (hour < 12) hour = static_cast<unsigned short>(hour + 12);
      i += 2;
    } else if (At(field, i) == 'A') {
      if (hour == 12) hour = 0;
      i += 2;
    }
  } else if (At(field, 4) == '/') {
    year = Short(CopyUpTo('/', field, i));
    ++i;
    month = Short(CopyUpTo('/', field, i));
    ++i;
    day = static_cast<std::uint32_t>(Number(CopyUpTo(' ', field, i)));
    krTimeStrToInt(field, i, hour, minute, second);
  } else {
    day = static_cast<std::uint32_t>(Number(CopyUpTo(' ', field, i)));
    ++i;
    month = MonthStrToInt(CopyUpTo(' ', field, i));
    ++i;
    year = Short(CopyUpTo(' ', field, i));
    krTimeStrToInt(field, i, hour, minute, second);
  }
  ++i;
  const int offset_h = UtcStrToInt(field.substr(std::min(i, field.size())));
  return {year, month, day & 0xffff, hour, minute, second, 0, static_cast<short>(offset_h * 60)};
}
