#include "inventory/print/json_printer.h"

#include <functional>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <utility>

#include "inventory/base/program.h"

namespace {

using NKVXHMZ20::TCIMValue;

/// Writes JSON piece by piece: what is large, an output of many lines or many instances, is never
/// in memory a second time.
class JsonWriter {
 public:
  explicit JsonWriter(Sink& output) : output_(output) {}

  void String(const std::string& text) {
    using nlohmann::json;
    output_.Write(json(text).dump(-1, ' ', false, json::error_handler_t::replace));
  }

  /// Each element on a line of its own, written by `write`.
  template <class Elements, class Write>
  void List(char open, char close, const Elements& elements, const Write& write) {
    output_.Write({&open, 1});
    ++depth_;
    bool first = true;
    for (const auto& element : elements) {
      output_.Write(first ? "\n" : ",\n");
      output_.Write(std::string(depth_ * 2, ' '));
      write(element);
      first = false;
    }
    --depth_;
    if (!first) {
      output_.Write("\n");
      output_.Write(std::string(depth_ * 2, ' '));
    }
    output_.Write({&close, 1});
  }

  void Value(const TCIMValue& value) {
    if (value.IsArray()) {
      List('[', ']', value.GetArray(), [this](const TCIMValue& element) { Value(element); });
      return;
    }
    switch (value.GetType().GetCode()) {
      case TCIMValue::kNull:
        return output_.Write("null");
      case TCIMValue::kUint16:
      case TCIMValue::kUint32:
        return output_.Write(std::to_string(value.GetNumber()));
      case TCIMValue::kString:
        return String(value.GetString());
      case TCIMValue::kDateTime:
        return String(value.GetDateTime().ToString());
      case TCIMValue::kReference:
        return Reference(value.GetReference());
    }
  }

  void Reference(const NKVXHMZ20::TCIMReference& reference) {
    Object({{"class", [&] { String(reference.GetClassName()); }},
            {"keys", [&] {
               List('{', '}', reference.GetKeys(), [this](const auto& key) {
                 Name(key.first);
                 Value(key.second);
               });
             }}});
  }

  void Instance(const standin::StoredInstance& instance) {
    Object({{"class", [&] { String(*instance.class_name); }},
            {"properties", [&] {
               List('{', '}', instance.properties, [this](const standin::StoredProperty& property) {
                 Name(*property.name);
                 Value(property.value);
               });
             }}});
  }

  void Problem(const ::Problem& problem) {
    Object({{"what", [&] { String(problem.what); }}, {"why", [&] { String(problem.why); }}});
  }

  using Members = std::initializer_list<std::pair<const char*, std::function<void()>>>;
  void Object(Members members) {
    List('{', '}', members, [this](const auto& member) {
      Name(member.first);
      member.second();
    });
  }

 private:
  void Name(const std::string& name) {
    String(name);
    output_.Write(": ");
  }

  Sink& output_;
  std::size_t depth_ = 0;
};

}  // namespace

void PrintJson(const Report& report, Sink& output) {
  JsonWriter writer(output);
  writer.Object({{"format_version", [&] { output.Write("[1, 0]"); }},
                 {"generator",
                  [&] {
                    writer.Object({{"name", [&] { writer.String(kProgramName); }},
                                   {"version", [&] { writer.String(kProgramVersion); }}});
                  }},
                 {"host", [&] { writer.String(report.host); }},
                 {"exit_status", [&] { output.Write(std::to_string(report.exit_status)); }},
                 {"problems",
                  [&] {
                    writer.List('[', ']', report.problems,
                                [&](const Problem& problem) { writer.Problem(problem); });
                  }},
                 {"instances", [&] {
                    writer.List('[', ']', report.repository.GetCommitted(),
                                [&](const auto& instance) { writer.Instance(*instance); });
                  }}});
  output.Write("\n");
}
