#include "standin/repository.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "standin/schema.h"

namespace standin {

using NKVXHMZ20::ICIMClass;
using NKVXHMZ20::ICIMInstance;
using NKVXHMZ20::ICIMProperty;
using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;
using NKVXHMZ20::THMZException;

namespace {

struct ClassData {
  std::string name;
  bool is_in_schema = false;
  std::vector<std::string> keys;
  /// By name, which is kept once however many instances carry it; null: set, but not declared.
  std::unordered_map<std::string, const SchemaProperty*> properties;
  std::vector<boost::shared_ptr<StoredInstance>> committed;
};

class Property final : public ICIMProperty {
 public:
  explicit Property(TCIMValue value) : value_(std::move(value)) {}
  TCIMValue GetValue() override { return value_; }

 private:
  TCIMValue value_;
};

bool Allows(const SchemaProperty& declared, const TCIMValue& value) {
  if (value.IsNull()) return true;
  return value.GetType().GetCode() == declared.type && value.IsArray() == declared.is_array &&
         (declared.type != TCIMValue::kReference ||
          value.GetReference().GetClassName() == declared.reference_class);
}

/// The value's type as a schema would declare it.
std::string TypeText(const TCIMValue& value) {
  static const std::map<TCIMValue::ECIMType, const char*> names = {
      {TCIMValue::kNull, "null"},         {TCIMValue::kUint16, "uint16"},
      {TCIMValue::kUint32, "uint32"},     {TCIMValue::kString, "string"},
      {TCIMValue::kDateTime, "datetime"},
  };
  const TCIMValue::ECIMType code = value.GetType().GetCode();
  if (code == TCIMValue::kReference) return value.GetReference().GetClassName() + " REF";
  return std::string(names.at(code)) + (value.IsArray() ? "[]" : "");
}

/// What a value holds besides itself.
std::size_t ContentBytes(const TCIMValue& value) {
  if (value.IsArray()) {
    return value.GetType().GetCode() == TCIMValue::kString
               ? value.GetStrings().GetByteCount()
               : value.GetNumbers().size() * sizeof(std::uint32_t);
  }
  if (value.GetType().GetCode() == TCIMValue::kString) return value.GetString().size();
  if (value.GetType().GetCode() != TCIMValue::kReference) return 0;
  std::size_t bytes = 0;
  for (const auto& key : value.GetReference().GetKeys()) {
    bytes += sizeof key + ContentBytes(key.second);
  }
  return bytes;
}

}  // namespace

const TCIMValue* StoredInstance::Find(const std::string& name) const {
  const auto found =
      std::find_if(properties.begin(), properties.end(),
                   [&name](const StoredProperty& property) { return *property.name == name; });
  return found == properties.end() ? nullptr : &found->value;
}

/// What the repository holds. Classes and instances share it, so that each of them may outlive the
/// repository.
struct Repository::State {
  explicit State(const RepositoryLimits& given) : limits(given) {}

  /// Takes the instance, or throws.
  void Add(const boost::shared_ptr<StoredInstance>& content, ClassData& cim_class) {
    if (committed.size() >= limits.instances) {
      throw RepositoryFull("the repository is full: it holds " + std::to_string(limits.instances) +
                           " instances");
    }
    std::size_t size = sizeof(StoredInstance);
    for (const StoredProperty& property : content->properties) {
      size += sizeof property + ContentBytes(property.value);
    }
    if (size > limits.bytes - bytes) {
      throw RepositoryFull("the repository is full: its instances hold the " +
                           std::to_string(limits.bytes >> 20) + " MiB that they may");
    }
    bytes += size;
    cim_class.committed.push_back(content);
    committed.push_back(content);
  }

  RepositoryLimits limits;
  std::size_t bytes = 0;
  std::map<std::string, ClassData> classes;
  std::vector<boost::shared_ptr<const StoredInstance>> committed;
  std::set<std::string> undeclared;
};

/// An instance in a plug-in's hands. Commit and enumeration share the content with the repository;
/// it is copied when the plug-in goes on changing it, so that what is stored never changes.
class Repository::Instance final : public ICIMInstance {
 public:
  Instance(boost::shared_ptr<State> state, ClassData& cim_class,
           boost::shared_ptr<StoredInstance> content)
      : state_(std::move(state)), class_(cim_class), content_(std::move(content)) {}

