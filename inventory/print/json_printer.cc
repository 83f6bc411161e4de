#include "inventory/print/json_printer.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "inventory/base/program.h"
#include "inventory/base/times.h"

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

  /// What and why for people, the rest for programs; what a problem does not have is left out.
  void Problem(const ::Problem& problem) {
    std::vector<Member> members = {{"what", [&] { String(problem.what); }},
                                   {"why", [&] { String(problem.why); }},
                                   {"kind", [&] { String(NameOf(problem.kind)); }}};
    if (!problem.tool.empty()) members.push_back({"tool", [&] { String(problem.tool); }});
    if (!problem.command.empty()) members.push_back({"command", [&] { String(problem.command); }});
    if (problem.controller != 0) {
      members.push_back({"controller", [&] { Number(problem.controller); }});
    }
    if (problem.count != 0) members.push_back({"count", [&] { Number(problem.count); }});
    Object(members);
  }

  void Run(const RunRecord& run) {
    std::vector<Member> members = {
        {"program", [&] { String(run.program); }},
        {"arguments",
         [&] {
           List('[', ']', run.arguments, [this](const std::string& argument) { String(argument); });
         }},
        {"started_at", [&] { Time(run.started); }},
        {"duration_seconds", [&] { output_.Write(SecondsText(run.duration)); }},
        {"end", [&] { String(NameOf(run.end)); }},
        {"output_bytes", [&] { Number(run.output_bytes); }},
        {"error_bytes", [&] { Number(run.error_bytes); }},
        {"error_output", [&] { String(run.error_output); }}};
    if (run.end == RunEnd::kExited) {
      members.push_back({"exit_status", [&] { Number(run.exit_status); }});
    }
    if (run.end == RunEnd::kSignalled) members.push_back({"signal", [&] { Number(run.signal); }});
    if (!run.reason.empty()) members.push_back({"reason", [&] { String(run.reason); }});
    if (!run.why_unreadable.empty()) {
      members.push_back({"unreadable", [&] { String(run.why_unreadable); }});
    }
    Object(members);
  }

  using Member = std::pair<const char*, std::function<void()>>;
  void Object(const std::vector<Member>& members) {
    List('{', '}', members, [this](const auto& member) {
      Name(member.first);
      member.second();
    });
  }

  void Time(const NKVXHMZ20::TCIMDateTime& time) {
    const std::string text = Rfc3339(time);
    text.empty() ? output_.Write("null") : String(text);
  }

  template <class Integer>
  void Number(Integer number) {
    output_.Write(std::to_string(number));
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

namespace {

/// A tool that is not there has failed nobody.
std::vector<const RunRecord*> ShownRuns(const Report& report, RunsShown shown) {
  std::set<std::string_view> absent;
  for (const Problem& problem : report.problems) {
    if (problem.kind == ProblemKind::kToolAbsent) absent.insert(problem.what);
  }
  std::vector<const RunRecord*> runs;
  for (const RunRecord& run : report.runs) {
    const bool has_failed =
        (run.HasFailed() && !absent.contains(run.program)) || !run.why_unreadable.empty();
    if (shown == RunsShown::kAll || (shown == RunsShown::kFailed && has_failed)) {
      runs.push_back(&run);
    }
  }
  return runs;
}

}  // namespace

int PrintJson(const ViewInput& input, const ViewOptions& options, Sink& output) {
  const Report& report = input.report;
  JsonWriter writer(output);
  writer.Object({{"format_version", [&] { output.Write("[1, 1]"); }},
                 {"generator",
                  [&] {
                    writer.Object({{"name", [&] { writer.String(kProgramName); }},
                                   {"version", [&] { writer.String(kProgramVersion); }}});
                  }},
                 {"host", [&] { writer.String(report.host); }},
                 {"collected_at", [&] { writer.Time(report.collected_at); }},
                 {"duration_seconds", [&] { output.Write(SecondsText(report.duration)); }},
                 {"exit_status", [&] { output.Write(std::to_string(report.exit_status)); }},
                 {"problems",
                  [&] {
                    writer.List('[', ']', report.problems,
                                [&](const Problem& problem) { writer.Problem(problem); });
                  }},
                 {"runs",
                  [&] {
                    writer.List('[', ']', ShownRuns(report, options.runs),
                                [&](const RunRecord* run) { writer.Run(*run); });
                  }},
                 {"instances", [&] {
                    writer.List('[', ']', report.repository.GetCommitted(),
                                [&](const auto& instance) { writer.Instance(*instance); });
                  }}});
  output.Write("\n");
  return report.exit_status;
}
