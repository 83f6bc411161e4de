#ifndef INVENTORY_PRINT_MOF_LITERAL_H_
#define INVENTORY_PRINT_MOF_LITERAL_H_

#include <string>

/// A text as a MOF string literal, quotes included.
std::string MofString(const std::string& text);

/// A date-time of 25 characters whose impossible fields, and all behind the first of them, are
/// asterisks; the offset stays. Of a text of another length nothing is possible.
std::string MofDateTime(const std::string& text);

#endif  // INVENTORY_PRINT_MOF_LITERAL_H_
