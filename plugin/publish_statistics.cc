// Bad stripes, error counters and transfer statistics.

#include "model/kraid_bst_data.h"
#include "model/kraid_event_data.h"
#include "model/kraid_sub_stat_data.h"
#include "model/record_identifiers.h"
#include "plugin/instance_identifiers.h"
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
