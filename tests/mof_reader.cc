#include "tests/mof_reader.h"

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kWord =
    "0123456789_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

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

/// "yyyymmddHHMMSS.mmmmmm" and the offset, with asterisks from any field on up to the offset.
bool IsDateTime(std::string text) {
  static const std::regex form(
      R"(\d{4}(0[1-9]|1[0-2])(0[1-9]|[12]\d|3[01])([01]\d|2[0-3])([0-5]\d){2}\.\d{6}[+-]\d{3})");
  if (text.size() != 25) return false;
  for (const std::size_t begin : {0U, 4U, 6U, 8U, 10U, 12U, 15U}) {
    if (text.substr(begin, 21 - begin) == std::string("**************.******").substr(begin))
      text.replace(begin, 21 - begin, std::string("00000101000000.000000"), begin);
  }
  if (!std::regex_match(text, form)) return false;
  const auto number = [&text](std::size_t at) { return unsigned(std::stoi(text.substr(at, 2))); };
  const std::chrono::year year(std::stoi(text.substr(0, 4)));
  return (year / std::chrono::month(number(4)) / std::chrono::day(number(6))).ok();
}

class Reader {
 public:
  void Read(const char* what, std::string_view text) {
    what_ = what;
    text_ = text;
    at_ = 0;
    for (SkipBlanks(); at_ < text_.size(); SkipBlanks()) {
      if (Accept("Qualifier")) {
        ReadQualifierDeclaration();
      } else {
        Accept("instance") ? ReadInstance() : ReadClass();
      }
    }
  }

  MofDocument document;

 private:
  // The text and the place in it.

  void Check(bool holds, const std::string& why) const {
    if (holds) return;
    const auto line = 1 + std::count(text_.begin(), text_.end() - std::ssize(Rest()), '\n');
    throw std::runtime_error(what_ + ":" + std::to_string(line) + ": " + why);
  }

  std::string_view Rest() const { return text_.substr(at_); }

  bool IsNext(std::string_view characters, std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() && characters.find(text_[at_ + ahead]) != std::string::npos;
  }

  std::string TakeAll(std::string_view characters) {
    const auto count = std::min(Rest().find_first_not_of(characters), Rest().size());
    at_ += count;
    return std::string(text_.substr(at_ - count, count));
  }

  void SkipBlanks() {
    for (;;) {
      TakeAll(" \t\r\n");
      const bool is_line = Rest().starts_with("//");
      if (!is_line && !Rest().starts_with("/*")) return;
      const auto end = text_.find(is_line ? "\n" : "*/", at_ + 2);
      Check(is_line || end != std::string_view::npos, "comment without an end");
      at_ = is_line ? std::min(end, text_.size()) : end + 2;
    }
  }

  bool Accept(std::string_view token) {
    SkipBlanks();
    if (!Rest().starts_with(token)) return false;
    if (IsNext(kWord) && IsNext(kWord, token.size())) return false;  // a longer word
    at_ += token.size();
    return true;
  }

  void Expect(const std::string& token) { Check(Accept(token), "expected " + token); }

  std::string ReadWord() {
    SkipBlanks();
    Check(IsNext(kWord) && !IsNext(kDigits), "expected a name");
    return TakeAll(kWord);
  }

  std::string ReadAlias() {
    Expect("$");
    Check(IsNext(kWord), "expected an alias");
    return "$" + ReadWord();
  }

  /// The escapes are those of JSON but for "/" and "u", so that JSON's strictness serves here.
  std::string ReadString() {
    Expect("\"");
    std::string json = "\"";
    for (char c = ' '; c != '"';) {
      Check(!Rest().empty() && static_cast<unsigned char>(Rest()[0]) >= ' ',
            "line end or control character in a string");
      c = text_[at_++];
      json += c;
      if (c != '\\') continue;
      Check(IsNext("btnfr\"\\x"), "no such escape");
      const char escape = text_[at_++];
      json += escape == 'x' ? 'u' : escape;
      // Half a character: JSON would join two of them.
      Check(escape != 'x' || !IsNext("dD") || IsNext("01234567", 1), "no such character");
    }
    const auto text = nlohmann::json::parse(json, nullptr, false);
    Check(text.is_string(), "less than four digits behind \\x, or no UTF-8");
    return text.get<std::string>();
  }

  MofLiteral ReadLiteral(const std::string& type) {
    if (type == "string" || type == "datetime") {
      const std::string text = ReadString();
      Check(type == "string" || IsDateTime(text), "no date-time");
      return text;
    }
    SkipBlanks();
    const std::string digits = TakeAll(kDigits);
    Check(!digits.empty() && digits.size() <= 10 && (digits[0] != '0' || digits == "0"),
          "expected a number");
    const auto number = std::stoull(digits);
    Check(number <= (type == "uint16" ? 0xffffU : 0xffffffffU), "number out of range");
    return static_cast<std::uint32_t>(number);
  }

  // Declarations.

