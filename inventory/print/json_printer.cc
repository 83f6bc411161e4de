#include "inventory/print/json_printer.h"

#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "inventory/base/program.h"
#include "inventory/base/times.h"
#include "inventory/print/field_writer.h"
#include "inventory/print/findings_json.h"
#include "inventory/print/json_writer.h"
#include "inventory/print/machine_json.h"

namespace {

using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;

void WriteValue(const TCIMValue& value, JsonWriter& json);

/// An object whose members are each a name and a value of CIM.
template <class Members, class NameOf>
void WriteValues(const Members& members, const NameOf& name_of, JsonWriter& json) {
  json.Open('{');
  for (const auto& member : members) {
    const auto& [name, value] = name_of(member);
    json.Name(name);
    WriteValue(value, json);
  }
  json.Close('}');
}

void WriteReference(const TCIMReference& reference, JsonWriter& json) {
  json.Open('{');
  FieldWriter fields(json);
  fields("class", reference.GetClassName());
  fields.Value("keys", [&](JsonWriter&) {
    WriteValues(
        reference.GetKeys(), [](const auto& key) { return std::tie(key.first, key.second); }, json);
  });
  json.Close('}');
}

void WriteValue(const TCIMValue& value, JsonWriter& json) {
  if (value.IsArray()) {
    if (value.GetType().GetCode() == TCIMValue::kString) {
      return json.Array(value.GetStrings(), [&json](auto text) { json.String(text); });
    }
    return json.Array(value.GetNumbers(), [&json](auto number) { json.Number(number); });
  }
  switch (value.GetType().GetCode()) {
    case TCIMValue::kNull:
      return json.Null();
    case TCIMValue::kUint16:
    case TCIMValue::kUint32:
      return json.Number(value.GetNumber());
    case TCIMValue::kString:
      return json.String(value.GetString());
    case TCIMValue::kDateTime:
      return json.String(value.GetDateTime().ToString());
    case TCIMValue::kReference:
      return WriteReference(value.GetReference(), json);
  }
}

void WriteInstance(FieldWriter& fields, const standin::StoredInstance& instance) {
  fields("class", *instance.class_name);
  fields.Value("properties", [&](JsonWriter& json) {
    WriteValues(
        instance.properties,
        [](const auto& property) { return std::tie(*property.name, property.value); }, json);
  });
}

/// What and why for people, the rest for programs; what a problem does not have is left out.
void WriteProblem(FieldWriter& fields, const Problem& problem) {
  fields("what", problem.what);
  fields("why", problem.why);
  fields("kind", NameOf(problem.kind));
  if (!problem.tool.empty()) fields("tool", problem.tool);
  if (!problem.command.empty()) fields("command", problem.command);
  if (problem.controller != 0) fields("controller", problem.controller);
  if (problem.count != 0) fields("count", problem.count);
  if (problem.is_blind) fields("is_blind", true);
}

void WriteTime(FieldWriter& fields, const char* name, const NKVXHMZ20::TCIMDateTime& time) {
  fields(name, MakeText(Rfc3339(time)));
}

void WriteDuration(FieldWriter& fields, std::chrono::milliseconds duration) {
  fields.Value("duration_seconds", [&](JsonWriter& json) { json.Raw(SecondsText(duration)); });
}

void WriteRun(FieldWriter& fields, const RunRecord& run) {
  fields("program", run.program);
  fields("arguments", run.arguments);
  WriteTime(fields, "started_at", run.started);
  WriteDuration(fields, run.duration);
  fields("end", NameOf(run.end));
  fields("output_bytes", run.output_bytes);
  fields("error_bytes", run.error_bytes);
  fields("error_output", run.error_output);
  if (run.end == RunEnd::kExited) fields("exit_status", run.exit_status);
  if (run.end == RunEnd::kSignalled) fields("signal", run.signal);
  if (!run.reason.empty()) fields("reason", run.reason);
  if (!run.left_behind.empty()) fields("left_behind", run.left_behind);
  if (!run.why_unreadable.empty()) fields("unreadable", run.why_unreadable);
}

/// A tool that is not there has failed nobody.
std::vector<const RunRecord*> ShownRuns(const Report& report, RunsShown shown) {
  std::set<std::string_view> absent;
  for (const Problem& problem : report.problems) {
    if (problem.kind == ProblemKind::kToolAbsent) absent.insert(problem.what);
  }
  std::vector<const RunRecord*> runs;
  for (const RunRecord& run : report.runs) {
    const bool has_failed = (run.HasFailed() && !absent.contains(run.program)) ||
                            !run.why_unreadable.empty() || !run.left_behind.empty();
    if (shown == RunsShown::kAll || (shown == RunsShown::kFailed && has_failed)) {
      runs.push_back(&run);
    }
  }
  return runs;
}

void WriteCollection(FieldWriter& fields, const Report& report, RunsShown runs) {
  fields.Value("format_version", [](JsonWriter& json) { json.Raw("[1, 1]"); });
  fields.Group("generator", [](FieldWriter& generator) {
    generator("name", kProgramName);
    generator("version", kProgramVersion);
  });
  fields("host", report.host);
  WriteTime(fields, "collected_at", report.collected_at);
  WriteDuration(fields, report.duration);
  fields("exit_status", report.exit_status);
  fields.Objects("problems", report.problems, WriteProblem);
  fields.Objects("runs", ShownRuns(report, runs),
                 [](FieldWriter& run_fields, const RunRecord* run) { WriteRun(run_fields, *run); });
}

/// Null where most of the machine was not asked for.
void WriteMachine(FieldWriter& fields, const ViewInput& input, bool is_whole) {
  if (is_whole) {
    fields.Value("machine", [&](JsonWriter& json) { WriteMachineJson(input.machine, json); });
    WriteFindings(input.machine, fields);
  } else {
    fields.WriteNull("machine");
    fields.WriteNull("findings");
  }
  if (input.comparison != nullptr) WriteComparison(input.machine, *input.comparison, fields);
}

}  // namespace

int PrintJson(const ViewInput& input, const ViewOptions& options, Sink& output) {
  JsonWriter json(output);
  json.Open('{');
  FieldWriter fields(json);
  WriteCollection(fields, input.report, options.runs);
  WriteMachine(fields, input, options.is_whole);
  if (options.has_instances) {
    fields.Objects("instances", input.report.repository.GetCommitted(),
                   [](FieldWriter& instance_fields, const auto& instance) {
                     WriteInstance(instance_fields, *instance);
                   });
  }
  json.Close('}');
  output.Write("\n");
  return input.report.exit_status;
}
