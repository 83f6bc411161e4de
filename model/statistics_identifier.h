#ifndef MODEL_STATISTICS_IDENTIFIER_H_
#define MODEL_STATISTICS_IDENTIFIER_H_

#include <string>

/// The key of a device's statistics, "KelvaRAID:1C0S5": texts as they are, no padding.
inline std::string StatisticsIdentifier(const std::string& controller_num,
                                        const std::string& channel, const std::string& scsi_id) {
  return "KelvaRAID:" + controller_num + "C" + channel + "S" + scsi_id;
}

#endif  // MODEL_STATISTICS_IDENTIFIER_H_
