#include "hmz/cim_strings.h"

namespace NKVXHMZ20 {
namespace {

// A length stands in groups of seven bits, the lowest first; all but the last have the highest bit.
constexpr unsigned kGroupBits = 7;
constexpr std::size_t kMoreFollow = 0x80;

}  // namespace

TCIMStrings::Iterator::Iterator(std::string_view rest) : rest_(rest) {
  if (rest_.empty()) return;
  std::size_t length = 0;
  std::size_t at = 0;
  for (unsigned shift = 0;; shift += kGroupBits) {
    const std::size_t group = static_cast<unsigned char>(rest_[at++]);
    length |= (group & (kMoreFollow - 1)) << shift;
    if ((group & kMoreFollow) == 0) break;
  }
  text_ = rest_.substr(at, length);
}

TCIMStrings::Iterator& TCIMStrings::Iterator::operator++() {
  return *this = Iterator(
             rest_.substr(static_cast<std::size_t>(text_.data() - rest_.data()) + text_.size()));
}

std::size_t TCIMStrings::PackedSize(std::size_t length) {
  std::size_t size = length + 1;
  while ((length >>= kGroupBits) > 0) ++size;
  return size;
}

void TCIMStrings::Add(std::string_view text) {
  std::size_t length = text.size();
  for (; length >= kMoreFollow; length >>= kGroupBits) {
    packed_ += static_cast<char>((length & (kMoreFollow - 1)) | kMoreFollow);
  }
  packed_ += static_cast<char>(length);
  packed_ += text;
  ++count_;
}

void TCIMStrings::Truncate(std::size_t count) {
  if (count == count_) return;
  std::size_t size = 0;
  Iterator text = begin();
  for (std::size_t i = 0; i < count; ++i, ++text) size += PackedSize((*text).size());
  packed_.resize(size);
  count_ = count;
}

}  // namespace NKVXHMZ20
