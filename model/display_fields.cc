#include "model/display_fields.h"

#include <iostream>

void DisplayFields(std::initializer_list<std::pair<const char*, const std::string&>> fields) {
  for (const auto& [label, value] : fields) std::cout << label << " = [" << value << "]\n";
}
