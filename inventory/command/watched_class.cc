#include "inventory/command/watched_class.h"

#include <utility>

using NKVXHMZ20::ICIMInstance;

WatchedClass::WatchedClass(boost::shared_ptr<NKVXHMZ20::ICIMClass> cim_class,
                           std::string& publishing)
    : class_(std::move(cim_class)), publishing_(publishing) {}

std::string WatchedClass::GetName() {
  publishing_ = class_->GetName();
  return publishing_;
}

boost::shared_ptr<ICIMInstance> WatchedClass::CreateInstance(
    const std::map<std::string, NKVXHMZ20::TCIMValue>& keys) {
  return class_->CreateInstance(keys);
}

void WatchedClass::EnumerateInstances(
    const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& visit) {
  class_->EnumerateInstances(visit);
}
