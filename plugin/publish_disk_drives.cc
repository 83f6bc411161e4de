#include "model/kraid_physical_device.h"
#include "plugin/instance_identifiers.h"
#include "plugin/publishers.h"

namespace {

using NKVXHMZ20::TCIMValue;
using P = KRaidPhysicalDevice;

TCIMValue OtherIdentifyingInfo(const Child<P>& child) {
  // Channel and SCSI ID as they are printed, not as numbers.
  return StringArray({child.record.GetDeviceType(), "Channel:" + child.record.GetChannelNum() +
                                                        "|SCSI ID:" + child.record.GetScsiID()});
}

TCIMValue DeviceId(const Child<P>& child) {
  return DeviceIdentifier(child.controller, child.record);
}

constexpr PropertyRow<Child<P>> kRows[] = {
    {"OtherIdentifyingInfo", OtherIdentifyingInfo},
    {"DeviceID", DeviceId},
    {"SystemCreationClassName", SystemClass},
    // The lower-case n is how the class spells this property.
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

void PublishDiskDrives(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetPhysicalDevices, kRows);
}
