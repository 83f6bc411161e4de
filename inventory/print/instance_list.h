#ifndef INVENTORY_PRINT_INSTANCE_LIST_H_
#define INVENTORY_PRINT_INSTANCE_LIST_H_

#include "inventory/print/view.h"

/// Writes the instances themselves for a person, property by property, values in readable form.
int PrintInstances(const ViewInput& input, const ViewOptions& options, Sink& output);

#endif  // INVENTORY_PRINT_INSTANCE_LIST_H_
