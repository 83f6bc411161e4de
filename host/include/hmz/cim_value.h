#ifndef HMZ_CIM_VALUE_H_
#define HMZ_CIM_VALUE_H_

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "hmz/api.h"
#include "hmz/cim_date_time.h"
#include "hmz/cim_strings.h"

namespace NKVXHMZ20 {

class ICIMNamespace;
class TCIMValue;

/// An object path: a class and its keys, in a namespace. Copying shares the keys, which never
/// change.
class HMZ_API TCIMReference {
 public:
  using Keys = std::vector<std::pair<std::string, TCIMValue>>;

  /// A path into `cim_namespace` without a class; the keys stand in alphabetical order.
  TCIMReference(const boost::shared_ptr<ICIMNamespace>& cim_namespace,
                const std::map<std::string, TCIMValue>& keys);

  /// The path of an instance; the keys stand in the order of the class's declaration.
  TCIMReference(const boost::shared_ptr<ICIMNamespace>& cim_namespace, std::string class_name,
                Keys keys);

  /// "" when the path names no class.
  const std::string& GetClassName() const;
  const Keys& GetKeys() const;

  /// `Class.Key="text",Other=3`; quotes and backslashes inside a text are escaped.
  std::string ToString() const;

 private:
  struct Path;
  boost::shared_ptr<const Path> path_;
};

/// A typed CIM value. Copying is cheap: arrays and references are shared and never change.
class HMZ_API TCIMValue {
 public:
  /// The host's type codes.
  enum ECIMType : int {
    kNull = 0,
    kUint16 = 4,
    kUint32 = 6,
    kString = 13,
    kDateTime = 14,
    kReference = 15,
  };

  /// A type code as an object.
  class TCIMType {
   public:
    explicit TCIMType(ECIMType code) : code_(code) {}
    ECIMType GetCode() const { return code_; }

   private:
    ECIMType code_;
  };

  using Array = std::vector<TCIMValue>;

  /// The null value: no type, no content.
  TCIMValue();
  /// Text up to the first NUL; not null.
  TCIMValue(const char* text);  // NOLINT(google-explicit-constructor)
  TCIMValue(std::string text);  // NOLINT(google-explicit-constructor)
  explicit TCIMValue(std::uint16_t number);
  explicit TCIMValue(std::uint32_t number);
  TCIMValue(const TCIMDateTime& time);   // NOLINT(google-explicit-constructor)
  TCIMValue(const TCIMReference& path);  // NOLINT(google-explicit-constructor)
  /// As Set.
  TCIMValue(TCIMType type, std::size_t count, const Array& elements);

  TCIMValue(const TCIMValue&);
  TCIMValue(TCIMValue&&) noexcept;
  TCIMValue& operator=(const TCIMValue&);
  TCIMValue& operator=(TCIMValue&&) noexcept;
  ~TCIMValue();

  /// Becomes an array of the first `count` elements, each of which has to be of `type`, which is
  /// kString or kUint32. Throws THMZException otherwise, and when there are fewer elements.
  void Set(TCIMType type, std::size_t count, const Array& elements);
  /// The same of elements of one type, which are not copied: for arrays that may be large.
  void Set(TCIMType type, std::size_t count, TCIMStrings elements);
  void Set(TCIMType type, std::size_t count, std::vector<std::uint32_t> elements);

  /// The type of the value; of an array, the type of its elements.
  TCIMType GetType() const;
  bool IsNull() const;
  bool IsArray() const;

  /// The content. Each throws THMZException when the value is of another kind.
  const std::string& GetString() const;
  std::uint32_t GetNumber() const;  // kUint16 and kUint32
  const TCIMDateTime& GetDateTime() const;
  const TCIMReference& GetReference() const;
  const TCIMStrings& GetStrings() const;                 // an array of kString
  const std::vector<std::uint32_t>& GetNumbers() const;  // an array of kUint32

  /// How many elements an array has. Throws THMZException when the value is none.
  std::size_t GetCount() const;
  /// Calls `visit` with each element of an array: a std::string_view or a std::uint32_t.
  template <class Visit>
  void ForEach(const Visit& visit) const {
    if (GetType().GetCode() == kString) {
      for (const std::string_view element : GetStrings()) visit(element);
    } else {
      for (const std::uint32_t element : GetNumbers()) visit(element);
    }
  }

  /// The value as text: "" for null, a string as it is, numbers in decimal, a date-time in its
  /// 25-character form, a reference as its path, an array as "{first, second}".
  std::string ToString() const;

 private:
  template <class T>
  using Shared = boost::shared_ptr<const T>;
  std::variant<std::monostate, std::string, std::uint16_t, std::uint32_t, TCIMDateTime,
               TCIMReference, Shared<TCIMStrings>, Shared<std::vector<std::uint32_t>>>
      content_;
};

}  // namespace NKVXHMZ20

#endif  // HMZ_CIM_VALUE_H_
