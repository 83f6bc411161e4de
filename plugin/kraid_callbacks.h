#ifndef PLUGIN_KRAID_CALLBACKS_H_
#define PLUGIN_KRAID_CALLBACKS_H_

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "hmz/plugin_management.h"

/// The plug-in as the host sees it. The object registers itself and belongs to the host from then
/// on; it has to be created with new.
class TKraidCallbacks final : public NKVXHMZ20::IPluginCallbacks,
                              public NKVXHMZ20::IPluginBasicQueryCallbacks {
 public:
  TKraidCallbacks();
  ~TKraidCallbacks() override = default;
  TKraidCallbacks(const TKraidCallbacks&) = delete;
  TKraidCallbacks& operator=(const TKraidCallbacks&) = delete;

  int GetType() override { return 0; }
  std::string GetName() override { return "Kraid collector"; }
  std::string GetVersion() override { return "1.0"; }
  std::string GetInterfaceVersion() override { return NKVXHMZ20::fdrPluginInterfaceVersion; }
  /// Deletes the object.
  void PrepareForUnload() override;
  void Init() override {}
  void DeInit() override {}

  /// Commits the instances of each requested class, in the order of the request. The first call
  /// collects; every later one publishes from the same data, until the library is loaded anew.
  ///
  /// A call that an exception leaves during the collection leaves the collection to the next call.
  /// Instances committed before an exception stay.
  void GetData(boost::shared_ptr<NKVXHMZ20::ICIMNamespace> cim_namespace,
               std::vector<boost::shared_ptr<NKVXHMZ20::ICIMClass>>& classes) override;
};

#endif  // PLUGIN_KRAID_CALLBACKS_H_
