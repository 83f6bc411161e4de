#include "standin/plugin_manager.h"

#include <dlfcn.h>

#include <boost/make_shared.hpp>
#include <utility>

#include "hmz/exception.h"
#include "standin/registry.h"

namespace NKVXHMZ20 {

const char* const fdrPluginInterfaceVersion = "1.0";  // NOLINT(readability-identifier-naming)

class TPluginManagerProvider {};

IPluginCallbacks::~IPluginCallbacks() = default;
IPluginBasicQueryCallbacks::~IPluginBasicQueryCallbacks() = default;
TPluginManagerNamespace::~TPluginManagerNamespace() = default;

}  // namespace NKVXHMZ20

namespace standin {
namespace {

using NKVXHMZ20::IPluginCallbacks;
using NKVXHMZ20::THMZException;

/// Keeps the plug-in that registered last, which is the one whose library is being loaded.
class PluginManager final : public NKVXHMZ20::TPluginManagerNamespace {
 public:
  boost::shared_ptr<NKVXHMZ20::ICIMClass> GetClass(const std::string& /*name*/) override {
    return nullptr;  // plug-ins are no CIM classes
  }

  void RegisterPlugin(IPluginCallbacks* callbacks) override {
    callbacks->provider = &provider_;
    registered_ = callbacks;
  }

  IPluginCallbacks* TakeRegistered() { return std::exchange(registered_, nullptr); }

 private:
  NKVXHMZ20::TPluginManagerProvider provider_;
  IPluginCallbacks* registered_ = nullptr;
};

const boost::shared_ptr<PluginManager>& Manager() {
  static const auto manager = boost::make_shared<PluginManager>();
  return manager;
}

// Plug-ins ask the host for the manager; the host has it from this library.
const bool kAnnounced = (SetPluginManager(Manager()), true);

}  // namespace

LoadedPlugin::LoadedPlugin(const std::string& file) {
  Manager()->TakeRegistered();
  library_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr) throw THMZException(std::string("cannot be loaded: ") + dlerror());
  callbacks_ = Manager()->TakeRegistered();
  try {
    Accept();
  } catch (...) {
    Unload();
    throw;
  }
}

void LoadedPlugin::Accept() {
  queries_ = dynamic_cast<NKVXHMZ20::IPluginBasicQueryCallbacks*>(callbacks_);
  const char* refusal = nullptr;
  if (callbacks_ == nullptr) {
    refusal = "registers no plug-in";
  } else if (callbacks_->GetInterfaceVersion() != NKVXHMZ20::fdrPluginInterfaceVersion) {
    refusal = "was built for another version of the plug-in interface";
  } else if (queries_ == nullptr) {
    refusal = "answers no queries";
  }
  if (refusal != nullptr) throw THMZException(refusal);
  callbacks_->Init();
}

LoadedPlugin::~LoadedPlugin() {
  callbacks_->DeInit();
  Unload();
}

void LoadedPlugin::Unload() {
  if (callbacks_ != nullptr) callbacks_->PrepareForUnload();
  dlclose(library_);
}

}  // namespace standin
