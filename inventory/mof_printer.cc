#include "inventory/mof_printer.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <span>
#include <unordered_map>
#include <unordered_set>

#include "inventory/display.h"
#include "inventory/options.h"
#include "standin/schema.h"

namespace {

using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;
using standin::StoredInstance;

bool IsReference(const TCIMValue& value) {
  return value.GetType().GetCode() == TCIMValue::kReference;
}

bool IsAssociation(const StoredInstance& instance) {
  return std::any_of(instance.properties.begin(), instance.properties.end(),
                     [](const standin::StoredProperty& p) { return IsReference(p.value); });
}

class MofPrinter {
 public:
  MofPrinter(const Report& report, OutputFile& output) : report_(report), output_(output) {
    for (const standin::SchemaClass& known : standin::Schema()) keys_[known.name] = known.keys;
  }

  void Print() {
    const auto& committed = report_.repository.GetCommitted();
    output_.Write(std::string("// Written by ") + kProgramName + " " KRAID_VERSION + " on " +
                  Readable(report_.host) + ". It needs the schema, kvxsg.mof.\n");
    for (const Problem& problem : report_.problems) {
      output_.Write("// Not collected: " + Readable(problem.what + ": " + problem.why) + "\n");
    }
    for (const auto& instance : committed) FindReferenced(*instance);
    for (const auto& instance : committed) {
      if (!IsAssociation(*instance)) PrintInstance(*instance);
    }
    for (const auto& instance : committed) {
      if (IsAssociation(*instance)) PrintInstance(*instance);
    }
  }

 private:
  void FindReferenced(const StoredInstance& instance) {
    for (const standin::StoredProperty& property : instance.properties) {
      if (IsReference(property.value)) aliases_[property.value.GetReference().ToString()];
    }
  }

  /// The path of an instance; "" when the schema or the instance lacks a key.
  std::string PathOf(const StoredInstance& instance) const {
    const auto found = keys_.find(*instance.class_name);
    if (found == keys_.end()) return "";
    TCIMReference::Keys keys;
    for (const std::string_view name : found->second) {
      const TCIMValue* value = instance.Find(std::string(name));
      if (value == nullptr || value->IsNull()) return "";
      keys.emplace_back(name, *value);
    }
    return TCIMReference(nullptr, *instance.class_name, std::move(keys)).ToString();
  }

  void PrintInstance(const StoredInstance& instance) {
    for (const standin::StoredProperty& property : instance.properties) {
      if (IsReference(property.value) && AliasOf(property.value).empty()) {
        output_.Write("\n// Left out: an instance of " + *instance.class_name +
                      " with a reference to an instance that is not here.\n");
        return;
      }
    }
    output_.Write("\n");
    const std::string path = PathOf(instance);
    std::string alias;
    if (!path.empty() && !printed_.insert(path).second) {
      output_.Write("// Its keys are those of an earlier instance.\n");
    } else if (const auto wanted = aliases_.find(path); wanted != aliases_.end()) {
      wanted->second =
          "$" + *instance.class_name + "_" + std::to_string(++alias_counts_[*instance.class_name]);
      alias = " as " + wanted->second;
    }
    output_.Write("instance of " + *instance.class_name + alias + " {\n");
    for (const standin::StoredProperty& property : instance.properties) PrintProperty(property);
    output_.Write("};\n");
  }

  const std::string& AliasOf(const TCIMValue& value) const {
    return aliases_.at(value.GetReference().ToString());
  }

  void PrintProperty(const standin::StoredProperty& property) {
    const TCIMValue& value = property.value;
    if (value.IsNull()) return;
    if (!value.IsArray()) {
      output_.Write("  " + *property.name + " = ");
      PrintValue(value);
      output_.Write(";\n");
      return;
    }
    // Not every reader of MOF takes an empty pair of braces.
    if (value.GetArray().empty()) {
      output_.Write("  // " + *property.name + " is an empty array.\n");
      return;
    }
    output_.Write("  " + *property.name + " = {");
    const char* separator = "\n    ";
    for (const TCIMValue& element : value.GetArray()) {
      output_.Write(separator);
      PrintValue(element);
      separator = ",\n    ";
    }
    output_.Write("};\n");
  }

  void PrintValue(const TCIMValue& value) {
    switch (value.GetType().GetCode()) {
      case TCIMValue::kNull:
        return output_.Write("NULL");
      case TCIMValue::kUint16:
      case TCIMValue::kUint32:
        return output_.Write(std::to_string(value.GetNumber()));
      case TCIMValue::kString:
        return output_.Write(MofString(value.GetString()));
      case TCIMValue::kDateTime:
        return output_.Write("\"" + MofDateTime(value.GetDateTime().ToString()) + "\"");
      case TCIMValue::kReference:
        return output_.Write(AliasOf(value));
    }
  }

  const Report& report_;
  OutputFile& output_;
  std::map<std::string_view, std::span<const std::string_view>> keys_;
  /// By path, of the instances that something refers to; "" as long as the instance is not printed.
  std::unordered_map<std::string, std::string> aliases_;
  std::unordered_map<std::string, int> alias_counts_;
  std::unordered_set<std::string> printed_;
};

}  // namespace

void PrintMof(const Report& report, OutputFile& output) { MofPrinter(report, output).Print(); }

std::string MofString(const std::string& text) {
  static constexpr std::string_view kEscaped = "\b\t\n\f\r\"\\";
  static constexpr std::string_view kLetters = "btnfr\"\\";
  std::string literal = "\"";
  const std::string valid = ValidUtf8(text);
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const char c = valid[i];
    auto code = static_cast<unsigned char>(c);
    if (const auto escape = kEscaped.find(c); escape != std::string_view::npos) {
      literal += '\\';
      literal += kLetters[escape];
      continue;
    }
    if (code == 0) {
      literal += "\uFFFD";  // a MOF string holds no NUL, however it is written
      continue;
    }
    // Of the characters of two bytes, those behind 0xC2 0x80 to 0x9F are controls.
    const bool is_high = code == 0xC2 && static_cast<unsigned char>(valid[i + 1]) < 0xA0;
    if (is_high) code = static_cast<unsigned char>(valid[++i]);
    if (code < ' ' || code == 0x7F || is_high) {
      char escape[16];
      std::snprintf(escape, sizeof escape, "\\x%04X", static_cast<unsigned>(code));
      literal += escape;
    } else {
      literal += c;
    }
  }
  return literal + "\"";
}

std::string MofDateTime(const std::string& text) {
  if (text.size() != 25) return "**************.******+000";
  const auto number = [&text](std::size_t at, std::size_t count) {
    return static_cast<unsigned>(std::stoul(text.substr(at, count)));
  };
  const auto date = std::chrono::year(static_cast<int>(number(0, 4))) / number(4, 2);
  const struct {
    std::size_t at;
    bool is_possible;
  } fields[] = {
      {4, date.month().ok()},   {6, (date / number(6, 2)).ok()}, {8, number(8, 2) < 24},
      {10, number(10, 2) < 60}, {12, number(12, 2) < 60},
  };
  std::string result = text;
  for (const auto& field : fields) {
    if (field.is_possible) continue;
    for (std::size_t i = field.at; i < 21; ++i) {
      if (result[i] != '.') result[i] = '*';
    }
    break;
  }
  return result;
}
