#include "plugin/dispatch.h"

#include "plugin/publishers.h"

namespace {

/// Known on purpose to publish nothing: hosts ask for these classes and expect no instance.
void PublishNothing(const PublishContext& /*context*/) {}

/// Known, but what fills it is not built in yet.
constexpr auto NotBuiltIn = PublishNothing;

constexpr DispatchEntry kEntries[] = {
    {"KVXSG_krRawData", PublishRawData},
    {"KVXSG_krSCSIProtocolController", PublishControllers},
    {"KVXSG_krLogicalDisk", NotBuiltIn},
    {"KVXSG_krDiskGroup", NotBuiltIn},
    {"KVXSG_krDiskDrive", NotBuiltIn},
    {"KVXSG_DiskGroup", PublishNothing},
    {"KVXSG_BadStripeData", NotBuiltIn},
    {"KVXSG_krSCSIDeviceData", NotBuiltIn},
    {"KVXSG_krSCSISubStatData", NotBuiltIn},
    {"KVXSG_LogRecord_SoftEvent", NotBuiltIn},
    {"KVXSG_LogRecord_krDDD", NotBuiltIn},
    {"KVXSG_LogRecord_HardEvent", NotBuiltIn},
    {"KVXSG_LogRecord_RAIDMgrEvent", NotBuiltIn},
    {"KVXSG_krFirmwareVersion", NotBuiltIn},
    {"KVXSG_krBootBlockVersion", NotBuiltIn},
    {"KVXSG_krDiskDriveVersion", NotBuiltIn},
    {"KVXSG_krBiosVersion", NotBuiltIn},
    {"KVXSG_krProtocolControllerForUnit", NotBuiltIn},
    {"KVXSG_krProtocolControllerForPhysicalDisk", NotBuiltIn},
    {"KVXSG_krDriveInDiskGroup", PublishNothing},
    {"KVXSG_krExtenInDiskGroup", PublishNothing},
    {"KVXSG_krStripeOrderForController", NotBuiltIn},
    {"KVXSG_krFirmwareOnController", NotBuiltIn},
    {"KVXSG_krBootBlockOnController", NotBuiltIn},
    {"KVXSG_krFirmwareOnDiskDrive", NotBuiltIn},
    {"KVXSG_krBiosOnController", NotBuiltIn},
    {"KVXSG_ElementKrScsiDeviceData", NotBuiltIn},
    {"KVXSG_ElementBadStripeData", NotBuiltIn},
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
