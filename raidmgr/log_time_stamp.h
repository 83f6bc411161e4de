#ifndef RAIDMGR_LOG_TIME_STAMP_H_
#define RAIDMGR_LOG_TIME_STAMP_H_

#include <cstddef>
#include <string_view>

#include "hmz/cim_date_time.h"

/// Reads the time stamp of a RAID manager's log line, in one of three layouts:
///
///   January 5, 2005 1:02:03 PM EST       first character no digit
///   2005/01/05 13:02:03 JST              fifth character "/"
///   05 January 2005 13:02:03 CET         any other
///
/// Nothing is refused: missing numbers and unknown months give 0, unknown zones UTC.
NKVXHMZ20::TCIMDateTime ParseLogTimeStamp(std::string_view field);

/// Reads "hour:minute:second", which begins one character behind `index`; `index` is then behind
/// the seconds, on the blank there or at the end of the text.
void krTimeStrToInt(std::string_view text, std::size_t& index, unsigned short& hour,
                    unsigned short& minute, unsigned short& second);

/// 1 to 12, 0 for a name that is not known. Full names are, and three-letter ones but for January,
/// June and July.
unsigned short MonthStrToInt(std::string_view name);

/// The offset of a zone from UTC in whole hours; 0 when the abbreviation, compared as it stands, is
/// not known.
int UtcStrToInt(std::string_view zone);

#endif  // RAIDMGR_LOG_TIME_STAMP_H_
