#include "plugin/dispatch.h"

#include "plugin/publishers.h"

namespace {

/// Known on purpose to publish nothing: hosts ask for these classes and expect no instance.
void PublishNothing(const PublishContext& /*context*/) {}

constexpr DispatchEntry kEntries[] = {
    {"KVXSG_krRawData", PublishRawData},
    {"KVXSG_krSCSIProtocolController", PublishControllers},
    {"KVXSG_krLogicalDisk", PublishLogicalDisks},
    {"KVXSG_krDiskGroup", PublishDiskGroups},
    {"KVXSG_krDiskDrive", PublishDiskDrives},
    {"KVXSG_DiskGroup", PublishNothing},
    {"KVXSG_BadStripeData", PublishBadStripes},
    {"KVXSG_krSCSIDeviceData", PublishDeviceData},
    {"KVXSG_krSCSISubStatData", PublishSubStatData},
    {"KVXSG_LogRecord_SoftEvent", PublishSoftEvents},
    {"KVXSG_LogRecord_krDDD", PublishDddEvents},
    {"KVXSG_LogRecord_HardEvent", PublishHardEvents},
    {"KVXSG_LogRecord_RAIDMgrEvent", PublishManagerEvents},
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
    {"KVXSG_ElementKrScsiDeviceData", PublishElementDeviceData},
    {"KVXSG_ElementBadStripeData", PublishElementBadStripes},
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
