#ifndef STANDIN_PLUGIN_MANAGER_H_
#define STANDIN_PLUGIN_MANAGER_H_

#include <string>

#include "hmz/api.h"
#include "hmz/plugin_management.h"

namespace standin {

/// A plug-in library in this process, from its loading to its unloading.
class HMZ_API LoadedPlugin {
 public:
  /// Loads the library and takes the one plug-in that it registers.
  /// Throws THMZException when the library cannot be loaded, registers no plug-in (one that is
  /// still loaded registers none a second time), speaks another version of the interface, or
  /// answers no queries.
  explicit LoadedPlugin(const std::string& file);
  /// Lets the plug-in end itself and unloads the library.
  ~LoadedPlugin();
  LoadedPlugin(const LoadedPlugin&) = delete;
  LoadedPlugin& operator=(const LoadedPlugin&) = delete;

  NKVXHMZ20::IPluginCallbacks& GetCallbacks() { return *callbacks_; }
  NKVXHMZ20::IPluginBasicQueryCallbacks& GetQueries() { return *queries_; }

 private:
  void Accept();
  void Unload();

  void* library_ = nullptr;
  NKVXHMZ20::IPluginCallbacks* callbacks_ = nullptr;
  NKVXHMZ20::IPluginBasicQueryCallbacks* queries_ = nullptr;
};

}  // namespace standin

#endif  // STANDIN_PLUGIN_MANAGER_H_
