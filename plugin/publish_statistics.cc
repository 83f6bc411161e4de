// Bad stripes, counters and transfer statistics, and the disks that they tell of.

#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_physical_device.h"
#include "model/kraid_sub_stat_data.h"
#include "model/record_identifiers.h"
#include "model/text.h"
#include "plugin/instance_identifiers.h"
#include "plugin/instance_index.h"
#include "plugin/publishers.h"

namespace {

using NKVXHMZ20::TCIMValue;
using B = KRaidBstData;
using E = KRaidEventData;
using S = KRaidSubStatData;

TCIMValue BadStripeId(const Child<B>& child) {
  return BadStripeIdentifier(child.controller, child.record);
}

constexpr PropertyRow<Child<B>> kBadStripeRows[] = {
    {"InstanceID", BadStripeId},
    {"ControllerNum", OfRecord<&B::GetControllerNum>},
    {"LogicalDrive", OfRecord<&B::GetLogicalDriveNum>},
    {"NumBadStripes", OfRecord<&B::GetBadStripeNum>},
};

TCIMValue DeviceDataId(const Child<E>& child) {
  return StatisticsIdentifier(child.controller.GetControllerNum(), child.record.GetChannelValue(),
                              child.record.GetScsiIDValue());
}

constexpr PropertyRow<Child<E>> kDeviceDataRows[] = {
    {"InstanceID", DeviceDataId},
    {"StatisticTime", OfRecord<&E::GetStatisticTimeValue>},
    {"ControllerNum", OfRecord<&E::GetControllerNum>},
    {"Channel", OfRecord<&E::GetChannelValue>},
    {"Misc", OfRecord<&E::GetMiscValue>},
    {"NumHardErrors", OfRecord<&E::GetHardValue>},
    {"NumParityErrors", OfRecord<&E::GetParityValue>},
    {"NumSoftErrors", OfRecord<&E::GetSoftValue>},
    {"PFA", OfRecord<&E::GetPFAValue>},
    {"ScsiId", OfRecord<&E::GetScsiIDValue>},
};

constexpr PropertyRow<Child<S>> kSubStatRows[] = {
    {"ControllerNum", OfRecord<&S::GetControllerNum>},
    {"StatisticTime", OfRecord<&S::GetStatisticTimeValue>},
    {"Channel", OfRecord<&S::GetChannelValue>},
    {"ScsiId", OfRecord<&S::GetScsiIDValue>},
    {"InstanceID", OfRecord<&S::GetInstanceIDValue>},
    {"Params", OfRecord<&S::GetParamsValue>},
    {"Req_Off", OfRecord<&S::GetReq_OffValue>},
    {"Max_Txer_P", OfRecord<&S::GetMax_Txer_PValue>},
    // The lower-case p is how the class spells this property.
    {"Cur_Txer_p", OfRecord<&S::GetCur_Txer_PValue>},
};

/// The types of devices whose statistics are tied to them.
bool HasStatistics(const std::string& device_type) {
  return ContainsAny(device_type, {"Hard disk", "Hard drive", "Processor device", "Tape"});
}

void PublishStatisticsOf(const PublishContext& context, NKVXHMZ20::ICIMInstance& statistics,
                         const TCIMValue& element_path) {
  const auto association = context.cim_class->CreateInstance({});
  association->SetPropertyValue("Stats", statistics.GetReference(), {});
  association->SetPropertyValue("ManagedElement", element_path, {});
  association->Commit({});
}

}  // namespace

void PublishBadStripes(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetBstData, kBadStripeRows);
}

void PublishDeviceData(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetEventData, kDeviceDataRows);
}

void PublishSubStatData(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetSubStatData, kSubStatRows);
}

// Both texts are compared as they are. A device's SCSI ID has the blank before and the line end
// behind it in the tool's output, that of the statistics has not: only devices without one meet.
void PublishElementDeviceData(const PublishContext& context) {
  const InstanceIndex drives(context, "KVXSG_krDiskDrive", {"DeviceID"});
  const InstanceIndex statistics(context, "KVXSG_krSCSIDeviceData", {"InstanceID"});
  for (const KRaidController* controller : context.collector.GetControllers()) {
    for (const KRaidPhysicalDevice* device : controller->GetPhysicalDevices()) {
      if (!HasStatistics(device->GetDeviceType())) continue;
      NKVXHMZ20::ICIMInstance* drive = drives.First(DeviceIdentifier(*controller, *device));
      if (drive == nullptr) continue;
      const TCIMValue drive_path(drive->GetReference());
      for (const auto& found : statistics.All(StatisticsIdentifier(
               controller->GetControllerNum(), device->GetChannelNum(), device->GetScsiID()))) {
        PublishStatisticsOf(context, *found, drive_path);
      }
    }
  }
}

// Of the published instances alone. The numbers run together in the key: disk 12 of controller 1
// meets the bad stripes of disk 2 of controller 11.
void PublishElementBadStripes(const PublishContext& context) {
  const InstanceIndex bad_stripes(context, "KVXSG_BadStripeData",
                                  {"ControllerNum", "LogicalDrive"});
  for (const auto& disk : CommittedInstances(context, "KVXSG_krLogicalDisk")) {
    const TCIMValue disk_path(disk->GetReference());
    for (const auto& found : bad_stripes.All(TextOf(*disk, {"ControllerNum", "LogicalDriveNum"}))) {
      PublishStatisticsOf(context, *found, disk_path);
    }
  }
}
