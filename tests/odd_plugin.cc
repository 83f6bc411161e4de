// A plug-in that does as the requested classes are named, and logs what the host asks of it: for
// what the real one never does.

#include <boost/pointer_cast.hpp>
#include <stdexcept>

#include "hmz/exception.h"
#include "hmz/plugin_management.h"
#include "hmz/root_object.h"

namespace {

using namespace NKVXHMZ20;  // NOLINT(google-build-using-namespace): the host's whole face

void Log(const char* text) { TRootObject::GetCoreLogger().Log(7, text); }

class OddPlugin final : public IPluginCallbacks, public IPluginBasicQueryCallbacks {
 public:
  int GetType() override { return 0; }
  std::string GetName() override { return "odd"; }
  std::string GetVersion() override { return "0"; }
  std::string GetInterfaceVersion() override { return fdrPluginInterfaceVersion; }
  void PrepareForUnload() override {
    Log("PrepareForUnload");
    delete this;
  }
  void Init() override { Log("Init\nwith \\"); }
  void DeInit() override { Log("DeInit"); }

  void GetData(boost::shared_ptr<ICIMNamespace> /*cim_namespace*/,
               std::vector<boost::shared_ptr<ICIMClass>>& classes) override {
    if (classes.empty()) return;
    const boost::shared_ptr<ICIMInstance> instance = classes[0]->CreateInstance({});
    instance->Commit({});
    if (classes.size() == 1) throw THMZException("no tool\x1b[2J ran");
    if (classes[1]->GetName() == "int") throw 5;
    throw std::runtime_error("first line\nsecond line");
  }
};

[[maybe_unused]] const bool kRegistered = [] {
  boost::dynamic_pointer_cast<TPluginManagerNamespace>(TRootObject::GetPluginManager())
      ->RegisterPlugin(new OddPlugin);
  return true;
}();

}  // namespace
