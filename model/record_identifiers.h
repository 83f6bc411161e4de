#ifndef MODEL_RECORD_IDENTIFIERS_H_
#define MODEL_RECORD_IDENTIFIERS_H_

#include <string>

#include "schema/published_texts.h"

// The identifiers that records make of texts alone; plugin/instance_identifiers.h has those that
// need whole records. The pieces go in as they are, every byte of them, without padding.

/// "KelvaRAID1"
inline std::string ControllerIdentifier(const std::string& controller_num) {
  return "KelvaRAID" + controller_num;
}

/// The key of an array, "KelvaRAID1ArrayA".
inline std::string ArrayIdentifier(const std::string& controller_num, const std::string& letter) {
  return ControllerIdentifier(controller_num) + "Array" + letter;
}

/// The key of an array of the newer tools, of which the list of its members is a part.
inline std::string DriveArrayIdentifier(const std::string& controller_num,
                                        const std::string& logical_drive_num,
                                        const std::string& stripe_order) {
  return "KelvaRaidCntrlr" + controller_num + kGroupsDriveMark + logical_drive_num + stripe_order;
}

/// The newer tools' devices, "Controller: 0Device #3". It is the channel that stands there, not the
/// controller: hosts know the devices by it.
inline std::string PlaceIdentifier(const std::string& channel, const std::string& device_label) {
  return "Controller: " + channel + device_label;
}

/// The key of a device's statistics, "KelvaRAID:1C0S5".
inline std::string StatisticsIdentifier(const std::string& controller_num,
                                        const std::string& channel, const std::string& scsi_id) {
  return "KelvaRAID:" + controller_num + "C" + channel + "S" + scsi_id;
}

#endif  // MODEL_RECORD_IDENTIFIERS_H_
