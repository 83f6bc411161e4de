#ifndef INVENTORY_MACHINE_DRIVE_GROUPS_H_
#define INVENTORY_MACHINE_DRIVE_GROUPS_H_

#include <string>
#include <vector>

#include "inventory/machine/machine.h"
#include "inventory/machine/place.h"

/// A published array: either its letter is known or the logical drive whose it is.
struct DriveArray {
  std::string letter;
  std::string logical_drive;
  std::string stripe_order;
};

/// Where a logical drive says that it is.
struct DriveLocation {
  std::string array;         ///< A letter.
  std::string stripe_order;  ///< Of the drive's own, where no array is published for it.
};

/// The array that an instance of KVXSG_krDiskGroup tells of, whose identifier, letter and order
/// these are.
DriveArray MakeDriveArray(const std::string& id, const std::string& letter,
                          const std::string& stripe_order);

/// Puts each logical drive and each device of the controller into one of its groups, those with
/// drives first, in the order of the drives. There is one location for each drive.
void GroupDrives(const std::vector<DriveArray>& arrays, const std::vector<DriveLocation>& locations,
                 DevicesByPlace devices, Controller& controller);

#endif  // INVENTORY_MACHINE_DRIVE_GROUPS_H_
