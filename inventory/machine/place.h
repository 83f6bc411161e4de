#ifndef INVENTORY_MACHINE_PLACE_H_
#define INVENTORY_MACHINE_PLACE_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Where a device is: its channel and its number there. Places stand in the order of both, what is
/// not known first.
class Place {
 public:
  Place() = default;
  /// Of two texts; "" for what is not known.
  Place(std::string_view channel, std::string_view device);
  /// Of "1,0", as in the stripe orders. Any other text is a place, too, and the same as itself
  /// only.
  explicit Place(std::string_view text);

  std::optional<std::uint32_t> GetChannel() const { return channel_; }
  std::optional<std::uint32_t> GetDevice() const { return device_; }
  /// "1,0"; "?" for what is not known.
  const std::string& GetText() const { return text_; }

  bool operator<(const Place& other) const;
  bool operator==(const Place&) const = default;

 private:
  std::optional<std::uint32_t> channel_;
  std::optional<std::uint32_t> device_;
  std::string text_ = "?,?";
};

template <>
struct std::hash<Place> {
  std::size_t operator()(const Place& place) const {
    return std::hash<std::string>()(place.GetText());
  }
};

/// The places of a stripe order, "1,0 1,1".
std::vector<Place> PlacesIn(const std::string& stripe_order);

#endif  // INVENTORY_MACHINE_PLACE_H_
