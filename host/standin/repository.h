#ifndef STANDIN_REPOSITORY_H_
#define STANDIN_REPOSITORY_H_

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "hmz/api.h"
#include "hmz/cim_object_model.h"
#include "hmz/exception.h"

namespace standin {

/// A property as it is stored; the name belongs to its class in the repository.
struct StoredProperty {
  const std::string* name;
  NKVXHMZ20::TCIMValue value;
};

/// A committed instance: its properties in the order in which each was first set.
struct HMZ_API StoredInstance {
  const std::string* class_name;
  std::vector<StoredProperty> properties;

  /// Null when the property was never set.
  const NKVXHMZ20::TCIMValue* Find(const std::string& name) const;
};

/// How much a repository takes: what is published of a hostile text may be many times the text.
struct RepositoryLimits {
  std::size_t instances = 1'000'000;
  std::size_t bytes = std::size_t{1} << 30;  ///< Of their content, roughly as it is in memory.
};

/// What a commit throws that goes beyond the limits.
class HMZ_API RepositoryFull final : public NKVXHMZ20::THMZException {
 public:
  using THMZException::THMZException;
};

/// The stand-in's CIM namespace, in memory: the classes of the schema and all that is committed.
/// It takes whatever is set, within its limits, and keeps a list of what the schema does not have.
class HMZ_API Repository final : public NKVXHMZ20::ICIMNamespace {
 public:
  explicit Repository(const RepositoryLimits& limits = {});
  ~Repository();
  Repository(const Repository&) = delete;
  Repository& operator=(const Repository&) = delete;

  boost::shared_ptr<NKVXHMZ20::ICIMClass> GetClass(const std::string& name) override;

  /// As GetClass; a name that the schema does not know becomes a class without keys.
  boost::shared_ptr<NKVXHMZ20::ICIMClass> GetOrDeclareClass(const std::string& name);

  /// Everything that was committed, in the order of the commits, duplicates included.
  const std::vector<boost::shared_ptr<const StoredInstance>>& GetCommitted() const;

  /// What was set, null aside, that its class does not declare, in alphabetical order and each kind
  /// once: "KVXSG_krDiskDrive.Colour: string". Classes that the schema does not know count for
  /// nothing.
  std::vector<std::string> GetUndeclared() const;

 private:
  struct State;
  class Class;
  class Instance;
  boost::shared_ptr<State> state_;
};

}  // namespace standin

#endif  // STANDIN_REPOSITORY_H_
