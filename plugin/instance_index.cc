#include "plugin/instance_index.h"

std::string KeyText(NKVXHMZ20::ICIMInstance& instance, const KeyProperties& properties) {
  std::string text;
  for (const char* property : {properties.first, properties.second}) {
    if (property != nullptr) text += instance.GetProperty(property)->GetValue().ToString();
  }
  return text;
}

const Instances& InstanceIndex::Collected() {
  if (!collected_) {
    cim_namespace_.GetClass(class_name_)
        ->EnumerateInstances(
            NKVXHMZ20::TAddToVectorCallback<NKVXHMZ20::ICIMInstance>(&collected_.emplace()));
  }
  return *collected_;
}

const Instances& InstanceIndex::All(const std::string& text) {
  if (!by_text_) {
    const Instances& instances = Collected();
    by_text_.emplace();
    for (const auto& instance : instances) {
      (*by_text_)[KeyText(*instance, properties_)].push_back(instance);
    }
  }
  static const Instances none;
  const auto found = by_text_->find(text);
  return found == by_text_->end() ? none : found->second;
}

NKVXHMZ20::ICIMInstance* InstanceIndex::First(const std::string& text) {
  const Instances& instances = All(text);
  return instances.empty() ? nullptr : instances.front().get();
}
