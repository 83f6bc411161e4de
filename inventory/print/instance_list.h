#ifndef INVENTORY_PRINT_INSTANCE_LIST_H_
#define INVENTORY_PRINT_INSTANCE_LIST_H_

#include "inventory/base/report.h"
#include "inventory/base/sink.h"
#include "inventory/print/display.h"

/// Writes the instances themselves for a person, property by property, values in readable form.
void PrintInstances(const Report& report, const Display& display, Sink& output);

#endif  // INVENTORY_PRINT_INSTANCE_LIST_H_
