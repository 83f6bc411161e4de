#include "schema/mof_reader.h"

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <map>
#include <set>
#include <sstream>
#include <utility>

#include "schema/mof_scanner.h"

namespace {

template <class Item>
const Item* Find(const std::vector<Item>& items, const std::string& name) {
  const auto found =
      std::find_if(items.begin(), items.end(), [&](const Item& item) { return item.name == name; });
  return found == items.end() ? nullptr : &*found;
}

/// Whether a new name differs from the others by more than its case.
template <class Item>
bool IsNew(const std::string& name, const std::vector<Item>& items) {
  return std::none_of(items.begin(), items.end(),
                      [&](const Item& item) { return boost::iequals(item.name, name); });
}

/// Reads one text after the other; what each declares is known to those behind it.
class Reader {
 public:
  void Read(const MofText& text) {
    in_ = MofScanner(text.name, text.text);
    while (!in_.IsAtEnd()) {
      if (in_.Accept("Qualifier")) {
        ReadQualifierDeclaration();
      } else {
        in_.Accept("instance") ? ReadInstance() : ReadClass();
      }
    }
  }

  MofDocument document;

 private:
  void ReadQualifierDeclaration() {
    static const std::map<std::string, std::string> known = {
        {"Association", ": boolean = false , Scope ( association ) , Flavor ( DisableOverride ) ;"},
        {"Description",
         ": string = null , Scope ( any ) , Flavor ( EnableOverride , Translatable ) ;"},
        {"Key",
         ": boolean = false , Scope ( property , reference ) , Flavor ( DisableOverride ) ;"},
    };
    const std::string name = in_.TakeName();
    in_.Check(known.count(name) != 0, "unknown qualifier");
    in_.Check(qualifiers_.insert(name).second, "qualifier declared twice");
    std::istringstream tokens(known.at(name));
    for (std::string token; tokens >> token;) in_.Expect(token);
  }

  bool AcceptQualifier(const std::string& name) {
    if (!in_.Accept(name)) return false;
    in_.Check(qualifiers_.count(name) != 0, "qualifier that is not declared");
    return true;
  }

  /// The qualifiers of one element: the marker, which is its result, and a Description, in this
  /// order. Strings that follow each other are one.
  bool ReadQualifiers(const std::string& marker, std::string& description) {
    if (!in_.Accept("[")) return false;
    const bool is_marked = AcceptQualifier(marker);
    if (!is_marked || in_.Accept(",")) {
      in_.Check(AcceptQualifier("Description"), "expected Description");
      in_.Expect("(");
      do description += in_.TakeString();
      while (!in_.Accept(")"));
    }
    in_.Expect("]");
    return is_marked;
  }

  void ReadClass() {
    MofClass mof_class;
    mof_class.is_association = ReadQualifiers("Association", mof_class.description);
    in_.Expect("class");
    mof_class.name = in_.TakeName();
    mof_class.line = in_.GetLine();
    in_.Check(IsNew(mof_class.name, document.classes), "class declared twice");
    int references = 0;
    for (in_.Expect("{"); !in_.Accept("}");) {
      const MofProperty property = ReadProperty();
      in_.Check(IsNew(property.name, mof_class.properties), "property declared twice");
      if (property.type.empty()) ++references;
      mof_class.properties.push_back(property);
    }
    in_.Expect(";");
    in_.Check(mof_class.is_association ? references >= 2 : references == 0,
              "association without two references, or reference elsewhere");
    document.classes.push_back(std::move(mof_class));
  }

  MofProperty ReadProperty() {
    MofProperty property;
    property.is_key = ReadQualifiers("Key", property.description);
    std::string type = in_.TakeName();
    if (in_.Accept("REF")) {
      in_.Check(Find(document.classes, type) != nullptr, "class that is not declared");
      property.reference_class = std::move(type);
    } else {
      in_.Check(type == "string" || type == "uint16" || type == "uint32" || type == "datetime",
                "unknown type");
      property.type = std::move(type);
    }
    property.name = in_.TakeName();
    property.is_array = !property.type.empty() && !property.is_key && in_.Accept("[");
    if (property.is_array) in_.Expect("]");
    in_.Expect(";");
    return property;
  }

  void ReadInstance() {
    in_.Expect("of");
    const std::string class_name = in_.TakeName();
    const MofClass* mof_class = Find(document.classes, class_name);
    in_.Check(mof_class != nullptr, "class that is not declared");
    in_.Check(mof_class->is_association || !had_association_,
              "plain instance behind an association");
    had_association_ = mof_class->is_association;
    const std::string alias = in_.Accept("as") ? in_.TakeAlias() : "";
    std::set<std::string> properties;
    for (in_.Expect("{"); !in_.Accept("}"); in_.Expect(";")) {
      const std::string name = in_.TakeName();
      const MofProperty* property = Find(mof_class->properties, name);
      in_.Check(property != nullptr, "property that is not declared");
      in_.Check(properties.insert(name).second, "property set twice");
      in_.Expect("=");
      ReadValue(*property);
    }
    in_.Expect(";");
    in_.Check(!properties.empty(), "instance without properties");
    for (const MofProperty& property : mof_class->properties) {
      in_.Check(!property.is_key || properties.contains(property.name),
                "key not set: " + property.name);
    }
    in_.Check(alias.empty() || aliases_.emplace(alias, class_name).second, "alias used twice");
    document.instances.push_back(class_name);
  }

  void ReadValue(const MofProperty& property) {
    if (!property.is_array) return ReadLiteral(property);
    in_.Expect("{");
    do ReadLiteral(property);
    while (in_.Accept(","));
    in_.Expect("}");
  }

  void ReadLiteral(const MofProperty& property) {
    if (property.type == "string") {
      in_.TakeString();
    } else if (property.type == "datetime") {
      in_.TakeDateTime();
    } else if (property.type == "uint16") {
      in_.TakeNumber(0xFFFF);
    } else if (property.type == "uint32") {
      in_.TakeNumber(0xFFFFFFFF);
    } else {
      const auto alias = aliases_.find(in_.TakeAlias());
      in_.Check(alias != aliases_.end(), "alias of nothing before");
      in_.Check(alias->second == property.reference_class, "alias of another class");
    }
  }

  MofScanner in_{"", ""};
  std::set<std::string> qualifiers_;
  std::map<std::string, std::string> aliases_;  // with the classes of their instances
  bool had_association_ = false;                // the instance before
};

}  // namespace

MofDocument ReadMof(const std::vector<MofText>& texts) {
  Reader reader;
  for (const MofText& text : texts) reader.Read(text);
  return std::move(reader.document);
}
