// The associations of a controller with all that the tools report below it.

#include "plugin/instance_index.h"
#include "plugin/publishers.h"

namespace {

using NKVXHMZ20::TCIMValue;

// The controller's number alone ties a part to its controller. Of several controller instances
// with the same number the first counts; of the parts each one, duplicates included.
void PublishControllerParts(const PublishContext& context, const char* part_class) {
  const InstanceIndex controllers(context, "KVXSG_krSCSIProtocolController", {"ControllerNum"});
  const InstanceIndex parts(context, part_class, {"ControllerNum"});
  for (const KRaidController* controller : context.collector.GetControllers()) {
    const std::string number = controller->GetControllerNum();
    NKVXHMZ20::ICIMInstance* antecedent = controllers.First(number);
    if (antecedent == nullptr) continue;
    const TCIMValue antecedent_path(antecedent->GetReference());
    for (const auto& dependent : parts.All(number)) {
      const auto association = context.cim_class->CreateInstance({});
      association->SetPropertyValue("Dependent", dependent->GetReference(), {});
      association->SetPropertyValue("Antecedent", antecedent_path, {});
      association->Commit({});
    }
  }
}

}  // namespace

void PublishControllerForUnit(const PublishContext& context) {
  PublishControllerParts(context, "KVXSG_krLogicalDisk");
}

void PublishControllerForPhysicalDisk(const PublishContext& context) {
  PublishControllerParts(context, "KVXSG_krDiskDrive");
}

void PublishStripeOrderForController(const PublishContext& context) {
  PublishControllerParts(context, "KVXSG_krDiskGroup");
}
