#include "inventory/machine/property_text.h"

#include "inventory/base/readable.h"

std::string PropertyText(const standin::StoredInstance& instance, const char* property) {
  const NKVXHMZ20::TCIMValue* value = instance.Find(property);
  return value == nullptr ? "" : Readable(value->ToString());
}
