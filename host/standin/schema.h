#ifndef STANDIN_SCHEMA_H_
#define STANDIN_SCHEMA_H_

#include <span>
#include <string_view>

#include "hmz/api.h"

namespace standin {

/// One class of the schema and the names of its keys, in their order.
struct SchemaClass {
  std::string_view name;
  std::span<const std::string_view> keys;
};

/// The 28 classes of the KelvaRAID schema, in the order in which the plug-in looks names up.
HMZ_API std::span<const SchemaClass> Schema();

}  // namespace standin

#endif  // STANDIN_SCHEMA_H_
