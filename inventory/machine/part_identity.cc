#include "inventory/machine/part_identity.h"

#include "inventory/base/readable.h"

namespace {

std::string DescribeSerialNumber(const Text& serial_number) {
  return serial_number ? "serial number " + *serial_number : "no serial number";
}

}  // namespace

std::string Identity::Describe() const {
  return (model ? *model + ", " : "") + DescribeSerialNumber(serial_number);
}

bool Identity::IsOther(const Identity& other) const {
  if (serial_number && other.serial_number) return serial_number != other.serial_number;
  return model && other.model && model != other.model;
}

Identity IdentityOf(const Device& device) { return {device.serial_number, device.model}; }

Identity IdentityOf(const Controller& controller) {
  return {controller.serial_number, controller.type};
}

std::string WithIdentity(const std::string& what, const Identity& identity) {
  return identity.serial_number || identity.model ? what + ": " + identity.Describe() : what;
}

void AddReplaced(const Identity& before, const Identity& now, PartChanges& changes) {
  const bool are_known = before.serial_number && now.serial_number;
  const std::string what =
      are_known ? DescribeSerialNumber(before.serial_number) + ", now " + *now.serial_number
                : before.Describe() + ", now " + now.Describe();
  Change& change = changes.Add(ChangeCode::kReplaced, "was replaced: " + what);
  change.property = are_known ? "serial_number" : "model";
  change.before = are_known ? before.serial_number : before.model;
  change.after = are_known ? now.serial_number : now.model;
}

std::string WithParts(const std::string& what, const Controller& controller) {
  const std::string tool = controller.tool ? " (" + controller.tool->Describe() + ")" : "";
  return what + tool + ", with " + Counted(controller.logical_drives.size(), "logical drive") +
         " and " + Counted(controller.devices.size(), "device");
}
