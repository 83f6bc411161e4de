#ifndef TESTS_RECORDING_HOST_H_
#define TESTS_RECORDING_HOST_H_

#include <boost/make_shared.hpp>
#include <map>
#include <string>
#include <utility>

#include "hmz/cim_object_model.h"

/// A value on one line.
inline std::string OneLine(const NKVXHMZ20::TCIMValue& value) {
  std::string text = value.IsNull() ? "null" : value.ToString();
  for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
    text.replace(end, 1, "\\n");
  }
  return text;
}

/// A namespace, class or instance of the stand-in that writes each call down, one on a line.
class Recorder final : public NKVXHMZ20::ICIMNamespace,
                       public NKVXHMZ20::ICIMClass,
                       public NKVXHMZ20::ICIMInstance {
 public:
  using Values = std::map<std::string, NKVXHMZ20::TCIMValue>;

  Recorder(std::string& calls, boost::shared_ptr<ICIMNamespace> cim_namespace,
           boost::shared_ptr<ICIMClass> cim_class, boost::shared_ptr<ICIMInstance> instance)
      : calls_(calls),
        namespace_(std::move(cim_namespace)),
        class_(std::move(cim_class)),
        instance_(std::move(instance)) {}

  boost::shared_ptr<ICIMClass> GetClass(const std::string& name) override {
    calls_ += "  class " + name + "\n";
    return boost::make_shared<Recorder>(calls_, nullptr, namespace_->GetClass(name), nullptr);
  }

  std::string GetName() override { return class_->GetName(); }
  boost::shared_ptr<ICIMInstance> CreateInstance(const Values& keys) override {
    calls_ += "  create\n";
    return Wrap(class_->CreateInstance(keys));
  }
  void EnumerateInstances(
      const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& visit) override {
    calls_ += "  enumerate " + GetName() + "\n";
    class_->EnumerateInstances(
        [&](boost::shared_ptr<ICIMInstance> instance) { return visit(Wrap(std::move(instance))); });
  }

  void Commit(const Values& qualifiers) override {
    calls_ += "  commit\n";
    instance_->Commit(qualifiers);
  }
  NKVXHMZ20::TCIMReference GetReference() override {
    calls_ += "  path of " + OneLine(instance_->GetReference()) + "\n";
    return instance_->GetReference();
  }
  boost::shared_ptr<NKVXHMZ20::ICIMProperty> GetProperty(const std::string& name) override {
    auto property = instance_->GetProperty(name);
    calls_ += "  read " + name + " " + OneLine(property->GetValue()) + "\n";
    return property;
  }
  void SetPropertyValue(const std::string& name, const NKVXHMZ20::TCIMValue& value,
                        const Values& qualifiers) override {
    calls_ += "    " + name + " " + OneLine(value) + "\n";
    instance_->SetPropertyValue(name, value, qualifiers);
  }

 private:
  boost::shared_ptr<ICIMInstance> Wrap(boost::shared_ptr<ICIMInstance> instance) {
    return boost::make_shared<Recorder>(calls_, nullptr, nullptr, std::move(instance));
  }

  std::string& calls_;
  boost::shared_ptr<ICIMNamespace> namespace_;
  boost::shared_ptr<ICIMClass> class_;
  boost::shared_ptr<ICIMInstance> instance_;
};

#endif  // TESTS_RECORDING_HOST_H_