  void ReadQualifierDeclaration() {
    static const std::map<std::string, std::string> known = {
        {"Association", ": boolean = false , Scope ( association ) , Flavor ( DisableOverride ) ;"},
        {"Description",
         ": string = null , Scope ( any ) , Flavor ( EnableOverride , Translatable ) ;"},
        {"Key",
         ": boolean = false , Scope ( property , reference ) , Flavor ( DisableOverride ) ;"},
    };
    const std::string name = ReadWord();
    Check(known.count(name) != 0, "unknown qualifier");
    Check(qualifiers_.insert(name).second, "qualifier declared twice");
    std::istringstream tokens(known.at(name));
    for (std::string token; tokens >> token;) Expect(token);
  }

  bool AcceptQualifier(const std::string& name) {
    if (!Accept(name)) return false;
    Check(qualifiers_.count(name) != 0, "qualifier that is not declared");
    return true;
  }

  /// The qualifiers of one element: the marker, which is its result, and a Description, in this
  /// order. Strings that follow each other are one.
  bool ReadQualifiers(const std::string& marker, std::string& description) {
    if (!Accept("[")) return false;
    const bool is_marked = AcceptQualifier(marker);
    if (!is_marked || Accept(",")) {
      Check(AcceptQualifier("Description"), "expected Description");
      Expect("(");
      do description += ReadString();
      while (!Accept(")"));
    }
    Expect("]");
    return is_marked;
  }

  void ReadClass() {
    MofClass mof_class;
    mof_class.is_association = ReadQualifiers("Association", mof_class.description);
    Expect("class");
    mof_class.name = ReadWord();
    Check(IsNew(mof_class.name, document.classes), "class declared twice");
    int references = 0;
    for (Expect("{"); !Accept("}");) {
      const MofProperty property = ReadProperty();
      Check(IsNew(property.name, mof_class.properties), "property declared twice");
      if (property.type.empty()) ++references;
      mof_class.properties.push_back(property);
    }
    Expect(";");
    Check(mof_class.is_association ? references >= 2 : references == 0,
          "association without two references, or reference elsewhere");
    document.classes.push_back(std::move(mof_class));
  }

  MofProperty ReadProperty() {
    MofProperty property;
    property.is_key = ReadQualifiers("Key", property.description);
    std::string type = ReadWord();
    if (Accept("REF")) {
      Check(Find(document.classes, type) != nullptr, "class that is not declared");
      property.reference_class = std::move(type);
    } else {
      Check(type == "string" || type == "uint16" || type == "uint32" || type == "datetime",
            "unknown type");
      property.type = std::move(type);
    }
    property.name = ReadWord();
    property.is_array = !property.type.empty() && !property.is_key && Accept("[");
    if (property.is_array) Expect("]");
    Expect(";");
    return property;
  }

  // Instances.

  void ReadInstance() {
    Expect("of");
    MofInstance instance{ReadWord(), "", {}};
    auto& instances = document.instances;
    const MofClass* mof_class = Find(document.classes, instance.class_name);
    Check(mof_class != nullptr, "class that is not declared");
    Check(mof_class->is_association || instances.empty() ||
              !Find(document.classes, instances.back().class_name)->is_association,
          "plain instance behind an association");
    if (Accept("as")) instance.alias = ReadAlias();
    for (Expect("{"); !Accept("}"); Expect(";")) {
      const std::string name = ReadWord();
      const MofProperty* property = Find(mof_class->properties, name);
      Check(property != nullptr, "property that is not declared");
      Check(Find(instance.properties, name) == nullptr, "property set twice");
      Expect("=");
      instance.properties.push_back({name, ReadValue(*property)});
    }
    Expect(";");
    Check(!instance.properties.empty(), "instance without properties");
    for (const MofProperty& property : mof_class->properties) {
      Check(!property.is_key || Find(instance.properties, property.name) != nullptr,
            "key not set: " + property.name);
    }
    Check(instance.alias.empty() || aliases_.emplace(instance.alias, instances.size()).second,
          "alias used twice");
    instances.push_back(std::move(instance));
  }

  MofValue ReadValue(const MofProperty& property) {
    if (property.type.empty()) {
      const auto alias = aliases_.find(ReadAlias());
      Check(alias != aliases_.end(), "alias of nothing before");
      const MofInstance& target = document.instances[alias->second];
      Check(target.class_name == property.reference_class, "alias of another class");
      return MofAlias{alias->second};
    }
    if (!property.is_array) return ReadLiteral(property.type);
    std::vector<MofLiteral> elements;
    Expect("{");
    do elements.push_back(ReadLiteral(property.type));
    while (Accept(","));
    Expect("}");
    return elements;
  }

  std::string what_;
  std::string_view text_;
  std::size_t at_ = 0;
  std::set<std::string> qualifiers_;
  std::map<std::string, std::size_t> aliases_;
};

}  // namespace

MofDocument ReadMof(std::string_view schema, std::string_view instances) {
  Reader reader;
  reader.Read("schema", schema);
  reader.Read("instances", instances);
  return std::move(reader.document);
}
