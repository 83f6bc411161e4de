#include "inventory/machine/place.h"

#include <charconv>
#include <sstream>
#include <tuple>

#include "inventory/machine/values.h"

namespace {

constexpr std::string_view kUnknown = "?";

std::optional<std::uint32_t> ReadPart(std::string_view text) {
  std::uint32_t value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (!IsDigits(text) || read.ec != std::errc()) return std::nullopt;
  return value;
}

/// As it is compared: a number without leading zeros, any other text as it stands.
std::string PartText(std::string_view text, std::optional<std::uint32_t> number) {
  if (number) return std::to_string(*number);
  return std::string(text.empty() ? kUnknown : text);
}

}  // namespace

Place::Place(std::string_view channel, std::string_view device)
    : channel_(ReadPart(channel)),
      device_(ReadPart(device)),
      text_(PartText(channel, channel_) + "," + PartText(device, device_)) {}

Place::Place(std::string_view text) : text_(text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return;
  *this = Place(text.substr(0, comma), text.substr(comma + 1));
}

bool Place::operator<(const Place& other) const {
  return std::tie(channel_, device_, text_) < std::tie(other.channel_, other.device_, other.text_);
}

std::vector<Place> PlacesIn(const std::string& stripe_order) {
  std::vector<Place> places;
  std::istringstream words(stripe_order);
  for (std::string word; words >> word;) places.emplace_back(word);
  return places;
}
