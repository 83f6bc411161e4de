#include "inventory/print/mof_printer.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "inventory/base/program.h"
#include "inventory/base/readable.h"
#include "inventory/print/mof_literal.h"
#include "standin/schema.h"

namespace {

using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;
using standin::StoredInstance;

bool IsReference(const TCIMValue& value) {
  return value.GetType().GetCode() == TCIMValue::kReference;
}

bool IsIdentifier(std::string_view name) {
  static constexpr std::string_view kCharacters =
      "_0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  return !name.empty() && name.find_first_not_of(kCharacters) == std::string_view::npos;
}

class MofPrinter {
 public:
  MofPrinter(const Report& report, Sink& output) : report_(report), output_(output) {
    for (const standin::SchemaClass& known : standin::Schema()) classes_[known.name] = &known;
  }

  void Print() {
    output_.Write(std::string("// Written by ") + kProgramName + " " KRAID_VERSION + " on " +
                  Readable(report_.host) + ". It needs the schema, kvxsg.mof.\n");
    for (const Problem& problem : report_.problems) {
      if (problem.kind == ProblemKind::kLinesNotUnderstood) continue;
      output_.Write("// Not collected: " + Readable(problem.what + ": " + problem.why) + "\n");
    }
    const auto& committed = report_.repository.GetCommitted();
    for (const auto& instance : committed) FindReferenced(*instance);
    for (const bool associations : {false, true}) {
      for (const auto& instance : committed) {
        const auto found = classes_.find(*instance->class_name);
        const bool is_association = found != classes_.end() && found->second->is_association;
        if (is_association == associations) PrintInstance(*instance);
      }
    }
  }

 private:
  void FindReferenced(const StoredInstance& instance) {
    for (const standin::StoredProperty& property : instance.properties) {
      if (IsReference(property.value)) aliases_[property.value.GetReference().ToString()];
    }
  }

  /// Why a strict reader would refuse the instance; "" when it has no reason.
  std::string FindObstacle(const StoredInstance& instance) const {
    const auto found = classes_.find(*instance.class_name);
    if (found == classes_.end()) return "the schema has no such class";
    for (const std::string_view key : found->second->keys) {
      const TCIMValue* value = instance.Find(std::string(key));
      if (value == nullptr || value->IsNull()) return "it lacks a key";
    }
    for (const standin::StoredProperty& property : instance.properties) {
      if (!IsIdentifier(*property.name)) return "the name of a property is none in MOF";
      if (IsReference(property.value) && AliasOf(property.value).empty()) {
        return "it refers to an instance that does not stand before it";
      }
    }
    return "";
  }

  void PrintInstance(const StoredInstance& instance) {
    output_.Write("\n");
    if (const std::string obstacle = FindObstacle(instance); !obstacle.empty()) {
      output_.Write("// Left out: an instance of " + Readable(*instance.class_name) + "; " +
                    obstacle + ".\n");
      return;
    }
    // The keys as they are written: two texts may differ in bytes that are not UTF-8 alone.
    TextSink written;
    written.text = *instance.class_name;
    TCIMReference::Keys keys;
    for (const std::string_view key : classes_.at(*instance.class_name)->keys) {
      const TCIMValue* value = instance.Find(std::string(key));
      keys.emplace_back(key, *value);
      written.text += ",";
      WriteLiteral(*value, written);
    }
    const bool is_first = printed_.insert(std::move(written.text)).second;
    if (!is_first) output_.Write("// Its keys are those of an earlier instance.\n");

    std::string alias;
    const auto wanted =
        aliases_.find(TCIMReference(nullptr, *instance.class_name, std::move(keys)).ToString());
    if (wanted != aliases_.end() && wanted->second.empty()) {
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
      WriteLiteral(value, output_);
      output_.Write(";\n");
      return;
    }
    // Not every reader of MOF takes an empty pair of braces.
    if (value.GetCount() == 0) {
      output_.Write("  // " + *property.name + " is an empty array.\n");
      return;
    }
    output_.Write("  " + *property.name + " = {");
    const char* separator = "\n    ";
    value.ForEach([&](const auto& element) {
      output_.Write(separator);
      WriteElement(element, output_);
      separator = ",\n    ";
    });
    output_.Write("};\n");
  }

  static void WriteElement(std::string_view text, Sink& output) { WriteMofString(text, output); }
  static void WriteElement(std::uint32_t number, Sink& output) {
    output.Write(std::to_string(number));
  }

  void WriteLiteral(const TCIMValue& value, Sink& output) const {
    switch (value.GetType().GetCode()) {
      case TCIMValue::kNull:
        return output.Write("NULL");
      case TCIMValue::kUint16:
      case TCIMValue::kUint32:
        return WriteElement(value.GetNumber(), output);
      case TCIMValue::kString:
        return WriteElement(value.GetString(), output);
      case TCIMValue::kDateTime:
        return output.Write("\"" + MofDateTime(value.GetDateTime().ToString()) + "\"");
      case TCIMValue::kReference:
        return output.Write(AliasOf(value));
    }
  }

  const Report& report_;
  Sink& output_;
  std::map<std::string_view, const standin::SchemaClass*> classes_;
  /// By path, of the instances that something refers to; "" as long as the instance is not printed.
  std::unordered_map<std::string, std::string> aliases_;
  std::unordered_map<std::string, int> alias_counts_;
  std::unordered_set<std::string> printed_;  // by class and keys
};

}  // namespace

int PrintMof(const ViewInput& input, const ViewOptions& /*options*/, Sink& output) {
  MofPrinter(input.report, output).Print();
  return input.report.exit_status;
}
