#ifndef INVENTORY_PRINT_FIELD_READER_H_
#define INVENTORY_PRINT_FIELD_READER_H_

#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "inventory/machine/machine.h"

/// Reads back what FieldWriter wrote of records. Members that it does not know are nobody's
/// business, those that are missing are not known. Throws std::runtime_error, with the place in the
/// document, for what has another type: "machine.controllers[1].serial_number: not a text".
class FieldReader {
 public:
  template <class Record>
  using Of = Record;

  /// `path` is where the object stands in the document. The object has to live on.
  FieldReader(const nlohmann::json& object, std::string path)
      : FieldReader(object, std::move(path), std::make_shared<Indices>()) {}

  void operator()(const std::string& name, bool& value) const;
  void operator()(const std::string& name, std::size_t& value) const;
  void operator()(const std::string& name, int& value) const;
  void operator()(const std::string& name, Severity& value) const;
  void operator()(const std::string& name, std::string& value) const;
  void operator()(const std::string& name, Text& value) const;
  void operator()(const std::string& name, std::optional<Number>& value) const;
  void operator()(const std::string& name, Version& version) const;
  void operator()(const std::string& name, Place& place) const;
  void operator()(const std::string& name, std::vector<Place>& places) const;
  void operator()(const std::string& name, std::vector<std::string>& texts) const;
  void operator()(const std::string& name, Flag& flag) const;
  void operator()(const std::string& name, std::optional<Size>& size) const;
  void operator()(const std::string& name, Time& time) const;
  void operator()(const std::string& name, std::optional<ToolNumber>& tool) const;
  void operator()(const std::string& name, std::optional<DriveCounts>& counts) const;
  void operator()(const std::string& name, std::vector<Number>& counts) const;
  void operator()(const std::string& name, std::vector<ErrorCounters>& rows) const;

  template <class Record>
  void operator()(const std::string& name, Record& record) const {
    if constexpr (requires { record.IsReported(); }) {
      if (Find(name).is_null()) return;
    }
    Group(name, [&](FieldReader& fields) { Fields(fields, record); });
    if constexpr (requires { record.is_collected; }) record.is_collected = true;
  }

  template <class ReadFields>
  void Group(const std::string& name, const ReadFields& read_fields) const {
    FieldReader fields(Find(name), PathOf(name), indices_);
    read_fields(fields);
  }

  template <class Record, class... Context>
  void List(const std::string& name, std::vector<Record>& records, Context&... context) const {
    const nlohmann::json& elements = Elements(name);
    records.resize(elements.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
      FieldReader fields(elements[i], PathOf(name) + "[" + std::to_string(i) + "]", indices_);
      Fields(fields, records[i], context...);
    }
  }

  /// The parts have to be read before, and to stay where they are.
  template <class Part>
  void Linked(const std::string& name, std::vector<std::size_t>& indices,
              const std::vector<Part>& parts) const {
    const Index& index = IndexOf(parts);
    // Of several with one name, each occurrence is the next.
    std::unordered_map<std::string, std::size_t> used;
    for (const nlohmann::json& element : Elements(name)) {
      const std::string part = NameIn(element);
      const auto found = index.find(part);
      if (found == index.end()) continue;
      const std::size_t use = used[part]++;
      if (use < found->second.size()) indices.push_back(found->second[use]);
    }
  }

  template <class Make>
  void Derived(const std::string&, const Make&) const {}

 private:
  using Index = std::unordered_map<std::string, std::vector<std::size_t>>;  // parts by name
  using Indices = std::unordered_map<const void*, Index>;                   // by their vector

  FieldReader(const nlohmann::json& object, std::string path, std::shared_ptr<Indices> indices);

  template <class Part>
  const Index& IndexOf(const std::vector<Part>& parts) const {
    const auto [index, is_new] = indices_->try_emplace(&parts);
    for (std::size_t i = 0; is_new && i < parts.size(); ++i) {
      index->second[NameOfPart(parts[i])].push_back(i);
    }
    return index->second;
  }

  static std::string NameOfPart(const LogicalDrive& drive);
  static std::string NameOfPart(const Device& device) { return device.place.GetText(); }
  static std::string NameIn(const nlohmann::json& element);

  /// Null when there is none.
  const nlohmann::json& Find(const std::string& name) const;
  const nlohmann::json& Elements(const std::string& name) const;
  std::string PathOf(const std::string& name) const { return path_ + "." + name; }
  [[noreturn]] void Refuse(const std::string& name, const char* expected) const;

  const nlohmann::json& object_;
  std::string path_;
  std::shared_ptr<Indices> indices_;
};

#endif  // INVENTORY_PRINT_FIELD_READER_H_
