#include "inventory/print/text_report.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/machine/wording.h"
#include "inventory/print/change_list.h"
#include "inventory/print/controller_tree.h"
#include "inventory/print/event_logs.h"
#include "inventory/print/flow.h"
#include "inventory/print/severity_tint.h"

namespace {

void PrintSummary(const Report& report, const Machine& machine, TextWriter& writer) {
  const std::string counts = Readable(report.host) + ": " + machine.DescribeCounts() + ";";
  const auto& [text, severity] = DescribeAttention(report, machine);
  writer.Flow({}, "  ", {{counts, Tint::kStrong}, {text, TintOf(severity)}}, " ");
  if (!machine.findings.empty()) writer.Line();
  for (const Finding& finding : machine.findings) {
    const bool is_critical = finding.severity == Severity::kCritical;
    writer.FlowWords({{is_critical ? "CRITICAL  " : "WARNING   ", TintOf(finding.severity)}},
                     std::string(12, ' '), finding.where + ": " + finding.What());
  }
}

void PrintProblems(const Report& report, bool is_verbose, TextWriter& writer) {
  bool is_first = true;
  for (const Problem& problem : report.problems) {
    if (problem.kind == ProblemKind::kToolAbsent || !(IsLoss(problem) || is_verbose)) continue;
    if (is_first) writer.Line();
    is_first = false;
    const char* title = IsLoss(problem) ? "NOT COLLECTED  " : "NOT READ  ";
    writer.FlowWords({{title, Tint::kWarning}}, std::string(12, ' '),
                     Readable(problem.what + ": " + problem.why));
  }
}

void PrintAbsentTools(const Report& report, TextWriter& writer) {
  std::string absent;
  for (const Problem& problem : report.problems) {
    if (problem.kind != ProblemKind::kToolAbsent) continue;
    absent.append(absent.empty() ? "" : ", ").append(problem.what);
  }
  if (absent.empty()) return;
  writer.Line();
  // A folder that is gone has no name.
  const std::string where = report.root.empty() ? "" : " in " + report.root;
  writer.FlowWords({}, "  ", Readable("Not installed" + where + ": " + absent));
}

void PrintHint(const std::string& root, TextWriter& writer) {
  writer.Line();
  const std::string where =
      root.empty() ? "kraid below the working folder, which is gone" : root + "/kraid";
  writer.FlowWords({}, "",
                   Readable("The tools kelvcmd, hrconf and arcconf are looked for in " + where +
                            "; --root names another directory. Most of them need root. "
                            "\"kraid-inventory KVXSG_krRawData\" shows what they said."));
}

void PrintTitle(const Controller& controller, TextWriter& writer) {
  std::string title = "Controller " + controller.NumberText();
  if (controller.name) title += " \"" + *controller.name + "\"";
  std::string kind = controller.type.value_or("type not reported");
  if (controller.tool) kind += " (" + controller.tool->Describe() + ")";
  writer.Flow({}, "  ", {{title + ":", Tint::kStrong}, {kind}}, " ");
}

/// "Charging, 91 percent"
Text DescribeBattery(const Battery& battery) {
  if (!battery.capacity) return battery.state.text;
  return battery.state.text.value_or("") + ", " + *battery.capacity;
}

void PrintFacts(const Controller& controller, TextWriter& writer) {
  const struct {
    const char* name;
    Text value;
    bool is_always_shown;
  } facts[] = {
      {"Status: ", controller.state.text, true},
      {"Firmware: ", controller.firmware.published, true},
      {"BIOS: ", controller.bios.published, true},
      {"Boot block: ", controller.boot_block.published, false},
      {"Driver: ", controller.driver, true},
      {"Battery: ", DescribeBattery(controller.battery), true},
      {"Serial: ", controller.serial_number, false},
      {"Slot: ", controller.slot, false},
  };
  std::vector<Span> spans;
  for (const auto& fact : facts) {
    if (fact.value) {
      spans.push_back({fact.name + *fact.value});
    } else if (fact.is_always_shown) {
      spans.push_back({std::string(fact.name) + "not reported", Tint::kFaint});
    }
  }
  writer.Flow({{"  "}}, "  ", spans, "   ");
}

void PrintOperation(const Operation& operation, TextWriter& writer) {
  std::string text = operation.Describe();
  if (text.empty()) return;
  if (operation.stripes_left && operation.stripes_left->text != "0") {
    text += ", " + operation.stripes_left->text + " of " +
            (operation.stripes ? operation.stripes->text : "") + " stripes left";
  }
  writer.FlowWords({{"  "}}, "    ", text);
}

/// For whoever sees the end of a report on a terminal that its beginning has left.
void PrintReminder(const Machine& machine, TextWriter& writer) {
  const std::size_t height = writer.GetDisplay().height;
  if (machine.findings.empty() || writer.GetLineCount() < height) return;
  Span count = {CountAttention(machine), TintOf(machine.findings.front().severity)};
  writer.Line();
  writer.Flow({}, "", {std::move(count), {"see the top or --brief"}}, ", ");
}

}  // namespace

int PrintText(const ViewInput& input, const ViewOptions& options, Sink& output) {
  const auto& [report, machine, comparison] = input;
  TextWriter writer(options.display, output);
  PrintSummary(report, machine, writer);
  PrintProblems(report, options.is_verbose, writer);
  if (comparison != nullptr) PrintChanges(*comparison, writer);
  if (options.is_brief) return report.exit_status;
  PrintAbsentTools(report, writer);
  if (machine.controllers.empty()) PrintHint(report.root, writer);
  for (const Controller& controller : machine.controllers) {
    writer.Line();
    PrintTitle(controller, writer);
    PrintFacts(controller, writer);
    PrintOperation(controller.operation, writer);
    PrintControllerTree(controller, writer);
    PrintControllerLogs(controller, writer);
  }
  PrintManagerEvents(machine.manager_log, writer);
  PrintReminder(machine, writer);
  return report.exit_status;
}
