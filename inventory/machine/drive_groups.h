#ifndef INVENTORY_MACHINE_DRIVE_GROUPS_H_
#define INVENTORY_MACHINE_DRIVE_GROUPS_H_

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "inventory/machine/machine.h"

/// A published array: either its letter is known or the logical drive whose it is.
struct PublishedArray {
  Text letter;
  std::string logical_drive;
  std::string stripe_order;
};

/// Where a logical drive says that it is.
struct DriveLocation {
  std::string array;         ///< A letter.
  std::string stripe_order;  ///< Of the drive's own, where no array is published for it.
};

/// By place, the indices of the controller's devices there. Of devices without a number there may
/// be several.
using DevicesByPlace = std::unordered_map<Place, std::vector<std::size_t>>;
DevicesByPlace IndexDevices(const std::vector<Device>& devices);

/// The array that an instance of KVXSG_krDiskGroup tells of, whose identifier, letter and order
/// these are.
PublishedArray MakePublishedArray(const std::string& id, const std::string& letter,
                                  const std::string& stripe_order);

/// Puts each logical drive and each device of the controller into its arrays, those with drives
/// first, in the order of the drives. There is one location for each drive.
void GroupDrives(const std::vector<PublishedArray>& arrays,
                 const std::vector<DriveLocation>& locations, const DevicesByPlace& devices,
                 Controller& controller);

/// Tells the drives and devices in which arrays they are, and the controller which places are
/// missing, when the arrays have their order.
void LinkBack(Controller& controller);

#endif  // INVENTORY_MACHINE_DRIVE_GROUPS_H_
