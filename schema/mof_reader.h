#ifndef SCHEMA_MOF_READER_H_
#define SCHEMA_MOF_READER_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct MofProperty {
  std::string name;
  std::string type;  ///< "string", "uint16", "uint32", "datetime"; "" for a reference.
  bool is_array = false;
  bool is_key = false;
  std::string reference_class;  ///< "" for any other property.
  std::string description;
  bool operator==(const MofProperty&) const = default;
};

struct MofClass {
  std::string name;
  std::string description;
  bool is_association = false;
  std::vector<MofProperty> properties;  ///< In the order of their declarations.
  std::size_t line = 0;                 ///< Where its name stands.
  bool operator==(const MofClass&) const = default;
};

struct MofDocument {
  std::vector<MofClass> classes;
  std::vector<std::string> instances;  ///< The names of their classes.
};

/// What is read, and what errors call it.
struct MofText {
  std::string name;
  std::string_view text;
};

/// Reads MOF as strictly as the strictest reader of inventories that may come along: the few
/// constructs that those have in common, in their usual spelling, each instance checked against its
/// class. Each text goes on where the one before it ends; any may hold any declaration.
/// Throws std::runtime_error, "kvxsg.mof:3: ...", on anything else.
MofDocument ReadMof(const std::vector<MofText>& texts);

#endif  // SCHEMA_MOF_READER_H_
