#include "hmz/cim_date_time.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "hmz/exception.h"

namespace NKVXHMZ20 {
namespace {

// d: a decimal digit, s: a sign; any other character stands for itself.
constexpr std::string_view kForm = "dddddddddddddd.ddddddsddd";

bool HasForm(std::string_view text) {
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    switch (kForm[i]) {
      case 'd':
        if (c < '0' || c > '9') return false;
        break;
      case 's':
        if (c != '+' && c != '-') return false;
        break;
      default:
        if (c != kForm[i]) return false;
    }
  }
  return true;
}

}  // namespace

TCIMDateTime::TCIMDateTime(const std::string& text) {
  if (!HasForm(text)) {
    throw THMZException("not a date-time of the form yyyymmddHHMMSS.mmmmmmsutc: \"" + text + "\"");
  }
  const auto number = [&text](std::size_t begin, std::size_t length, unsigned int low,
                              unsigned int high, const char* what) {
    unsigned int value = 0;
    for (std::size_t i = begin; i < begin + length; ++i) {
      value = value * 10 + static_cast<unsigned int>(text[i] - '0');
    }
    if (value < low || value > high) {
      throw THMZException("date-time with an impossible " + std::string(what) + ": \"" + text +
                          "\"");
    }
    return value;
  };
  const auto small = [](unsigned int value) { return static_cast<unsigned short>(value); };
  year_ = small(number(0, 4, 0, 9999, "year"));
  month_ = small(number(4, 2, 1, 12, "month"));
  day_ = number(6, 2, 1, 31, "day");
  hour_ = small(number(8, 2, 0, 23, "hour"));
  minute_ = small(number(10, 2, 0, 59, "minute"));
  second_ = small(number(12, 2, 0, 59, "second"));
  microseconds_ = number(15, 6, 0, 999999, "fraction");
  const int offset = static_cast<int>(number(22, 3, 0, 999, "offset"));
  utc_offset_minutes_ = static_cast<short>(text[21] == '-' ? -offset : offset);
}

TCIMDateTime::TCIMDateTime(unsigned short year, unsigned short month, unsigned int day,
                           unsigned short hour, unsigned short minute, unsigned short second,
                           unsigned int microseconds, short utc_offset_minutes)
    : day_(day),
      microseconds_(microseconds),
      year_(year),
      month_(month),
      hour_(hour),
      minute_(minute),
      second_(second),
      utc_offset_minutes_(utc_offset_minutes) {}

std::string TCIMDateTime::ToString() const {
  char text[80];  // more than every component at its longest
  const int length = std::snprintf(
      text, sizeof text, "%04u%02u%02u%02u%02u%02u.%06u%c%03d", unsigned{year_}, unsigned{month_},
      day_, unsigned{hour_}, unsigned{minute_}, unsigned{second_}, microseconds_,
      utc_offset_minutes_ < 0 ? '-' : '+', std::abs(int{utc_offset_minutes_}));
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace NKVXHMZ20
