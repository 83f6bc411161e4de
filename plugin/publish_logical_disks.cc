#include "model/array_stripe_order.h"
#include "model/kraid_logical_device.h"
#include "plugin/instance_identifiers.h"
#include "plugin/publishers.h"

namespace {

using NKVXHMZ20::TCIMValue;
using L = KRaidLogicalDevice;
using A = ArrayStripeOrder;

TCIMValue DeviceId(const Child<L>& child) {
  return LogicalDiskIdentifier(child.controller, child.record);
}

constexpr PropertyRow<Child<L>> kLogicalDiskRows[] = {
    {"DeviceID", DeviceId},
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

}  // namespace

void PublishLogicalDisks(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetLogicalDevices, kLogicalDiskRows);
}

void PublishDiskGroups(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetArrayStripeOrder, kDiskGroupRows);
}
