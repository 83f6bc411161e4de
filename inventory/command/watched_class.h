#ifndef INVENTORY_COMMAND_WATCHED_CLASS_H_
#define INVENTORY_COMMAND_WATCHED_CLASS_H_

#include <boost/shared_ptr.hpp>
#include <map>
#include <string>

#include "hmz/cim_object_model.h"

/// A class of the host's as the plug-in gets it: tells when the plug-in asks for the class's name,
/// which it does right before it publishes the class. All else goes to the host's class.
class WatchedClass final : public NKVXHMZ20::ICIMClass {
 public:
  /// `publishing` takes the name whenever it is asked for. It has to outlive the plug-in.
  WatchedClass(boost::shared_ptr<NKVXHMZ20::ICIMClass> cim_class, std::string& publishing);

  std::string GetName() override;
  boost::shared_ptr<NKVXHMZ20::ICIMInstance> CreateInstance(
      const std::map<std::string, NKVXHMZ20::TCIMValue>& keys) override;
  void EnumerateInstances(
      const boost::function<bool(boost::shared_ptr<NKVXHMZ20::ICIMInstance>)>& visit) override;

 private:
  boost::shared_ptr<NKVXHMZ20::ICIMClass> class_;
  std::string& publishing_;
};

#endif  // INVENTORY_COMMAND_WATCHED_CLASS_H_
