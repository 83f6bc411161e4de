#ifndef STANDIN_SCHEMA_H_
#define STANDIN_SCHEMA_H_

#include <span>
#include <string_view>

#include "hmz/api.h"

namespace standin {

/// One class of the schema.
struct SchemaClass {
  std::string_view name;
  std::span<const std::string_view> keys;  ///< Their names, in their order.
  /// What an instance holds: one line of at most 70 characters without a full stop.
  std::string_view description;
  bool is_association = false;
};

/// The 28 classes of the KelvaRAID schema, in the order in which the plug-in looks names up.
HMZ_API std::span<const SchemaClass> Schema();

}  // namespace standin

#endif  // STANDIN_SCHEMA_H_
