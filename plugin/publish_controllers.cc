#include "hmz/exception.h"
#include "model/record_identifiers.h"
#include "plugin/publishers.h"

namespace {

using NKVXHMZ20::TCIMValue;
using K = KRaidController;

TCIMValue DeviceId(const K& controller) {
  return ControllerIdentifier(controller.GetControllerNum());
}

TCIMValue OtherIdentifyingInfo(const K& controller) {
  return StringArray(
      {controller.GetControllerType(), " Controller:" + controller.GetControllerNum()});
}

constexpr PropertyRow<K> kRows[] = {
    {"SystemCreationClassName", SystemClass},
    // The lower-case n is how the class spells this property.
    {"CreationClassname", Fixed<"KVXSG_krSCSIProtocolController">},
    {"SystemName", SystemName},
    {"DeviceID", DeviceId},
    {"OtherIdentifyingInfo", OtherIdentifyingInfo},
    {"ControllerNum", Value<&K::GetControllerNum>},
    {"ControllerType", Value<&K::GetControllerType>},
    {"ControllerStatus", Value<&K::GetControllerStatus>},
    {"ChannelDescription", Value<&K::GetControllerChannelDescription>},
    {"ControllerFRU", Value<&K::GetControllerFRU>},
    {"SerialNum", Value<&K::GetcontrollerSerialNumber>},
    {"PartNum", Value<&K::GetControllerPartNumber>},
    {"DeviceDriverVersion", Value<&K::GetControllerDeviceDriverVersion>},
    {"ClusterSolutionVersion", Value<&K::GetClusterSolutionVersion>},
    {"CopyBackEnabled", Value<&K::GetControllerCopybackEnabled>},
    {"ControllerSlotInfo", Value<&K::GetControllerSlotInformation>},
    {"ControllerName", Value<&K::GetControllerName>},
    {"ScsiChannelDescr", Value<&K::GetControllerSCSIChannelDescription>},
    {"InitiatorChannelScsiId", Value<&K::GetControllerInitiatorsIDs>},
    {"MaxPhysicalDevices", Value<&K::GetControllerMaximumPhysicalDevices>},
    {"DefunctDiskDriveCnt", Value<&K::GetControllerDefuncDiskDriveCount>},
    {"LogicalDriveStatusCnt", Value<&K::GetControllerLogicalDrives>},
    {"ReadAhead", Value<&K::GetControllerReadaheadCacheSetting>},
    {"StripeUnitSize", Value<&K::GetControllerStripeUnitSize>},
    {"RebuildRate", Value<&K::GetControllerRebuildRate>},
    {"HotSwapRebuild", Value<&K::GetControllerHotSwapRebuild>},
    {"DataScrubbing", Value<&K::GetControllerDataScrubbing>},
    {"HotSpareCopyBack", Value<&K::GetHotSpareCopyBack>},
    {"PartOfCluster", Value<&K::GetControllerPartOfCluster>},
    {"UnattendedMode", Value<&K::GetControllerUnattendedMode>},
    {"ConcurrentCommandsSupported", Value<&K::GetControllerConcurrentCommandsSupported>},
    {"ConfigurationUpdateCount", Value<&K::GetControllerConfigurationUpdateCount>},
    {"Current_MostRecentOperation", Value<&K::GetControllerCurrentMostRecentOperation>},
    {"Logical_Drive", Value<&K::GetControllerLogicalDrive>},
    {"BackgroundOperationActive", Value<&K::GetControllerBackgroundOperationActive>},
    {"LastCmdStatus", Value<&K::GetControllerLastCommandStatus>},
    {"LogicalDriveSizeInStripes", Value<&K::GetControllerLogicalDriveSizeInStripes>},
    {"NumberOfRemainingStripes", Value<&K::GetControllerNumberOfRemainingStripes>},
    {"VPD", Value<&K::GetControllerVPD>},
    {"ECVersion", Value<&K::GetControllerECVersion>},
    // Set a second time, on purpose: hosts see two settings of the same value.
    {"ControllerFRU", Value<&K::GetControllerFRU>},
    {"ControllerBatteryStatus", Value<&K::GetBatteryStatus>},
    {"ControllerBatteryOverTemp", Value<&K::GetBatteryOverTemp>},
    {"ControllerBatteryCapacity", Value<&K::GetBatteryCapacity>},
    {"ControllerBatteryFRU", Value<&K::GetBatteryFRU>},
    {"BatteryTimeRemaining", Value<&K::GetBatteryTimeRemaining>},
};

}  // namespace

void PublishControllers(const PublishContext& context) {
  std::vector<K*> controllers;
  try {
    controllers = context.collector.GetControllers();
  } catch (const NKVXHMZ20::THMZException&) {
    LogPublishing("GetControllers() Failed: ");
    return;
  }
  for (const K* controller : controllers) PublishInstance(*context.cim_class, kRows, *controller);
}
