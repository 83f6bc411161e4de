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
    {"KVXSG_krRawData", kRawData, "What one tool run or the manager's log said, line by line"},
    {"KVXSG_krSCSIProtocolController", kDevice,
     "A RAID controller: its type, settings, battery and latest operation"},
    {"KVXSG_krLogicalDisk", kDevice,
     "A logical drive of a controller: its RAID level, size and caches"},
    {"KVXSG_krDiskGroup", kCollection,
     "An array of drives and the order in which it is striped over them"},
    {"KVXSG_krDiskDrive", kDevice,
     "A device on a controller's channel: a disk, a tape, an enclosure"},
    {"KVXSG_DiskGroup", kCollection,
     "A disk group apart from the arrays; nothing is published today"},
    {"KVXSG_BadStripeData", kStatistics, "How many bad stripes a logical drive has"},
    {"KVXSG_krSCSIDeviceData", kStatistics,
     "How often errors and other events happened at a device"},
    {"KVXSG_krSCSISubStatData", kStatistics,
     "How a device transfers: parameters, offset and transfer periods"},
    {"KVXSG_LogRecord_SoftEvent", kEventLog, "A controller's log of soft events, as event words"},
    {"KVXSG_LogRecord_krDDD", kDddLog, "An entry of a controller's log of defunct drives"},
    {"KVXSG_LogRecord_HardEvent", kEventLog, "A controller's log of hard events, as event words"},
    {"KVXSG_LogRecord_RAIDMgrEvent", kManagerLog, "An entry of the RAID manager's event log"},
    {"KVXSG_krFirmwareVersion", kVersion, "The firmware level of a controller"},
    {"KVXSG_krBootBlockVersion", kVersion, "The boot block level of a controller"},
    {"KVXSG_krDiskDriveVersion", kVersion,
     "The firmware level of a drive, an enclosure or an unknown device"},
    {"KVXSG_krBiosVersion", kVersion, "The BIOS level of a controller"},
    {"KVXSG_krProtocolControllerForUnit", kDependency,
     "Which controller a logical drive belongs to", true},
    {"KVXSG_krProtocolControllerForPhysicalDisk", kDependency,
     "Which controller a device is attached to", true},
    {"KVXSG_krDriveInDiskGroup", kDependency,
     "Which drives make up a disk group; nothing is published today", true},
    {"KVXSG_krExtenInDiskGroup", kDependency,
     "Which disk group a logical drive lies on; nothing is published today", true},
    {"KVXSG_krStripeOrderForController", kDependency, "Which controller an array belongs to", true},
    {"KVXSG_krFirmwareOnController", kDependency, "Which firmware runs on a controller", true},
    {"KVXSG_krBootBlockOnController", kDependency, "Which boot block a controller has", true},
    {"KVXSG_krFirmwareOnDiskDrive", kDependency, "Which firmware runs on a drive or another device",
     true},
    {"KVXSG_krBiosOnController", kDependency, "Which BIOS a controller has", true},
    {"KVXSG_ElementKrScsiDeviceData", kStatisticsOf, "Which device event counters belong to", true},
    {"KVXSG_ElementBadStripeData", kStatisticsOf,
     "Which logical drive a count of bad stripes belongs to", true},
};

}  // namespace

std::span<const SchemaClass> Schema() { return kClasses; }

}  // namespace standin
