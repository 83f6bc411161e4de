#ifndef HMZ_PLUGIN_MANAGEMENT_H_
#define HMZ_PLUGIN_MANAGEMENT_H_

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "hmz/api.h"
#include "hmz/cim_object_model.h"

namespace NKVXHMZ20 {

/// The text of the plug-in interface's version, "1.0".
// NOLINTNEXTLINE(readability-identifier-naming): the name is the host's.
extern HMZ_API const char* const fdrPluginInterfaceVersion;

/// The host's side of a registered plug-in. Only the host looks inside.
class TPluginManagerProvider;

/// What every plug-in answers. The host owns the object from its registration on.
class HMZ_API IPluginCallbacks {
 public:
  virtual ~IPluginCallbacks();
  virtual int GetType() = 0;
  virtual std::string GetName() = 0;
  virtual std::string GetVersion() = 0;
  virtual std::string GetInterfaceVersion() = 0;
  /// The last call: the object deletes itself.
  virtual void PrepareForUnload() = 0;
  virtual void Init() = 0;
  virtual void DeInit() = 0;

  /// Filled by the host when the plug-in registers; plug-ins only pass it on.
  TPluginManagerProvider* provider = nullptr;
};

/// What a plug-in that fills classes on request answers.
class HMZ_API IPluginBasicQueryCallbacks {
 public:
  virtual ~IPluginBasicQueryCallbacks();
  /// Fills the repository with the instances of `classes`, in their order. Not to be called from
  /// two threads at once.
  virtual void GetData(boost::shared_ptr<ICIMNamespace> cim_namespace,
                       std::vector<boost::shared_ptr<ICIMClass>>& classes) = 0;
};

/// The plug-in manager, found through TRootObject::GetPluginManager.
class HMZ_API TPluginManagerNamespace : public ICIMNamespace {
 public:
  virtual ~TPluginManagerNamespace();
  /// Takes the plug-in in and fills its `provider`.
  virtual void RegisterPlugin(IPluginCallbacks* callbacks) = 0;
};

}  // namespace NKVXHMZ20

#endif  // HMZ_PLUGIN_MANAGEMENT_H_
