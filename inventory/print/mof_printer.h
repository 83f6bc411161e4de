#ifndef INVENTORY_PRINT_MOF_PRINTER_H_
#define INVENTORY_PRINT_MOF_PRINTER_H_

#include "inventory/print/view.h"

/// Writes the instances as a MOF document (DSP0004) that compiles behind schema/kvxsg.mof; see
/// docs/mof.md.
int PrintMof(const ViewInput& input, const ViewOptions& options, Sink& output);

#endif  // INVENTORY_PRINT_MOF_PRINTER_H_
