#include "plugin/kraid_callbacks.h"

#include <boost/pointer_cast.hpp>
#include <memory>

#include "collect/kraid_collect_data.h"
#include "hmz/root_object.h"
#include "plugin/dispatch.h"
#include "raidmgr/collect_raid_mgr_data.h"

TKraidCallbacks::TKraidCallbacks() {
  // A manager of another kind trips Boost's assertion: there is no host to go on with.
  boost::dynamic_pointer_cast<NKVXHMZ20::TPluginManagerNamespace>(
      NKVXHMZ20::TRootObject::GetPluginManager())
      ->RegisterPlugin(this);
}

void TKraidCallbacks::PrepareForUnload() {
  NKVXHMZ20::IPluginBasicQueryCallbacks* self = this;
  delete self;
}

void TKraidCallbacks::GetData(boost::shared_ptr<NKVXHMZ20::ICIMNamespace> cim_namespace,
                              std::vector<boost::shared_ptr<NKVXHMZ20::ICIMClass>>& classes) {
  // They live as long as the library is loaded, not as long as this object. The host calls from
  // one thread at a time.
  static bool first_call = true;
  static std::unique_ptr<KraidCollectData> collector;
  static std::unique_ptr<CollectRaidMgrData> manager_log;

  if (first_call) {
    collector = std::make_unique<KraidCollectData>(provider);
    collector->InitData();
    manager_log = std::make_unique<CollectRaidMgrData>(provider);
  }
  first_call = false;

  for (const auto& cim_class : classes) {
    Publish(cim_class->GetName(), {cim_namespace, cim_class, *collector, *manager_log});
  }
}
