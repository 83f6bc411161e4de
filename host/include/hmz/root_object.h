#ifndef HMZ_ROOT_OBJECT_H_
#define HMZ_ROOT_OBJECT_H_

#include <boost/shared_ptr.hpp>
#include <string>

#include "hmz/api.h"
#include "hmz/cim_object_model.h"

namespace NKVXHMZ20 {

/// The host's log. It lives as long as the host.
class HMZ_API ICoreLogger {
 public:
  /// Writes one message; the log ends the line.
  virtual void Log(int level, const std::string& text) = 0;

 protected:
  ~ICoreLogger() = default;
};

/// Where a plug-in finds the host's services.
class HMZ_API TRootObject {
 public:
  static ICoreLogger& GetCoreLogger();

  /// The plug-in manager as a namespace; cast it to TPluginManagerNamespace. Null when the host
  /// has no plug-in manager loaded.
  static boost::shared_ptr<ICIMNamespace> GetPluginManager();
};

}  // namespace NKVXHMZ20

#endif  // HMZ_ROOT_OBJECT_H_
