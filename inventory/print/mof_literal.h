#ifndef INVENTORY_PRINT_MOF_LITERAL_H_
#define INVENTORY_PRINT_MOF_LITERAL_H_

#include <string>
#include <string_view>

#include "inventory/base/sink.h"

/// A text as a MOF string literal, quotes included.
void WriteMofString(std::string_view text, Sink& output);

/// A CIM date-time that every reader of MOF can represent. Of one of 25 characters and a year other
/// than 0, the first impossible field and all behind it are asterisks; the offset stays. Of any
/// other, nothing can be said: it becomes the earliest date-time, "00010101000000.000000+000".
std::string MofDateTime(const std::string& text);

#endif  // INVENTORY_PRINT_MOF_LITERAL_H_
