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
    {"KVXSG_krLogicalDisk", PublishLogicalDisks},
    {"KVXSG_krDiskGroup", PublishDiskGroups},
    {"KVXSG_krDiskDrive", PublishDiskDrives},
    {"KVXSG_DiskGroup", PublishNothing},
    {"KVXSG_BadStripeData", kNotBuiltIn},
    {"KVXSG_krSCSIDeviceData", kNotBuiltIn},
    {"KVXSG_krSCSISubStatData", kNotBuiltIn},
    {"KVXSG_LogRecord_SoftEvent", kNotBuiltIn},
    {"KVXSG_LogRecord_krDDD", kNotBuiltIn},
    {"KVXSG_LogRecord_HardEvent", kNotBuiltIn},
    {"KVXSG_LogRecord_RAIDMgrEvent", kNotBuiltIn},
    {"KVXSG_krFirmwareVersion", PublishFirmwareVersions},
    {"KVXSG_krBootBlockVersion", PublishBootBlockVersions},
    {"KVXSG_krDiskDriveVersion", PublishDiskDriveVersions},
    {"KVXSG_krBiosVersion", PublishBiosVersions},
    {"KVXSG_krProtocolControllerForUnit", PublishControllerForUnit},
    {"KVXSG_krProtocolControllerForPhysicalDisk", PublishControllerForPhysicalDisk},
    {"KVXSG_krDriveInDiskGroup", PublishNothing},
    {"KVXSG_krExtenInDiskGroup", PublishNothing},
    {"KVXSG_krStripeOrderForController", PublishStripeOrderForController},
    {"KVXSG_krFirmwareOnController", PublishFirmwareOnController},
    {"KVXSG_krBootBlockOnController", PublishBootBlockOnController},
    {"KVXSG_krFirmwareOnDiskDrive", PublishFirmwareOnDiskDrive},
    {"KVXSG_krBiosOnController", PublishBiosOnController},
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
