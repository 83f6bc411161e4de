#ifndef INVENTORY_PRINT_JSON_WRITER_H_
#define INVENTORY_PRINT_JSON_WRITER_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "inventory/base/sink.h"

/// Writes JSON piece by piece: what is large, an output of many lines or many instances, is never
/// in memory a second time. Each element of an array and each member of an object is on a line of
/// its own.
class JsonWriter {
 public:
  explicit JsonWriter(Sink& output) : output_(output) {}

  /// JSON as it is.
  void Raw(std::string_view json) { output_.Write(json); }
  void Null() { Raw("null"); }
  void Bool(bool value) { Raw(value ? "true" : "false"); }
  /// Bytes that are not UTF-8 become U+FFFD.
  void String(std::string_view text);
  template <class Integer>
  void Number(Integer number) {
    Raw(std::to_string(number));
  }

  // Between the brackets, Element or Name stands before each value.
  void Open(char bracket);
  void Element();
  void Name(const std::string& name);
  void Close(char bracket);

  /// Each element written by `write`.
  template <class Elements, class Write>
  void Array(const Elements& elements, const Write& write) {
    Open('[');
    for (const auto& element : elements) {
      Element();
      write(element);
    }
    Close(']');
  }

 private:
  void StartLine();

  Sink& output_;
  std::size_t depth_ = 0;
  bool is_first_ = true;  // of those between the innermost brackets
};

#endif  // INVENTORY_PRINT_JSON_WRITER_H_
