#include "hmz/root_object.h"

#include "standin/host_services.h"
#include "standin/registry.h"

namespace {

class CoreLogger final : public NKVXHMZ20::ICoreLogger {
 public:
  void Log(int level, const std::string& text) override { standin::Services().log(level, text); }
};

boost::shared_ptr<NKVXHMZ20::ICIMNamespace>& PluginManagerSlot() {
  static boost::shared_ptr<NKVXHMZ20::ICIMNamespace> plugin_manager;
  return plugin_manager;
}

}  // namespace

namespace NKVXHMZ20 {

ICoreLogger& TRootObject::GetCoreLogger() {
  static CoreLogger logger;
  return logger;
}

boost::shared_ptr<ICIMNamespace> TRootObject::GetPluginManager() { return PluginManagerSlot(); }

}  // namespace NKVXHMZ20

namespace standin {

void SetPluginManager(const boost::shared_ptr<NKVXHMZ20::ICIMNamespace>& plugin_manager) {
  PluginManagerSlot() = plugin_manager;
}

}  // namespace standin
