#include "plugin/instance_index.h"

InstanceIndex::InstanceIndex(const PublishContext& context, const char* class_name,
                             const char* property) {
  Instances instances;
  context.cim_namespace->GetClass(class_name)
      ->EnumerateInstances(NKVXHMZ20::TAddToVectorCallback<NKVXHMZ20::ICIMInstance>(&instances));
  for (const auto& instance : instances) {
    by_text_[instance->GetProperty(property)->GetValue().ToString()].push_back(instance);
  }
}

const InstanceIndex::Instances& InstanceIndex::All(const std::string& text) const {
  static const Instances kNone;
  const auto found = by_text_.find(text);
  return found == by_text_.end() ? kNone : found->second;
}

NKVXHMZ20::ICIMInstance* InstanceIndex::First(const std::string& text) const {
  const Instances& instances = All(text);
  return instances.empty() ? nullptr : instances.front().get();
}
