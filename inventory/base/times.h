#ifndef INVENTORY_BASE_TIMES_H_
#define INVENTORY_BASE_TIMES_H_

#include <chrono>
#include <string>

#include "hmz/cim_date_time.h"

/// "2026-03-08T04:00:05+01:00", to the second; "" for a time that no calendar has.
std::string Rfc3339(const NKVXHMZ20::TCIMDateTime& time);

/// "12.034", in seconds.
std::string SecondsText(std::chrono::milliseconds time);

#endif  // INVENTORY_BASE_TIMES_H_
