#ifndef INVENTORY_BASE_TIMES_H_
#define INVENTORY_BASE_TIMES_H_

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "hmz/cim_date_time.h"

/// A moment, and the offset from UTC of the clock that told it.
struct Instant {
  std::chrono::sys_time<std::chrono::microseconds> utc;
  std::chrono::minutes offset{};

  bool operator==(const Instant&) const = default;
};

/// Absent for a time that no calendar has.
std::optional<Instant> ToInstant(const NKVXHMZ20::TCIMDateTime& time);

/// "2026-03-08T04:00:05+01:00", to the second.
std::string Rfc3339(const Instant& instant);

/// Of what the function above writes, fractions of a second and "Z" included; absent for all else.
std::optional<Instant> ParseRfc3339(std::string_view text);

/// The same of what a host says; "" for a time that no calendar has.
std::string Rfc3339(const NKVXHMZ20::TCIMDateTime& time);

/// With the microseconds: "2026-03-08T04:00:05.123456+01:00"; "" for a time that no calendar has.
std::string PreciseTime(const NKVXHMZ20::TCIMDateTime& time);

NKVXHMZ20::TCIMDateTime ToDateTime(const Instant& instant);

/// "12.034", in seconds.
std::string SecondsText(std::chrono::milliseconds time);

#endif  // INVENTORY_BASE_TIMES_H_
