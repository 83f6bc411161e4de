#ifndef MODEL_DISPLAY_FIELDS_H_
#define MODEL_DISPLAY_FIELDS_H_

#include <initializer_list>
#include <string>
#include <utility>

/// Writes `label = [value]` lines to standard output, for a person who debugs a parser. Values that
/// keep their "\n" push the closing bracket to the next line; that shows what is stored.
void DisplayFields(std::initializer_list<std::pair<const char*, const std::string&>> fields);

#endif  // MODEL_DISPLAY_FIELDS_H_
