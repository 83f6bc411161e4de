#include "plugin/instance_index.h"

Instances CommittedInstances(const PublishContext& context, const char* class_name) {
  Instances instances;
  context.cim_namespace->GetClass(class_name)
      ->EnumerateInstances(NKVXHMZ20::TAddToVectorCallback<NKVXHMZ20::ICIMInstance>(&instances));
  return instances;
}

std::string TextOf(NKVXHMZ20::ICIMInstance& instance,
                   std::initializer_list<const char*> properties) {
  std::string text;
  for (const char* property : properties) {
    text += instance.GetProperty(property)->GetValue().ToString();
  }
  return text;
}

InstanceIndex::InstanceIndex(const PublishContext& context, const char* class_name,
                             std::initializer_list<const char*> properties) {
  for (const auto& instance : CommittedInstances(context, class_name)) {
    by_text_[TextOf(*instance, properties)].push_back(instance);
  }
}

const Instances& InstanceIndex::All(const std::string& text) const {
  static const Instances none;
  const auto found = by_text_.find(text);
  return found == by_text_.end() ? none : found->second;
}

NKVXHMZ20::ICIMInstance* InstanceIndex::First(const std::string& text) const {
  const Instances& instances = All(text);
  return instances.empty() ? nullptr : instances.front().get();
}
