#include "standin/schema.h"

namespace standin {
namespace {

using Name = std::string_view;

constexpr Name kRawData[] = {"Command"};
// "CreationClassname", with its lower-case n, is how the device classes spell this key.
constexpr Name kDevice[] = {"SystemCreationClassName", "SystemName", "CreationClassname",
                            "DeviceID"};
constexpr Name kCollection[] = {"CollectionID"};
constexpr Name kStatistics[] = {"InstanceID"};
constexpr Name kEventLog[] = {"LogCreationClassName", "LogName", "CreationClassName", "RecordID",
                              "ControllerNum"};
constexpr Name kDddLog[] = {"LogCreationClassName", "LogName", "CreationClassName", "RecordID",
                            "Controller"};
// The manager numbers no entry: nothing short of the whole entry tells one from another.
constexpr Name kManagerLog[] = {"LogCreationClassName", "LogName",  "CreationClassName", "RecordID",
                                "MessageTimestamp",     "Severity", "MachineName",       "Message"};
constexpr Name kVersion[] = {"Name", "Version", "SoftwareElementState", "SoftwareElementID",
                             "TargetOperatingSystem"};
constexpr Name kStatisticsOf[] = {"Stats", "ManagedElement"};
constexpr Name kDependency[] = {"Dependent", "Antecedent"};

constexpr SchemaClass kClasses[] = {
    {"KVXSG_krRawData", kRawData},
    {"KVXSG_krSCSIProtocolController", kDevice},
    {"KVXSG_krLogicalDisk", kDevice},
    {"KVXSG_krDiskGroup", kCollection},
    {"KVXSG_krDiskDrive", kDevice},
    {"KVXSG_DiskGroup", kCollection},
    {"KVXSG_BadStripeData", kStatistics},
    {"KVXSG_krSCSIDeviceData", kStatistics},
    {"KVXSG_krSCSISubStatData", kStatistics},
    {"KVXSG_LogRecord_SoftEvent", kEventLog},
    {"KVXSG_LogRecord_krDDD", kDddLog},
    {"KVXSG_LogRecord_HardEvent", kEventLog},
    {"KVXSG_LogRecord_RAIDMgrEvent", kManagerLog},
    {"KVXSG_krFirmwareVersion", kVersion},
    {"KVXSG_krBootBlockVersion", kVersion},
    {"KVXSG_krDiskDriveVersion", kVersion},
    {"KVXSG_krBiosVersion", kVersion},
    {"KVXSG_krProtocolControllerForUnit", kDependency},
    {"KVXSG_krProtocolControllerForPhysicalDisk", kDependency},
    {"KVXSG_krDriveInDiskGroup", kDependency},
    {"KVXSG_krExtenInDiskGroup", kDependency},
    {"KVXSG_krStripeOrderForController", kDependency},
    {"KVXSG_krFirmwareOnController", kDependency},
    {"KVXSG_krBootBlockOnController", kDependency},
    {"KVXSG_krFirmwareOnDiskDrive", kDependency},
    {"KVXSG_krBiosOnController", kDependency},
    {"KVXSG_ElementKrScsiDeviceData", kStatisticsOf},
    {"KVXSG_ElementBadStripeData", kStatisticsOf},
};

}  // namespace

std::span<const SchemaClass> Schema() { return kClasses; }

}  // namespace standin
