#ifndef STANDIN_SCHEMA_H_
#define STANDIN_SCHEMA_H_

#include <span>
#include <string_view>

#include "hmz/api.h"
#include "hmz/cim_value.h"

namespace standin {

/// One property as its class declares it.
struct SchemaProperty {
  std::string_view name;
  NKVXHMZ20::TCIMValue::ECIMType type;  ///< Of an array, the type of its elements.
  bool is_array = false;
  std::string_view reference_class;  ///< "" for all but references.
};

/// One class of the schema.
struct SchemaClass {
  std::string_view name;
  std::span<const std::string_view> keys;  ///< Their names, in their order.
  /// What an instance holds: one line of at most 70 characters without a full stop.
  std::string_view description;
  bool is_association = false;
  std::span<const SchemaProperty> properties;  ///< The keys, too, in the declared order.
};

/// The 28 classes of the KelvaRAID schema, in the order in which the plug-in looks names up. The
/// build makes this table of schema/kvxsg.mof.
HMZ_API std::span<const SchemaClass> Schema();

}  // namespace standin

#endif  // STANDIN_SCHEMA_H_
