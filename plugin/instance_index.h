#ifndef PLUGIN_INSTANCE_INDEX_H_
#define PLUGIN_INSTANCE_INDEX_H_

#include <boost/shared_ptr.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "hmz/cim_object_model.h"
#include "plugin/publish.h"

/// The committed instances of a class, by the text of one of their properties: where associations
/// find their ends. Each instance is read once, so that looking up costs no walk.
class InstanceIndex {
 public:
  using Instances = std::vector<boost::shared_ptr<NKVXHMZ20::ICIMInstance>>;

  InstanceIndex(const PublishContext& context, const char* class_name, const char* property);

  /// The instances whose property has this text, in the order of the enumeration.
  const Instances& All(const std::string& text) const;
  /// The first of them, null when there is none.
  NKVXHMZ20::ICIMInstance* First(const std::string& text) const;

 private:
  std::unordered_map<std::string, Instances> by_text_;
};

#endif  // PLUGIN_INSTANCE_INDEX_H_
