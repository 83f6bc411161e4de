#include "inventory/print/text_report.h"

#include <algorithm>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/machine/health.h"
#include "inventory/machine/read_machine.h"
#include "inventory/print/controller_tree.h"
#include "inventory/print/event_logs.h"
#include "inventory/print/flow.h"
#include "inventory/print/severity_tint.h"

namespace {

/// "nothing needs attention", in the colour of the worst that is said.
Span AttentionSpan(const Report& report, const Machine& machine, const Health& health) {
  Span span = {"nothing needs attention", Tint::kGood};
  if (const std::size_t count = health.findings.size(); count > 0) {
    span.text = std::to_string(count) + (count == 1 ? " needs attention" : " need attention");
    span.tint = TintOf(health.findings.front().severity);
  } else if (machine.controllers.empty()) {
    span = {"no controller was found", Tint::kWarning};
  }
  if (std::any_of(report.problems.begin(), report.problems.end(), IsLoss)) {
    span.text += "; not all was collected";
    span.tint = std::max(span.tint, Tint::kWarning);
  }
  return span;
}

void PrintSummary(const Report& report, const Machine& machine, TextWriter& writer) {
  const Health health = Assess(machine);
  const std::string counts = Readable(report.host) + ": " + machine.DescribeCounts() + ";";
  writer.Flow({}, "  ", {{counts, Tint::kStrong}, AttentionSpan(report, machine, health)}, " ");
  if (!health.findings.empty()) writer.Line();
  for (const Finding& finding : health.findings) {
    const bool is_critical = finding.severity == Severity::kCritical;
    writer.FlowWords({{is_critical ? "CRITICAL  " : "WARNING   ", TintOf(finding.severity)}},
                     std::string(12, ' '), finding.where + ": " + finding.what);
  }
}

void PrintProblems(const Report& report, const std::string& root, bool is_verbose,
                   TextWriter& writer) {
  std::string absent;
  bool is_first = true;
  for (const Problem& problem : report.problems) {
    if (problem.kind == ProblemKind::kToolAbsent) {
      absent.append(absent.empty() ? "" : ", ").append(problem.what);
      continue;
    }
    if (!IsLoss(problem) && !is_verbose) continue;
    if (is_first) writer.Line();
    is_first = false;
    const char* title = IsLoss(problem) ? "NOT COLLECTED  " : "NOT READ  ";
    writer.FlowWords({{title, Tint::kWarning}}, std::string(12, ' '),
                     Readable(problem.what + ": " + problem.why));
  }
  if (absent.empty()) return;
  writer.Line();
  writer.FlowWords({}, "  ", Readable("Not installed in " + root + ": " + absent));
}

void PrintHint(const std::string& root, TextWriter& writer) {
  writer.Line();
  writer.FlowWords({}, "",
                   Readable("The tools kelvcmd, hrconf and arcconf are looked for in " + root +
                            "/kraid; --root names another directory. Most of them need root. "
                            "\"kraid-inventory KVXSG_krRawData\" shows what they said."));
}

void PrintTitle(const Controller& controller, TextWriter& writer) {
  std::string title = "Controller " + controller.number;
  if (!controller.name.empty()) title += " \"" + controller.name + "\"";
  std::string kind = controller.type.empty() ? "type not reported" : controller.type;
  if (!controller.tool.empty()) kind += " (" + controller.tool + ")";
  writer.Flow({}, "  ", {{title + ":", Tint::kStrong}, {kind}}, " ");
}

void PrintFacts(const Controller& controller, TextWriter& writer) {
  std::string battery = controller.battery_status;
  if (!controller.battery_capacity.empty()) battery += ", " + controller.battery_capacity;
  const struct {
    const char* name;
    const std::string& value;
    bool is_always_shown;
  } facts[] = {
      {"Status: ", controller.status, true},
      {"Firmware: ", controller.firmware, true},
      {"BIOS: ", controller.bios, true},
      {"Boot block: ", controller.boot_block, false},
      {"Driver: ", controller.driver, true},
      {"Battery: ", battery, true},
      {"Serial: ", controller.serial_number, false},
      {"Slot: ", controller.slot, false},
  };
  std::vector<Span> spans;
  for (const auto& fact : facts) {
    if (!fact.value.empty()) {
      spans.push_back({fact.name + fact.value});
    } else if (fact.is_always_shown) {
      spans.push_back({std::string(fact.name) + "not reported", Tint::kFaint});
    }
  }
  writer.Flow({{"  "}}, "  ", spans, "   ");
}

void PrintOperation(const Controller& controller, TextWriter& writer) {
  std::string operation = controller.DescribeOperation();
  if (operation.empty()) return;
  if (!controller.stripes_left.empty() && controller.stripes_left != "0") {
    operation += ", " + controller.stripes_left + " of " + controller.stripes + " stripes left";
  }
  writer.FlowWords({{"  "}}, "    ", operation);
}

}  // namespace

void PrintText(const Report& report, const std::string& root, bool is_verbose,
               const Display& display, Sink& output) {
  const Machine machine = ReadMachine(report);
  TextWriter writer(display, output);
  PrintSummary(report, machine, writer);
  PrintProblems(report, root, is_verbose, writer);
  if (machine.controllers.empty()) PrintHint(root, writer);
  for (const Controller& controller : machine.controllers) {
    writer.Line();
    PrintTitle(controller, writer);
    PrintFacts(controller, writer);
    PrintOperation(controller, writer);
    PrintControllerTree(controller, writer);
    PrintControllerLogs(controller, writer);
  }
  PrintManagerEvents(machine, writer);
}
