#ifndef INVENTORY_RUNS_PSEUDONYMS_H_
#define INVENTORY_RUNS_PSEUDONYMS_H_

#include <array>
#include <string>
#include <string_view>

/// Texts in place of others, by a key: of the same length, each character of the same kind (digit,
/// lower or upper case; what is neither stays), a text of hexadecimal digits one of these again.
/// The same for the same text and key, and never one for two texts: it is a permutation of all
/// texts that look alike.
class Pseudonyms {
 public:
  /// Of a key of any length; "" for one that is random.
  explicit Pseudonyms(std::string_view key);

  std::string Of(std::string_view text) const;
  /// Part by part, as names of machines are compared with and without their domain.
  std::string OfName(std::string_view name) const;

 private:
  std::string Permuted(std::string_view text, bool is_hexadecimal) const;

  std::array<unsigned char, 32> key_{};
};

#endif  // INVENTORY_RUNS_PSEUDONYMS_H_
