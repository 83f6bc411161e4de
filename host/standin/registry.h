#ifndef STANDIN_REGISTRY_H_
#define STANDIN_REGISTRY_H_

#include <boost/shared_ptr.hpp>

#include "hmz/api.h"
#include "hmz/cim_object_model.h"

namespace standin {

/// Makes `plugin_manager` what TRootObject::GetPluginManager answers.
HMZ_API void SetPluginManager(const boost::shared_ptr<NKVXHMZ20::ICIMNamespace>& plugin_manager);

}  // namespace standin

#endif  // STANDIN_REGISTRY_H_
