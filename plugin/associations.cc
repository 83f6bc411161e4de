#include "plugin/associations.h"

#include <optional>
#include <span>
#include <string_view>

#include "model/kraid_physical_device.h"
#include "model/record_identifiers.h"
#include "model/text.h"
#include "plugin/instance_identifiers.h"
#include "plugin/instance_index.h"

using NKVXHMZ20::ICIMInstance;
using NKVXHMZ20::TCIMValue;

namespace {

/// What ends are searched for: a controller, or one of its devices.
struct Subject {
  const KRaidController& controller;
  const KRaidPhysicalDevice* device = nullptr;
};

using Key = std::string (*)(const Subject&);
using DeviceTypes = std::span<const std::string_view>;

/// One end of an association: the property that refers to it, and the instances that are searched
/// by the text of their properties.
struct End {
  const char* reference;
  const char* class_name;
  KeyProperties properties;
  Key key = nullptr;  // the text, where it comes from a subject
};

enum class Search {
  /// For each subject: the first match of the first end, tied to every match of the second.
  kEveryMatch,
  /// For each instance of the first end's class: tied to every one of the second with its text.
  kEveryInstance,
  /// For each subject: the first match of each end.
  kOneMatch,
};

std::string Number(const Subject& subject) { return subject.controller.GetControllerNum(); }

std::string Bios(const Subject& subject) { return BiosName(subject.controller); }

std::string Drive(const Subject& subject) {
  return DeviceIdentifier(subject.controller, *subject.device);
}

std::string Firmware(const Subject& subject) {
  return DeviceFirmwareIdentifier(subject.controller, *subject.device);
}

// A device's SCSI ID has the blank before and the line end behind it in the tool's output, that of
// the statistics has not: only devices without one meet theirs.
std::string Statistics(const Subject& subject) {
  return StatisticsIdentifier(subject.controller.GetControllerNum(),
                              subject.device->GetChannelNum(), subject.device->GetScsiID());
}

constexpr std::string_view kWithStatistics[] = {"Hard disk", "Hard drive", "Processor device",
                                                "Tape"};
constexpr std::string_view kWithFirmware[] = {"Hard disk", "Hard drive", "Processor device",
                                              "Enclosure", "Unknown"};
constexpr char kController[] = "KVXSG_krSCSIProtocolController";

}  // namespace

struct Association {
  Search search;
  /// Devices whose type has one of these words are the subjects; without words controllers are.
  DeviceTypes device_types;
  /// In the order in which they are searched.
  End first;
  End second;
};

// The controller's number alone ties a part to its controller.
constexpr Association kControllerForUnit = {
    Search::kEveryMatch,
    {},
    {"Antecedent", kController, {"ControllerNum"}, Number},
    {"Dependent", "KVXSG_krLogicalDisk", {"ControllerNum"}, Number},
};
constexpr Association kControllerForPhysicalDisk = {
    Search::kEveryMatch,
    {},
    {"Antecedent", kController, {"ControllerNum"}, Number},
    {"Dependent", "KVXSG_krDiskDrive", {"ControllerNum"}, Number},
};
constexpr Association kStripeOrderForController = {
    Search::kEveryMatch,
    {},
    {"Antecedent", kController, {"ControllerNum"}, Number},
    {"Dependent", "KVXSG_krDiskGroup", {"ControllerNum"}, Number},
};
constexpr Association kFirmwareOnController = {
    Search::kOneMatch,
    {},
    {"Dependent", kController, {"ControllerNum"}, Number},
    {"Antecedent", "KVXSG_krFirmwareVersion", {"SoftwareElementID"}, Number},
};
constexpr Association kBootBlockOnController = {
    Search::kOneMatch,
    {},
    {"Dependent", kController, {"ControllerNum"}, Number},
    {"Antecedent", "KVXSG_krBootBlockVersion", {"SoftwareElementID"}, Number},
};
constexpr Association kFirmwareOnDiskDrive = {
    Search::kOneMatch,
    kWithFirmware,
    {"Dependent", "KVXSG_krDiskDrive", {"DeviceID"}, Drive},
    {"Antecedent", "KVXSG_krDiskDriveVersion", {"SoftwareElementID"}, Firmware},
};
constexpr Association kBiosOnController = {
    Search::kOneMatch,
    {},
    {"Dependent", kController, {"ControllerNum"}, Number},
    {"Antecedent", "KVXSG_krBiosVersion", {"Name"}, Bios},  // by its name, unlike the others
};
constexpr Association kElementDeviceData = {
    Search::kEveryMatch,
    kWithStatistics,
    {"ManagedElement", "KVXSG_krDiskDrive", {"DeviceID"}, Drive},
    {"Stats", "KVXSG_krSCSIDeviceData", {"InstanceID"}, Statistics},
};
// The numbers run together: disk 12 of controller 1 meets the bad stripes of disk 2 of controller
// 11.
constexpr Association kElementBadStripes = {
    Search::kEveryInstance,
    {},
    {"ManagedElement", "KVXSG_krLogicalDisk", {"ControllerNum", "LogicalDriveNum"}},
    {"Stats", "KVXSG_BadStripeData", {"ControllerNum", "LogicalDrive"}},
};

