// A plug-in that does as the requested classes are named, and logs what the host asks of it: for
// what the real one never does.

#include <boost/pointer_cast.hpp>
#include <stdexcept>

#include "hmz/os_specific.h"
#include "hmz/plugin_management.h"
#include "hmz/root_object.h"

namespace {

using namespace NKVXHMZ20;  // NOLINT(google-build-using-namespace): the host's whole face

void Log(const std::string& text) { TRootObject::GetCoreLogger().Log(7, text); }

class OddPlugin final : public IPluginCallbacks, public IPluginBasicQueryCallbacks {
 public:
  int GetType() override { return 0; }
  std::string GetName() override { return "odd"; }
  std::string GetVersion() override { return "0"; }
  std::string GetInterfaceVersion() override { return fdrPluginInterfaceVersion; }
  void PrepareForUnload() override {
    Log(".");
    delete this;
  }
  void Init() override { Log("+"); }
  void DeInit() override { Log("-"); }

  /// Commits an instance of the first class, which is named by what follows then, asks the other
  /// ones for their names, and throws. The first class is not asked: the host would notice.
  void GetData(boost::shared_ptr<ICIMNamespace> /*cim_namespace*/,
               std::vector<boost::shared_ptr<ICIMClass>>& classes) override {
    const boost::shared_ptr<ICIMInstance> instance = classes.at(0)->CreateInstance({});
    std::string task = instance->GetReference().ToString();
    const bool is_first_call = ++calls_ == 1;
    if (task == "once" && !is_first_call) return;
    instance->Commit({});
    if (task.starts_with("read ")) {
      TOSSpecific::CaptureFile("/log");
      task = task.substr(5);
    }
    if (task.starts_with("run ")) {
      TOSSpecific::SpawnProcess("/bin/echo", {"1", "al"});
      task = task.substr(4);
    }
    if (task == "later" && !is_first_call) throw std::runtime_error("later");
    for (std::size_t i = 1; i < classes.size(); ++i) Log(classes[i]->GetName());
    if (task == "int") throw 5;
    if (task == "vector" || task == "short") throw std::out_of_range(task);
    if (task == "lines" || (task == "first" && is_first_call)) {
      throw std::runtime_error("two\nlines");
    }
  }

 private:
  int calls_ = 0;
};

[[maybe_unused]] const bool kRegistered = [] {
  boost::dynamic_pointer_cast<TPluginManagerNamespace>(TRootObject::GetPluginManager())
      ->RegisterPlugin(new OddPlugin);
  return true;
}();

}  // namespace
