// Logical disks, the groups of drives behind them, and the drives.

#include "model/array_stripe_order.h"
#include "model/kraid_logical_device.h"
#include "model/kraid_physical_device.h"
#include "plugin/instance_identifiers.h"
#include "plugin/publishers.h"

namespace {

using NKVXHMZ20::TCIMValue;
using L = KRaidLogicalDevice;
using A = ArrayStripeOrder;
using P = KRaidPhysicalDevice;

TCIMValue DiskId(const Child<L>& child) {
  return LogicalDiskIdentifier(child.controller, child.record);
}

constexpr PropertyRow<Child<L>> kLogicalDiskRows[] = {
    {"DeviceID", DiskId},
    {"SystemCreationClassName", SystemClass},
    // The lower-case n is how the class spells this property.
    {"CreationClassname", Fixed<"KVXSG_krLogicalDisk">},
    {"SystemName", SystemName},
    {"AccessBlocked", OfRecord<&L::GetAccessBlocked>},
    {"ControllerNum", OwnersNumber},
    {"LogicalDriveNum", OfRecord<&L::GetLogicalDriveNum>},
    {"LogicalDriveStatus", OfRecord<&L::GetStatusOfLogicalDrive>},
    {"NumOfChunks", OfRecord<&L::GetNumberOfChunks>},
    {"PartOfArray", OfRecord<&L::GetPartOfArray>},
    {"PartOfMergeGroup", OfRecord<&L::GetPartOfMergeGroup>},
    {"RaidLevel", OfRecord<&L::GetRaidLevel>},
    {"Size", OfRecord<&L::GetSize>},
    {"StripeUnitSize", OfRecord<&L::GetStripeUnitSize>},
    {"WriteCacheStatus", OfRecord<&L::GetWriteCacheStatus>},
    {"WriteCacheSetting", OfRecord<&L::GetWriteCacheSetting>},
    // Set a second time, on purpose: hosts see two settings of the same value.
    {"NumOfChunks", OfRecord<&L::GetNumberOfChunks>},
    {"LogicalDriveName", OfRecord<&L::GetLogicalDriveName>},
    {"ReadCacheStatus", OfRecord<&L::GetReadCacheStatus>},
    {"DriveList", OfRecord<&L::GetLogicalDriveList>},
};

// Disk groups carry no system keys.
constexpr PropertyRow<Child<A>> kDiskGroupRows[] = {
    {"CollectionID", OfRecord<&A::GetCollectionID>},
    {"Array", OfRecord<&A::GetArrayData>},
    {"ControllerNum", OfRecord<&A::GetControllerNum>},
    {"StripeOrder", OfRecord<&A::GetStripeOrder>},
};

TCIMValue DriveIdentifyingInfo(const Child<P>& child) {
  // Channel and SCSI ID as they are printed, not as numbers.
  return StringArray({child.record.GetDeviceType(), "Channel:" + child.record.GetChannelNum() +
                                                        "|SCSI ID:" + child.record.GetScsiID()});
}

TCIMValue DriveId(const Child<P>& child) {
  return DeviceIdentifier(child.controller, child.record);
}

constexpr PropertyRow<Child<P>> kDiskDriveRows[] = {
    {"OtherIdentifyingInfo", DriveIdentifyingInfo},
    {"DeviceID", DriveId},
    {"SystemCreationClassName", SystemClass},
    {"CreationClassname", Fixed<"KVXSG_krDiskDrive">},
    {"SystemName", SystemName},
    {"ControllerNum", OfRecord<&P::GetControllerNum>},
    {"Channel", OfRecord<&P::GetChannelNum>},
    {"ScsiId", OfRecord<&P::GetScsiID>},
    {"DeviceType", OfRecord<&P::GetDeviceType>},
    {"PFA", OfRecord<&P::GetPfa>},
    {"State", OfRecord<&P::GetState>},
    {"Size", OfRecord<&P::GetSize>},
    {"DeviceCode", OfRecord<&P::GetDeviceCode>},
    {"DeviceSerialNum", OfRecord<&P::GetDeviceSerialNum>},
    {"FRU", OfRecord<&P::GetFru>},
    {"Firmware", OfRecord<&P::GetFirmwareVer>},
    {"Vendor", OfRecord<&P::GetVendor>},
    {"Model", OfRecord<&P::GetModel>},
    {"Enclosure", OfRecord<&P::GetEnclosure>},
    {"TransferSpeed", OfRecord<&P::GetTransferSpeed>},
    {"ReportedChannel", OfRecord<&P::GetReportedChannel>},
    {"WorldWideName", OfRecord<&P::GetWorldWideName>},
    {"WriteCache", OfRecord<&P::GetWriteCache>},
};

}  // namespace

void PublishLogicalDisks(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetLogicalDevices, kLogicalDiskRows);
}

void PublishDiskGroups(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetArrayStripeOrder, kDiskGroupRows);
}

void PublishDiskDrives(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetPhysicalDevices, kDiskDriveRows);
}
