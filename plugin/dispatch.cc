#include "plugin/dispatch.h"

#include "plugin/publishers.h"

namespace {

/// Known on purpose to publish nothing: hosts ask for these classes and expect no instance.
void PublishNothing(const PublishContext& /*context*/) {}

/// Known, but what fills it is not built in yet.
constexpr auto kNotBuiltIn = PublishNothing;

constexpr DispatchEntry kEntries[] = {
    {"KVXSG_krRawData", PublishRawData},
    {"KVXSG_krSCSIProtocolController", PublishControllers},
    {"KVXSG_krLogicalDisk", kNotBuiltIn},
    {"KVXSG_krDiskGroup", kNotBuiltIn},
    {"KVXSG_krDiskDrive", kNotBuiltIn},
    {"KVXSG_DiskGroup", PublishNothing},
    {"KVXSG_BadStripeData", kNotBuiltIn},
    {"KVXSG_krSCSIDeviceData", kNotBuiltIn},
    {"KVXSG_krSCSISubStatData", kNotBuiltIn},
    {"KVXSG_LogRecord_SoftEvent", kNotBuiltIn},
    {"KVXSG_LogRecord_krDDD", kNotBuiltIn},
    {"KVXSG_LogRecord_HardEvent", kNotBuiltIn},
    {"KVXSG_LogRecord_RAIDMgrEvent", kNotBuiltIn},
    {"KVXSG_krFirmwareVersion", kNotBuiltIn},
    {"KVXSG_krBootBlockVersion", kNotBuiltIn},
    {"KVXSG_krDiskDriveVersion", kNotBuiltIn},
    {"KVXSG_krBiosVersion", kNotBuiltIn},
    {"KVXSG_krProtocolControllerForUnit", kNotBuiltIn},
    {"KVXSG_krProtocolControllerForPhysicalDisk", kNotBuiltIn},
    {"KVXSG_krDriveInDiskGroup", PublishNothing},
    {"KVXSG_krExtenInDiskGroup", PublishNothing},
    {"KVXSG_krStripeOrderForController", kNotBuiltIn},
    {"KVXSG_krFirmwareOnController", kNotBuiltIn},
    {"KVXSG_krBootBlockOnController", kNotBuiltIn},
    {"KVXSG_krFirmwareOnDiskDrive", kNotBuiltIn},
    {"KVXSG_krBiosOnController", kNotBuiltIn},
    {"KVXSG_ElementKrScsiDeviceData", kNotBuiltIn},
    {"KVXSG_ElementBadStripeData", kNotBuiltIn},
};

}  // namespace

std::span<const DispatchEntry> DispatchList() { return kEntries; }

void Publish(const std::string& class_name, const PublishContext& context) {
  for (const DispatchEntry& entry : kEntries) {
    if (class_name == entry.class_name) {
      entry.publish(context);
      return;
    }
  }
}
