#include "inventory/base/times.h"

#include <cstdio>

std::string Rfc3339(const NKVXHMZ20::TCIMDateTime& time) {
  const std::string text = time.ToString();
  unsigned parts[6];
  char sign = 0;
  unsigned offset = 0;
  if (text.size() != 25 ||
      std::sscanf(text.c_str(), "%4u%2u%2u%2u%2u%2u.%*6u%c%3u", &parts[0], &parts[1], &parts[2],
                  &parts[3], &parts[4], &parts[5], &sign, &offset) != 8) {
    return "";
  }
  const auto date = std::chrono::year(static_cast<int>(parts[0])) / std::chrono::month(parts[1]) /
                    std::chrono::day(parts[2]);
  if (!date.ok() || parts[3] > 23 || parts[4] > 59 || parts[5] > 59) return "";
  char result[64];
  std::snprintf(result, sizeof result, "%04u-%02u-%02uT%02u:%02u:%02u%c%02u:%02u", parts[0],
                parts[1], parts[2], parts[3], parts[4], parts[5], sign, offset / 60, offset % 60);
  return result;
}

std::string SecondsText(std::chrono::milliseconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%lld.%03lld", static_cast<long long>(time.count() / 1000),
                static_cast<long long>(time.count() % 1000));
  return text;
}
