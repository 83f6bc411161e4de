#ifndef INVENTORY_MACHINE_PLACE_H_
#define INVENTORY_MACHINE_PLACE_H_

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "inventory/machine/machine.h"

// Where a device is: "channel,number", as in the stripe orders; "?" for what is not known.

std::string PlaceText(const std::string& channel, const std::string& number);

/// The places of a stripe order, "1,0 1,1".
std::vector<std::string> PlacesIn(const std::string& stripe_order);

/// By place, the indices of the controller's devices there. Of devices without a number there may
/// be several.
using DevicesByPlace = std::unordered_map<std::string, std::vector<std::size_t>>;
DevicesByPlace IndexDevices(const std::vector<Device>& devices);

#endif  // INVENTORY_MACHINE_PLACE_H_
