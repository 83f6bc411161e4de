#ifndef COLLECT_KRAID_RAW_DATA_H_
#define COLLECT_KRAID_RAW_DATA_H_

#include <string>
#include <string_view>

#include "hmz/cim_value.h"

/// One tool run as it is published: its command line and what it printed, line by line.
class KRaidRawData {
 public:
  /// The command line is tool, command, number and option with one blank between each, nothing
  /// quoted. A number 0 leaves its place empty, so two blanks meet.
  KRaidRawData(std::string_view tool_path, std::string_view command, int controller_number,
               std::string_view option, std::string_view output);
  virtual ~KRaidRawData() = default;

  std::string GetCommand() const { return command_; }
  /// The lines without their "\n" as an array of strings; null when the output had no line.
  NKVXHMZ20::TCIMValue GetRawData() const { return lines_; }

 private:
  std::string command_;
  NKVXHMZ20::TCIMValue lines_;  // made once: the host shares it
};

#endif  // COLLECT_KRAID_RAW_DATA_H_