  void Commit(const std::map<std::string, TCIMValue>& /*qualifiers*/) override {
    state_->Add(content_, class_);
  }

  TCIMReference GetReference() override {
    TCIMReference::Keys keys;
    keys.reserve(class_.keys.size());
    for (const std::string& key : class_.keys) {
      const TCIMValue* value = content_->Find(key);
      if (value == nullptr) {
        throw THMZException("an instance of " + class_.name + " has no object path: its key \"" +
                            key + "\" is not set");
      }
      keys.emplace_back(key, *value);
    }
    return {nullptr, class_.name, std::move(keys)};
  }

  boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name) override {
    const TCIMValue* value = content_->Find(name);
    return boost::make_shared<Property>(value == nullptr ? TCIMValue() : *value);
  }

  void SetPropertyValue(const std::string& name, const TCIMValue& value,
                        const std::map<std::string, TCIMValue>& /*qualifiers*/) override {
    if (content_.use_count() > 1) content_ = boost::make_shared<StoredInstance>(*content_);
    const auto& [kept_name, declared] = *class_.properties.try_emplace(name, nullptr).first;
    if (class_.is_in_schema && (declared == nullptr || !Allows(*declared, value))) {
      state_->undeclared.insert(class_.name + "." + name + ": " + TypeText(value));
    }
    for (StoredProperty& property : content_->properties) {
      if (property.name == &kept_name) {
        property.value = value;
        return;
      }
    }
    content_->properties.push_back({&kept_name, value});
  }

 private:
  boost::shared_ptr<State> state_;
  ClassData& class_;  // in *state_
  boost::shared_ptr<StoredInstance> content_;
};

class Repository::Class final : public ICIMClass {
 public:
  Class(boost::shared_ptr<State> state, ClassData& data) : state_(std::move(state)), data_(data) {}

  std::string GetName() override { return data_.name; }

  boost::shared_ptr<ICIMInstance> CreateInstance(
      const std::map<std::string, TCIMValue>& keys) override {
    auto content = boost::make_shared<StoredInstance>();
    content->class_name = &data_.name;
    auto instance = boost::make_shared<Instance>(state_, data_, std::move(content));
    for (const auto& [name, value] : keys) instance->SetPropertyValue(name, value, {});
    return instance;
  }

  void EnumerateInstances(
      const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& visit) override {
    // By index, and up to the count of now: the visitor may commit further instances.
    const std::size_t count = data_.committed.size();
    for (std::size_t i = 0; i < count; ++i) {
      if (!visit(boost::make_shared<Instance>(state_, data_, data_.committed[i]))) return;
    }
  }

 private:
  boost::shared_ptr<State> state_;
  ClassData& data_;  // in *state_
};

Repository::Repository(const RepositoryLimits& limits) : state_(boost::make_shared<State>(limits)) {
  for (const SchemaClass& cim_class : Schema()) {
    ClassData& data = state_->classes[std::string(cim_class.name)];
    data.name = cim_class.name;
    data.is_in_schema = true;
    data.keys.assign(cim_class.keys.begin(), cim_class.keys.end());
    for (const SchemaProperty& property : cim_class.properties) {
      data.properties.emplace(property.name, &property);
    }
  }
}

Repository::~Repository() = default;

boost::shared_ptr<ICIMClass> Repository::GetClass(const std::string& name) {
  const auto found = state_->classes.find(name);
  if (found == state_->classes.end()) return nullptr;
  return boost::make_shared<Class>(state_, found->second);
}

boost::shared_ptr<ICIMClass> Repository::GetOrDeclareClass(const std::string& name) {
  ClassData& data = state_->classes[name];
  data.name = name;
  return boost::make_shared<Class>(state_, data);
}

const std::vector<boost::shared_ptr<const StoredInstance>>& Repository::GetCommitted() const {
  return state_->committed;
}

std::vector<std::string> Repository::GetUndeclared() const {
  return {state_->undeclared.begin(), state_->undeclared.end()};
}

}  // namespace standin
