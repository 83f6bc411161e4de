#include "plugin/dispatch.h"

#include "plugin/associations.h"
#include "plugin/publishers.h"

namespace {

/// Known on purpose to publish nothing: hosts ask for these classes and expect no instance.
void PublishNothing(const PublishContext& /*context*/) {}

template <const Association& kRow>
void Associate(const PublishContext& context) {
  PublishAssociations(context, kRow);
}

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
    {"KVXSG_krProtocolControllerForUnit", Associate<kControllerForUnit>},
    {"KVXSG_krProtocolControllerForPhysicalDisk", Associate<kControllerForPhysicalDisk>},
    {"KVXSG_krDriveInDiskGroup", PublishNothing},
    {"KVXSG_krExtenInDiskGroup", PublishNothing},
    {"KVXSG_krStripeOrderForController", Associate<kStripeOrderForController>},
    {"KVXSG_krFirmwareOnController", Associate<kFirmwareOnController>},
    {"KVXSG_krBootBlockOnController", Associate<kBootBlockOnController>},
    {"KVXSG_krFirmwareOnDiskDrive", Associate<kFirmwareOnDiskDrive>},
    {"KVXSG_krBiosOnController", Associate<kBiosOnController>},
    {"KVXSG_ElementKrScsiDeviceData", Associate<kElementDeviceData>},
    {"KVXSG_ElementBadStripeData", Associate<kElementBadStripes>},
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
