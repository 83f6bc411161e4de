#ifndef HMZ_CIM_STRINGS_H_
#define HMZ_CIM_STRINGS_H_

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "hmz/api.h"

namespace NKVXHMZ20 {

/// Texts one behind the other in one buffer, each with its length in front. An array of many short
/// lines takes about as much as the lines do, which a std::string for each would multiply.
class TCIMStrings {
 public:
  /// Each text as a view, good for as long as the texts are there and none is added.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = std::string_view;
    using difference_type = std::ptrdiff_t;
    using pointer = const std::string_view*;
    using reference = std::string_view;

    /// At the text whose length begins `rest`, or at the end.
    HMZ_API explicit Iterator(std::string_view rest);

    std::string_view operator*() const { return text_; }
    HMZ_API Iterator& operator++();
    bool operator==(const Iterator& other) const { return rest_.data() == other.rest_.data(); }

   private:
    std::string_view rest_;  // from this text's length on
    std::string_view text_;
  };

  /// How much a text of this length takes.
  HMZ_API static std::size_t PackedSize(std::size_t length);

  /// Makes room for as many bytes: of exactly what is added, none is wasted.
  void Reserve(std::size_t bytes) { packed_.reserve(bytes); }
  HMZ_API void Add(std::string_view text);
  /// Keeps the first `count`, which are there.
  HMZ_API void Truncate(std::size_t count);

  std::size_t GetCount() const { return count_; }
  std::size_t GetByteCount() const { return packed_.size(); }
  Iterator begin() const { return Iterator(packed_); }
  Iterator end() const { return Iterator(std::string_view(packed_).substr(packed_.size())); }

 private:
  std::string packed_;
  std::size_t count_ = 0;
};

}  // namespace NKVXHMZ20

#endif  // HMZ_CIM_STRINGS_H_
