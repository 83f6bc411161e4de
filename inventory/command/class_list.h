#ifndef INVENTORY_COMMAND_CLASS_LIST_H_
#define INVENTORY_COMMAND_CLASS_LIST_H_

#include <string>
#include <string_view>

/// The classes of the schema, one line each: the name and what its instances are.
std::string ClassList();

/// The class of the schema whose name is most like `name` or holds it, with its prefix or without,
/// whatever the case; `name` itself when it is one.
std::string_view NearestClass(std::string_view name);

#endif  // INVENTORY_COMMAND_CLASS_LIST_H_
