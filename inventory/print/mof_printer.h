#ifndef INVENTORY_PRINT_MOF_PRINTER_H_
#define INVENTORY_PRINT_MOF_PRINTER_H_

#include "inventory/base/report.h"
#include "inventory/base/sink.h"

/// Writes the instances as a MOF document (DSP0004) that compiles behind schema/kvxsg.mof; see
/// docs/mof.md.
void PrintMof(const Report& report, Sink& output);

#endif  // INVENTORY_PRINT_MOF_PRINTER_H_
