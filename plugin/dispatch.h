#ifndef PLUGIN_DISPATCH_H_
#define PLUGIN_DISPATCH_H_

#include <span>
#include <string>

#include "plugin/publish.h"

/// A class that the plug-in knows and what fills it.
struct DispatchEntry {
  const char* class_name;
  void (*publish)(const PublishContext&);
};

/// The known classes, in the order in which names are looked up.
std::span<const DispatchEntry> DispatchList();

/// Publishes the instances of the class of that name, compared exactly. Other names are passed
/// over.
void Publish(const std::string& class_name, const PublishContext& context);

#endif  // PLUGIN_DISPATCH_H_
