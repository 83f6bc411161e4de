#ifndef INVENTORY_MACHINE_PART_IDENTITY_H_
#define INVENTORY_MACHINE_PART_IDENTITY_H_

#include <string>

#include "inventory/machine/machine.h"
#include "inventory/machine/part_changes.h"

/// What a device or controller is known by. It refers to the part.
struct Identity {
  const Text& serial_number;
  const Text& model;

  /// "BRELLOW BX36W15, serial number K0441187"
  std::string Describe() const;
  /// Whether at the same place there is another one.
  bool IsOther(const Identity& other) const;
};

Identity IdentityOf(const Device& device);
Identity IdentityOf(const Controller& controller);

/// "is gone: BRELLOW BX36W15, serial number K0441187"; the first only where nothing else is known.
std::string WithIdentity(const std::string& what, const Identity& identity);

/// "was replaced: serial number A, now B"
void AddReplaced(const Identity& before, const Identity& now, PartChanges& changes);

/// "is gone (arcconf 1), with 3 logical drives and 13 devices"
std::string WithParts(const std::string& what, const Controller& controller);

/// "logical drive 2"
template <class Drive>
std::string DescribeDrive(const Drive& drive) {
  return "logical drive " + (drive.number ? drive.number->text : "");
}

/// "device 1,0"
template <class Part>
std::string DescribeDevice(const Part& device) {
  return "device " + device.place.GetText();
}

#endif  // INVENTORY_MACHINE_PART_IDENTITY_H_
