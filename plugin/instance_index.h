#ifndef PLUGIN_INSTANCE_INDEX_H_
#define PLUGIN_INSTANCE_INDEX_H_

#include <boost/shared_ptr.hpp>
#include <initializer_list>
#include <string>
#include <unordered_map>
#include <vector>

#include "hmz/cim_object_model.h"
#include "plugin/publish.h"

using Instances = std::vector<boost::shared_ptr<NKVXHMZ20::ICIMInstance>>;

/// The committed instances of a class, in the order of the enumeration.
Instances CommittedInstances(const PublishContext& context, const char* class_name);

/// The texts of these properties of an instance, one directly behind the other.
std::string TextOf(NKVXHMZ20::ICIMInstance& instance,
                   std::initializer_list<const char*> properties);

/// The committed instances of a class, by the text of some of their properties: where associations
/// find their ends. Each instance is read once, so that looking up costs no walk.
class InstanceIndex {
 public:
  InstanceIndex(const PublishContext& context, const char* class_name,
                std::initializer_list<const char*> properties);

  /// The instances with this text, in the order of the enumeration.
  const Instances& All(const std::string& text) const;
  /// The first of them, null when there is none.
  NKVXHMZ20::ICIMInstance* First(const std::string& text) const;

 private:
  std::unordered_map<std::string, Instances> by_text_;
};

#endif  // PLUGIN_INSTANCE_INDEX_H_
