#include "inventory/machine/place.h"

#include <sstream>

std::string PlaceText(const std::string& channel, const std::string& number) {
  return (channel.empty() ? "?" : channel) + "," + (number.empty() ? "?" : number);
}

std::vector<std::string> PlacesIn(const std::string& stripe_order) {
  std::vector<std::string> places;
  std::istringstream words(stripe_order);
  for (std::string place; words >> place;) places.push_back(place);
  return places;
}

DevicesByPlace IndexDevices(const std::vector<Device>& devices) {
  DevicesByPlace by_place;
  for (std::size_t i = 0; i < devices.size(); ++i) by_place[devices[i].place].push_back(i);
  return by_place;
}
