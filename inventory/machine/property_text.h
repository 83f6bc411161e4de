#ifndef INVENTORY_MACHINE_PROPERTY_TEXT_H_
#define INVENTORY_MACHINE_PROPERTY_TEXT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "inventory/machine/values.h"
#include "standin/repository.h"

/// A property of an instance as Readable; "" when it was never set.
std::string PropertyText(const standin::StoredInstance& instance, const char* property);

inline void SetField(Text& field, std::string text) { field = MakeText(std::move(text)); }
inline void SetField(State& field, std::string text) { field.text = MakeText(std::move(text)); }
inline void SetField(Flag& field, std::string text) { field.text = MakeText(std::move(text)); }
inline void SetField(std::optional<Number>& field, std::string text) {
  field = MakeNumber(std::move(text));
}
inline void SetField(std::optional<Size>& field, std::string text) {
  field = MakeSize(std::move(text));
}

/// Where a property goes, and so as what it is read.
template <class Record>
struct FieldRow {
  const char* property;
  std::variant<Text Record::*, State Record::*, Flag Record::*, std::optional<Number> Record::*,
               std::optional<Size> Record::*>
      field;
};

template <class Record, std::size_t kCount>
void ReadFields(const standin::StoredInstance& instance, const FieldRow<Record> (&rows)[kCount],
                Record& record) {
  for (const FieldRow<Record>& row : rows) {
    std::visit([&](auto field) { SetField(record.*field, PropertyText(instance, row.property)); },
               row.field);
  }
}

/// Whether there is one: a plug-in can publish anything.
inline bool IsArrayOfStrings(const NKVXHMZ20::TCIMValue* value) {
  return value != nullptr && value->IsArray() &&
         value->GetType().GetCode() == NKVXHMZ20::TCIMValue::kString;
}

#endif  // INVENTORY_MACHINE_PROPERTY_TEXT_H_
