#ifndef HMZ_CIM_DATE_TIME_H_
#define HMZ_CIM_DATE_TIME_H_

#include <string>

#include "hmz/api.h"

namespace NKVXHMZ20 {

/// A CIM date-time: a point in time with microseconds and an offset from UTC in minutes.
class HMZ_API TCIMDateTime {
 public:
  /// All components zero.
  TCIMDateTime() = default;

  /// Reads the 25-character form "yyyymmddHHMMSS.mmmmmmsutc", for example
  /// "20040315140209.000000+000".
  /// Throws THMZException for any other length or layout, and for a month outside 1 to 12, a day
  /// outside 1 to 31, an hour over 23, a minute or second over 59.
  explicit TCIMDateTime(const std::string& text);

  /// Stores the components as they are given: nothing is refused, clamped or normalised, so that
  /// a month 0 from a log with an unreadable month stays visible as month 0.
  TCIMDateTime(unsigned short year, unsigned short month, unsigned int day, unsigned short hour,
               unsigned short minute, unsigned short second, unsigned int microseconds,
               short utc_offset_minutes);

  /// The 25-character form. A component too large for its place is printed whole, which makes the
  /// text longer than 25 characters.
  std::string ToString() const;

 private:
  unsigned int day_ = 0;
  unsigned int microseconds_ = 0;
  unsigned short year_ = 0;
  unsigned short month_ = 0;
  unsigned short hour_ = 0;
  unsigned short minute_ = 0;
  unsigned short second_ = 0;
  short utc_offset_minutes_ = 0;
};

}  // namespace NKVXHMZ20

#endif  // HMZ_CIM_DATE_TIME_H_
