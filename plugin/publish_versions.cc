// Firmware, boot block and BIOS levels, and where they run.

#include <cstdint>

#include "model/kraid_physical_device.h"
#include "model/text.h"
#include "plugin/instance_identifiers.h"
#include "plugin/instance_index.h"
#include "plugin/publishers.h"

namespace {

using NKVXHMZ20::TCIMValue;

struct Version {
  std::string name;
  std::string version;
  std::string element_id;
};

template <std::string Version::*kField>
TCIMValue Field(const Version& version) {
  return version.*kField;
}

template <std::uint16_t kNumber>
TCIMValue Number(const Version& /*version*/) {
  return TCIMValue(kNumber);
}

// The same for all kinds of software.
constexpr PropertyRow<Version> kRows[] = {
    {"Name", Field<&Version::name>},       {"Version", Field<&Version::version>},
    {"SoftwareElementState", Number<3>},   {"SoftwareElementID", Field<&Version::element_id>},
    {"TargetOperatingSystem", Number<66>},
};

void PublishControllerVersions(const PublishContext& context,
                               std::string (KRaidController::*version)() const,
                               std::string (*name)(const KRaidController&)) {
  for (const KRaidController* controller : context.collector.GetControllers()) {
    const std::string text = (controller->*version)();
    if (text.empty()) continue;
    PublishInstance(*context.cim_class, kRows,
                    Version{name(*controller), text, controller->GetControllerNum()});
  }
}

/// What firmware of this type of device is called; null for types that have none.
const char* FirmwareName(const std::string& device_type) {
  static constexpr struct {
    const char* words;
    const char* name;
  } kNames[] = {
      {"Hard", "KelvaRAID Disk"},
      {"Unknown", "Unknown "},  // with a blank at its end, which is meant
      {"Enclosure", "Enclosure"},
  };
  for (const auto& row : kNames) {
    if (Contains(device_type, row.words)) return row.name;
  }
  return nullptr;
}

/// The types whose firmware is tied to its device.
bool IsAssociated(const std::string& device_type) {
  return ContainsAny(device_type,
                     {"Hard disk", "Hard drive", "Processor device", "Enclosure", "Unknown"});
}

/// Associates the first instances with these texts; without one of them nothing is committed.
void PublishRunsOn(const PublishContext& context, const InstanceIndex& dependents,
                   const std::string& dependent_key, const InstanceIndex& antecedents,
                   const std::string& antecedent_key) {
  // Created before the ends are known, on purpose: hosts see it made and dropped.
  const auto association = context.cim_class->CreateInstance({});
  NKVXHMZ20::ICIMInstance* dependent = dependents.First(dependent_key);
  NKVXHMZ20::ICIMInstance* antecedent = antecedents.First(antecedent_key);
  if (dependent == nullptr || antecedent == nullptr) return;
  association->SetPropertyValue("Dependent", dependent->GetReference(), {});
  association->SetPropertyValue("Antecedent", antecedent->GetReference(), {});
  association->Commit({});
}

void PublishRunsOnControllers(const PublishContext& context, const char* version_class,
                              const char* key_property,
                              std::string (*key)(const KRaidController&)) {
  const InstanceIndex controllers(context, "KVXSG_krSCSIProtocolController", {"ControllerNum"});
  const InstanceIndex versions(context, version_class, {key_property});
  for (const KRaidController* controller : context.collector.GetControllers()) {
    PublishRunsOn(context, controllers, controller->GetControllerNum(), versions, key(*controller));
  }
}

std::string NumberOf(const KRaidController& controller) { return controller.GetControllerNum(); }

}  // namespace

void PublishFirmwareVersions(const PublishContext& context) {
  PublishControllerVersions(context, &KRaidController::GetControllerFirmwareVersion,
                            [](const auto&) { return std::string("KelvaRAID Firmware"); });
}

void PublishBootBlockVersions(const PublishContext& context) {
  PublishControllerVersions(context, &KRaidController::GetControllerBootBlockVersion,
                            [](const auto&) { return std::string("KelvaRAID Boot Block"); });
}

void PublishBiosVersions(const PublishContext& context) {
  PublishControllerVersions(context, &KRaidController::GetControllerActualBiosVersion, BiosName);
}

void PublishDiskDriveVersions(const PublishContext& context) {
  for (const KRaidController* controller : context.collector.GetControllers()) {
    for (const KRaidPhysicalDevice* device : controller->GetPhysicalDevices()) {
      const char* name = FirmwareName(device->GetDeviceType());
      const std::string version = device->GetFirmwareVer();
      if (name == nullptr || version.empty()) continue;
      PublishInstance(*context.cim_class, kRows,
                      Version{name, version, DeviceFirmwareIdentifier(*controller, *device)});
    }
  }
}

void PublishFirmwareOnController(const PublishContext& context) {
  PublishRunsOnControllers(context, "KVXSG_krFirmwareVersion", "SoftwareElementID", NumberOf);
}

void PublishBootBlockOnController(const PublishContext& context) {
  PublishRunsOnControllers(context, "KVXSG_krBootBlockVersion", "SoftwareElementID", NumberOf);
}

void PublishBiosOnController(const PublishContext& context) {
  // By its name, unlike the two others.
  PublishRunsOnControllers(context, "KVXSG_krBiosVersion", "Name", BiosName);
}

void PublishFirmwareOnDiskDrive(const PublishContext& context) {
  const InstanceIndex drives(context, "KVXSG_krDiskDrive", {"DeviceID"});
  const InstanceIndex versions(context, "KVXSG_krDiskDriveVersion", {"SoftwareElementID"});
  for (const KRaidController* controller : context.collector.GetControllers()) {
    for (const KRaidPhysicalDevice* device : controller->GetPhysicalDevices()) {
      if (!IsAssociated(device->GetDeviceType())) continue;
      PublishRunsOn(context, drives, DeviceIdentifier(*controller, *device), versions,
                    DeviceFirmwareIdentifier(*controller, *device));
    }
  }
}
