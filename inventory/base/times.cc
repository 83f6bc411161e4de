#include "inventory/base/times.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using std::chrono::microseconds;
using std::chrono::minutes;

/// Of local time, as a calendar has it.
struct Fields {
  unsigned year = 0;
  unsigned month = 0;
  unsigned day = 0;
  unsigned hour = 0;
  unsigned minute = 0;
  unsigned second = 0;
  long microsecond = 0;
};

std::optional<Instant> MakeInstant(const Fields& fields, minutes offset) {
  const auto date = std::chrono::year(static_cast<int>(fields.year)) /
                    std::chrono::month(fields.month) / std::chrono::day(fields.day);
  if (!date.ok() || fields.hour > 23 || fields.minute > 59 || fields.second > 59) {
    return std::nullopt;
  }
  const auto time = std::chrono::hours(fields.hour) + minutes(fields.minute) +
                    std::chrono::seconds(fields.second) + microseconds(fields.microsecond);
  return Instant{std::chrono::sys_days(date) + time - offset, offset};
}

/// Whether a text begins so, "9" standing for any digit.
bool Looks(std::string_view text, std::string_view pattern) {
  if (text.size() < pattern.size()) return false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool is_digit = text[i] >= '0' && text[i] <= '9';
    if (pattern[i] == '9' ? !is_digit : text[i] != pattern[i]) return false;
  }
  return true;
}

minutes Signed(char sign, unsigned offset) {
  const minutes magnitude(offset);
  return sign == '-' ? -magnitude : magnitude;
}

}  // namespace

std::optional<Instant> ToInstant(const NKVXHMZ20::TCIMDateTime& time) {
  const std::string text = time.ToString();
  Fields fields;
  char sign = 0;
  unsigned offset = 0;
  if (text.size() != 25 || std::sscanf(text.c_str(), "%4u%2u%2u%2u%2u%2u.%6ld%c%3u", &fields.year,
                                       &fields.month, &fields.day, &fields.hour, &fields.minute,
                                       &fields.second, &fields.microsecond, &sign, &offset) != 9) {
    return std::nullopt;
  }
  return MakeInstant(fields, Signed(sign, offset));
}

std::string Rfc3339(const Instant& instant) {
  const auto local = std::chrono::floor<std::chrono::seconds>(instant.utc + instant.offset);
  const auto day = std::chrono::floor<std::chrono::days>(local);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(local - day);
  const long offset = instant.offset.count();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02ld:%02ld:%02ld%c%02ld:%02ld",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<long>(time.hours().count()),
                static_cast<long>(time.minutes().count()),
                static_cast<long>(time.seconds().count()), offset < 0 ? '-' : '+',
                std::labs(offset) / 60, std::labs(offset) % 60);
  return text;
}

std::optional<Instant> ParseRfc3339(std::string_view text) {
  if (!Looks(text, "9999-99-99T99:99:99")) return std::nullopt;
  const std::string whole(text);
  Fields fields;
  std::sscanf(whole.c_str(), "%4u-%2u-%2uT%2u:%2u:%2u", &fields.year, &fields.month, &fields.day,
              &fields.hour, &fields.minute, &fields.second);
  std::string_view rest = text.substr(19);
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    long unit = 100'000;
    std::size_t digits = 0;
    for (; digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9'; ++digits) {
      fields.microsecond += unit * (rest[digits] - '0');
      unit /= 10;
    }
    if (digits == 0) return std::nullopt;
    rest.remove_prefix(digits);
  }
  if (rest == "Z") return MakeInstant(fields, minutes(0));
  if (rest.size() != 6 || !Looks(rest.substr(1), "99:99")) return std::nullopt;
  const char sign = rest[0];
  unsigned hours = 0;
  unsigned past = 0;
  const std::string zone(rest.substr(1));
  std::sscanf(zone.c_str(), "%2u:%2u", &hours, &past);
  if ((sign != '+' && sign != '-') || hours > 23 || past > 59) return std::nullopt;
  return MakeInstant(fields, Signed(sign, hours * 60 + past));
}

std::string Rfc3339(const NKVXHMZ20::TCIMDateTime& time) {
  const std::optional<Instant> instant = ToInstant(time);
  return instant ? Rfc3339(*instant) : "";
}

std::string PreciseTime(const NKVXHMZ20::TCIMDateTime& time) {
  const std::optional<Instant> instant = ToInstant(time);
  if (!instant) return "";
  const auto second = std::chrono::floor<std::chrono::seconds>(instant->utc);
  char fraction[32];
  std::snprintf(fraction, sizeof fraction, ".%06ld",
                static_cast<long>((instant->utc - second).count()));
  return Rfc3339(*instant).insert(std::strlen("2026-03-08T04:00:05"), fraction);
}

NKVXHMZ20::TCIMDateTime ToDateTime(const Instant& instant) {
  const auto local = instant.utc + instant.offset;
  const auto day = std::chrono::floor<std::chrono::days>(local);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(local - day);
  const auto small = [](auto value) { return static_cast<unsigned short>(value); };
  return {small(static_cast<int>(date.year())),
          small(static_cast<unsigned>(date.month())),
          static_cast<unsigned>(date.day()),
          small(time.hours().count()),
          small(time.minutes().count()),
          small(time.seconds().count()),
          static_cast<unsigned>(time.subseconds().count()),
          static_cast<short>(instant.offset.count())};
}

std::string SecondsText(std::chrono::milliseconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%lld.%03lld", static_cast<long long>(time.count() / 1000),
                static_cast<long long>(time.count() % 1000));
  return text;
}
