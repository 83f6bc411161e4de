#include "inventory/print/document_instances.h"

#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "standin/schema.h"

namespace {

using NKVXHMZ20::TCIMDateTime;
using NKVXHMZ20::TCIMValue;
using nlohmann::json;

struct DeclaredClass {
  const standin::SchemaClass* declaration;
  std::unordered_map<std::string_view, TCIMValue::ECIMType> types;  // by property
};

class InstanceReader {
 public:
  InstanceReader() {
    for (const standin::SchemaClass& declaration : standin::Schema()) {
      DeclaredClass& entry = classes_[declaration.name];
      entry.declaration = &declaration;
      for (const standin::SchemaProperty& property : declaration.properties) {
        entry.types[property.name] = property.type;
      }
    }
  }

  /// Null for a class that the schema does not have, and for an association.
  const DeclaredClass* Find(const std::string& name) const {
    const auto found = classes_.find(name);
    const bool is_known = found != classes_.end() && !found->second.declaration->is_association;
    return is_known ? &found->second : nullptr;
  }

 private:
  std::unordered_map<std::string_view, DeclaredClass> classes_;
};

[[noreturn]] void Refuse(const std::string& path, const char* expected) {
  throw std::runtime_error(path + ": not " + expected);
}

/// As a log had it, also one that no calendar has; all zero for one whose parts do not fit.
TCIMDateTime ReadDateTime(const std::string& text) {
  unsigned short year = 0, month = 0, hour = 0, minute = 0, second = 0;
  unsigned day = 0, microseconds = 0;
  short offset = 0;
  int end = 0;
  if (text.size() != 25 ||
      std::sscanf(text.c_str(), "%4hu%2hu%2u%2hu%2hu%2hu.%6u%4hd%n", &year, &month, &day, &hour,
                  &minute, &second, &microseconds, &offset, &end) != 8 ||
      end != 25) {
    return {};
  }
  return {year, month, day, hour, minute, second, microseconds, offset};
}

TCIMValue ReadValue(const json& value, TCIMValue::ECIMType type, const std::string& path) {
  if (value.is_null()) return {};
  if (value.is_array()) {
    TCIMValue::Array elements;
    for (const json& element : value) {
      if (element.is_array() || element.is_null()) Refuse(path, "a list of values");
      elements.push_back(ReadValue(element, type, path));
    }
    return {TCIMValue::TCIMType(type), elements.size(), elements};
  }
  if (type == TCIMValue::kUint16 || type == TCIMValue::kUint32) {
    const std::uint64_t largest = type == TCIMValue::kUint16 ? UINT16_MAX : UINT32_MAX;
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > largest) {
      Refuse(path, "a number of its type");
    }
    return type == TCIMValue::kUint16 ? TCIMValue(value.get<std::uint16_t>())
                                      : TCIMValue(value.get<std::uint32_t>());
  }
  if (!value.is_string()) Refuse(path, "a text");
  if (type != TCIMValue::kDateTime) return value.get<std::string>();
  return ReadDateTime(value.get<std::string>());
}

}  // namespace

void CommitInstances(const json& instances, standin::Repository& repository) {
  if (!instances.is_array()) Refuse("instances", "a list");
  const InstanceReader reader;
  for (std::size_t i = 0; i < instances.size(); ++i) {
    const std::string path = "instances[" + std::to_string(i) + "]";
    const json& instance = instances[i];
    if (!instance.is_object() || !instance.contains("class") || !instance["class"].is_string() ||
        !instance.contains("properties") || !instance["properties"].is_object()) {
      Refuse(path, "an instance");
    }
    const auto name = instance["class"].get<std::string>();
    const DeclaredClass* const declared = reader.Find(name);
    if (declared == nullptr) continue;
    const auto created = repository.GetOrDeclareClass(name)->CreateInstance({});
    for (const auto& [property, value] : instance["properties"].items()) {
      const auto type = declared->types.find(property);
      if (type == declared->types.end()) continue;
      std::string where = path;
      where.append(".").append(property);
      created->SetPropertyValue(property, ReadValue(value, type->second, where), {});
    }
    created->Commit({});
  }
}
