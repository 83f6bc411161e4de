#ifndef HMZ_CIM_OBJECT_MODEL_H_
#define HMZ_CIM_OBJECT_MODEL_H_

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>
#include <map>
#include <string>
#include <vector>

#include "hmz/api.h"
#include "hmz/cim_value.h"

// The operations of each interface stand in the order of their slots. Destructors take no slot:
// the host creates the objects and shared pointers remember how they end.

namespace NKVXHMZ20 {

/// One property of an instance.
class HMZ_API ICIMProperty {
 public:
  virtual TCIMValue GetValue() = 0;

 protected:
  ~ICIMProperty() = default;
};

/// A CIM instance, first in the making, then a copy of what the repository holds.
class HMZ_API ICIMInstance {
 public:
  /// Stores the instance in the repository as it stands now. Every call stores one more; keys
  /// that the repository already holds are no obstacle.
  virtual void Commit(const std::map<std::string, TCIMValue>& qualifiers) = 0;

  /// The object path, made of the class's key properties.
  /// Throws THMZException when one of them has not been set.
  virtual TCIMReference GetReference() = 0;

  /// The property of that name; one that has not been set has the null value.
  virtual boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name) = 0;

  /// Sets the property; a property that was set before keeps its place and takes the new value.
  virtual void SetPropertyValue(const std::string& name, const TCIMValue& value,
                                const std::map<std::string, TCIMValue>& qualifiers) = 0;

 protected:
  ~ICIMInstance() = default;
};

/// A CIM class of a namespace.
class HMZ_API ICIMClass {
 public:
  virtual std::string GetName() = 0;

  /// A new instance without properties. It is in no repository until it is committed.
  virtual boost::shared_ptr<ICIMInstance> CreateInstance(
      const std::map<std::string, TCIMValue>& keys) = 0;

  /// Calls `visit` for each committed instance of the class, in the order of the commits, until
  /// it returns false.
  virtual void EnumerateInstances(
      const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& visit) = 0;

 protected:
  ~ICIMClass() = default;
};

/// A CIM namespace: the classes it knows, by name.
class HMZ_API ICIMNamespace {
 public:
  /// Null when the namespace has no class of that name.
  virtual boost::shared_ptr<ICIMClass> GetClass(const std::string& name) = 0;

 protected:
  ~ICIMNamespace() = default;
};

/// Collects what an enumeration visits: appends each object to a vector and goes on.
template <class T>
class TAddToVectorCallback {
 public:
  /// `vector` must outlive the callback and its copies.
  explicit TAddToVectorCallback(std::vector<boost::shared_ptr<T>>* vector) : vector_(vector) {}

  bool operator()(boost::shared_ptr<T> object) const {
    vector_->push_back(object);
    return true;
  }

 private:
  std::vector<boost::shared_ptr<T>>* vector_;
};

}  // namespace NKVXHMZ20

#endif  // HMZ_CIM_OBJECT_MODEL_H_
