#ifndef INVENTORY_MACHINE_PROPERTY_TEXT_H_
#define INVENTORY_MACHINE_PROPERTY_TEXT_H_

#include <cstddef>
#include <string>

#include "standin/repository.h"

/// A property of an instance as Readable; "" when it was never set.
std::string PropertyText(const standin::StoredInstance& instance, const char* property);

/// Where a property goes.
template <class Record>
struct FieldRow {
  const char* property;
  std::string Record::*field;
};

template <class Record, std::size_t kCount>
void ReadFields(const standin::StoredInstance& instance, const FieldRow<Record> (&rows)[kCount],
                Record& record) {
  for (const FieldRow<Record>& row : rows) record.*row.field = PropertyText(instance, row.property);
}

#endif  // INVENTORY_MACHINE_PROPERTY_TEXT_H_
