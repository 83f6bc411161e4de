#ifndef INVENTORY_PRINT_FIELD_WRITER_H_
#define INVENTORY_PRINT_FIELD_WRITER_H_

#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "inventory/machine/machine.h"
#include "inventory/print/json_writer.h"

/// Writes the fields of records, see machine_fields.h, into an object of JSON. What is not known is
/// null; a number beyond 2^53 stands as a text behind itself, too.
class FieldWriter {
 public:
  template <class Record>
  using Of = const Record;

  explicit FieldWriter(JsonWriter& json) : json_(json) {}

  void operator()(const std::string& name, bool value);
  void operator()(const std::string& name, std::size_t value);
  void operator()(const std::string& name, int value);
  void operator()(const std::string& name, Severity value);
  void operator()(const std::string& name, const char* value);
  void operator()(const std::string& name, const std::string& value);
  void operator()(const std::string& name, const Text& value);
  void operator()(const std::string& name, const std::optional<Number>& value);
  void operator()(const std::string& name, const Version& version);
  void operator()(const std::string& name, const Place& place);
  void operator()(const std::string& name, const std::vector<Place>& places);
  void operator()(const std::string& name, const std::vector<std::string>& texts);
  void operator()(const std::string& name, const std::vector<std::optional<Number>>& numbers);

  // Several members, whose names begin with this one.
  void operator()(const std::string& name, const Flag& flag);
  void operator()(const std::string& name, const std::optional<Size>& size);
  void operator()(const std::string& name, const Time& time);
  void operator()(const std::string& name, const std::optional<ToolNumber>& tool);
  void operator()(const std::string& name, const std::optional<DriveCounts>& counts);

  // The largest of each: they only grow.
  void operator()(const std::string& name, const std::vector<Number>& counts);
  void operator()(const std::string& name, const std::vector<ErrorCounters>& rows);

  /// A record; null for one that knows that it is not reported.
  template <class Record>
  void operator()(const std::string& name, const Record& record) {
    if constexpr (requires { record.IsReported(); }) {
      if (!record.IsReported()) return WriteNull(name);
    }
    Group(name, [&](FieldWriter& fields) { Fields(fields, record); });
  }

  template <class WriteFields>
  void Group(const std::string& name, const WriteFields& write_fields) {
    json_.Name(name);
    Object(write_fields);
  }

  template <class Record, class... Context>
  void List(const std::string& name, const std::vector<Record>& records,
            const Context&... context) {
    Objects(name, records,
            [&](FieldWriter& fields, const Record& record) { Fields(fields, record, context...); });
  }

  /// Each element of a list as an object.
  template <class Elements, class WriteFields>
  void Objects(const std::string& name, const Elements& elements, const WriteFields& write_fields) {
    json_.Name(name);
    json_.Array(elements, [&](const auto& element) {
      Object([&](FieldWriter& fields) { write_fields(fields, element); });
    });
  }

  void Linked(const std::string& name, const std::vector<std::size_t>& indices,
              const std::vector<LogicalDrive>& drives);
  void Linked(const std::string& name, const std::vector<std::size_t>& indices,
              const std::vector<Device>& devices);

  template <class Make>
  void Derived(const std::string& name, const Make& make) {
    (*this)(name, make());
  }

  /// What `write` writes with the writer below.
  template <class Write>
  void Value(const std::string& name, const Write& write) {
    json_.Name(name);
    write(json_);
  }

  void WriteNull(const std::string& name);

 private:
  template <class WriteFields>
  void Object(const WriteFields& write_fields) {
    json_.Open('{');
    write_fields(*this);
    json_.Close('}');
  }

  JsonWriter& json_;
};

#endif  // INVENTORY_PRINT_FIELD_WRITER_H_
