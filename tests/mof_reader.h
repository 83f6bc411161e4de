#ifndef TESTS_MOF_READER_H_
#define TESTS_MOF_READER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

struct MofProperty {
  std::string name;
  std::string type;  // "string", "uint16", "uint32", "datetime"; "" for a reference
  bool is_array = false;
  bool is_key = false;
  std::string reference_class;  // "" for any other property
  std::string description;
};

struct MofClass {
  std::string name;
  std::string description;
  bool is_association = false;
  std::vector<MofProperty> properties;  // in the order of their declarations
};

/// A string and a date-time are texts, in UTF-8 and without escapes.
using MofLiteral = std::variant<std::string, std::uint32_t>;

/// The instance that an alias stands for, by its place in MofDocument::instances.
struct MofAlias {
  std::size_t instance;
  bool operator==(const MofAlias&) const = default;
};

using MofValue = std::variant<MofLiteral, std::vector<MofLiteral>, MofAlias>;

struct MofSetting {
  std::string name;
  MofValue value;
};

struct MofInstance {
  std::string class_name;
  std::string alias;  // with its "$"; "" when it has none
  std::vector<MofSetting> properties;
};

struct MofDocument {
  std::vector<MofClass> classes;
  std::vector<MofInstance> instances;
};

/// Reads MOF as strictly as the strictest reader of inventories that may come along: the few
/// constructs that those have in common, in their usual spelling, each instance checked against its
/// class. `instances` goes on where `schema` ends; either may hold any declaration.
/// Throws std::runtime_error, "schema:3: ..." or "instances:12: ...", on anything else.
MofDocument ReadMof(std::string_view schema, std::string_view instances = "");

#endif  // TESTS_MOF_READER_H_
