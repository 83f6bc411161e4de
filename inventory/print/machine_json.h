#ifndef INVENTORY_PRINT_MACHINE_JSON_H_
#define INVENTORY_PRINT_MACHINE_JSON_H_

#include <nlohmann/json_fwd.hpp>

#include "inventory/machine/machine.h"
#include "inventory/print/json_writer.h"

/// The machine as documents have it, as one object.
void WriteMachineJson(const Machine& machine, JsonWriter& json);

/// Of the same, but for the findings and what only the layout of the report needs. Members that it
/// does not know are left out. Throws std::runtime_error with the place in the document for what
/// has another type.
Machine ReadMachineJson(const nlohmann::json& machine);

#endif  // INVENTORY_PRINT_MACHINE_JSON_H_