namespace {

template <class Visit>
void ForEachSubject(const PublishContext& context, DeviceTypes types, const Visit& visit) {
  for (const KRaidController* controller : context.collector.GetControllers()) {
    if (types.empty()) {
      visit(Subject{*controller});
      continue;
    }
    for (const KRaidPhysicalDevice* device : controller->GetPhysicalDevices()) {
      if (ContainsAny(device->GetDeviceType(), types)) visit(Subject{*controller, device});
    }
  }
}

/// The path of the first instance with this text.
std::optional<TCIMValue> FirstPath(InstanceIndex& instances, const std::string& text) {
  ICIMInstance* instance = instances.First(text);
  if (instance == nullptr) return std::nullopt;
  return instance->GetReference();
}

void TieEvery(const PublishContext& context, const Association& row, const TCIMValue& first_path,
              const Instances& matches) {
  for (const auto& match : matches) {
    const TCIMValue path(match->GetReference());
    const auto association = context.cim_class->CreateInstance({});
    association->SetPropertyValue(row.second.reference, path, {});
    association->SetPropertyValue(row.first.reference, first_path, {});
    association->Commit({});
  }
}

void TieOne(const PublishContext& context, const Association& row, InstanceIndex& firsts,
            InstanceIndex& seconds, const Subject& subject) {
  // Created before the ends are known, on purpose: hosts see it made and dropped.
  const auto association = context.cim_class->CreateInstance({});
  const auto first_path = FirstPath(firsts, row.first.key(subject));
  const auto second_path = FirstPath(seconds, row.second.key(subject));
  if (!first_path || !second_path) return;
  association->SetPropertyValue(row.first.reference, *first_path, {});
  association->SetPropertyValue(row.second.reference, *second_path, {});
  association->Commit({});
}

}  // namespace

void PublishAssociations(const PublishContext& context, const Association& row) {
  InstanceIndex firsts(context, row.first.class_name, row.first.properties);
  InstanceIndex seconds(context, row.second.class_name, row.second.properties);
  if (row.search == Search::kOneMatch) {
    ForEachSubject(context, row.device_types,
                   [&](const Subject& subject) { TieOne(context, row, firsts, seconds, subject); });
    return;
  }
  // Hosts see both classes enumerated first, even where nothing is searched in them.
  firsts.Collected();
  seconds.Collected();
  if (row.search == Search::kEveryInstance) {
    for (const auto& instance : firsts.Collected()) {
      const std::string text = KeyText(*instance, row.first.properties);
      const TCIMValue path(instance->GetReference());
      TieEvery(context, row, path, seconds.All(text));
    }
    return;
  }
  ForEachSubject(context, row.device_types, [&](const Subject& subject) {
    const auto path = FirstPath(firsts, row.first.key(subject));
    if (path) TieEvery(context, row, *path, seconds.All(row.second.key(subject)));
  });
}
