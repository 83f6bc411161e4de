#ifndef PLUGIN_INSTANCE_INDEX_H_
#define PLUGIN_INSTANCE_INDEX_H_

#include <boost/shared_ptr.hpp>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "hmz/cim_object_model.h"
#include "plugin/publish.h"

using Instances = std::vector<boost::shared_ptr<NKVXHMZ20::ICIMInstance>>;

/// The properties whose texts, one directly behind the other, tell instances of a class apart.
struct KeyProperties {
  const char* first;
  const char* second = nullptr;
};

/// The instance's text of these properties.
std::string KeyText(NKVXHMZ20::ICIMInstance& instance, const KeyProperties& properties);

/// The committed instances of a class, by the text of some of their properties: where associations
/// find their ends. Each instance is read once, so that looking up costs no walk. The host is asked
/// for nothing before it is needed, as hosts see what is asked.
class InstanceIndex {
 public:
  InstanceIndex(const PublishContext& context, const char* class_name, KeyProperties properties)
      : cim_namespace_(*context.cim_namespace), class_name_(class_name), properties_(properties) {}

  /// All instances, in the order of the enumeration: those that are committed at the first call.
  const Instances& Collected();

  /// Those with this text, in the same order; collects and reads all when it is the first question.
  const Instances& All(const std::string& text);
  /// The first of them, null when there is none.
  NKVXHMZ20::ICIMInstance* First(const std::string& text);

 private:
  NKVXHMZ20::ICIMNamespace& cim_namespace_;
  const char* class_name_;
  KeyProperties properties_;
  std::optional<Instances> collected_;
  std::optional<std::unordered_map<std::string, Instances>> by_text_;
};

#endif  // PLUGIN_INSTANCE_INDEX_H_
