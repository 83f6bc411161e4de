#ifndef INVENTORY_PRINT_FINDINGS_JSON_H_
#define INVENTORY_PRINT_FINDINGS_JSON_H_

#include "inventory/machine/compare.h"
#include "inventory/machine/machine.h"
#include "inventory/print/field_writer.h"

/// The member "findings": what needs attention, critical ones first.
void WriteFindings(const Machine& machine, FieldWriter& document);

/// The members "compared_with" and "changes".
void WriteComparison(const Machine& machine, const Comparison& comparison, FieldWriter& document);

#endif  // INVENTORY_PRINT_FINDINGS_JSON_H_
