// Firmware, boot block and BIOS levels.

#include <cstdint>

#include "model/kraid_physical_device.h"
#include "model/text.h"
#include "plugin/instance_identifiers.h"
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
