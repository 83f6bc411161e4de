#ifndef PLUGIN_INSTANCE_IDENTIFIERS_H_
#define PLUGIN_INSTANCE_IDENTIFIERS_H_

#include <string>

class KRaidBstData;
class KRaidController;
class KRaidLogicalDevice;
class KRaidPhysicalDevice;

// The identifiers that are made of records. Associations find their ends by identifiers, so each is
// made in one place: here, or in model/record_identifiers.h where records need it. The pieces go in
// as they are, every byte of them.

/// "KelvaRAID1LD0"
std::string LogicalDiskIdentifier(const KRaidController& controller,
                                  const KRaidLogicalDevice& drive);

/// "KelvaRAID:1LD0"
std::string BadStripeIdentifier(const KRaidController& controller, const KRaidBstData& row);

/// "C1 CH2 I05:" and the device's own identification. Channel and SCSI ID are numbers here, the
/// SCSI ID in at least two digits.
std::string DeviceIdentifier(const KRaidController& controller, const KRaidPhysicalDevice& device);

/// "1-C1 CH2 I05:" and so on: the device's firmware.
std::string DeviceFirmwareIdentifier(const KRaidController& controller,
                                     const KRaidPhysicalDevice& device);

/// "KelvaRAID1 BIOS"
std::string BiosName(const KRaidController& controller);

#endif  // PLUGIN_INSTANCE_IDENTIFIERS_H_
