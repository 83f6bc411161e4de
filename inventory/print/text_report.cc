#include "inventory/print/text_report.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "inventory/base/readable.h"
#include "inventory/machine/health.h"
#include "inventory/machine/read_machine.h"
#include "inventory/machine/state_words.h"
#include "inventory/print/flow.h"

namespace {

constexpr char kNotReported[] = "not reported";

Tint TintOf(Severity severity) {
  switch (severity) {
    case Severity::kFine:
      return Tint::kGood;
    case Severity::kWarning:
      return Tint::kWarning;
    case Severity::kCritical:
      return Tint::kCritical;
  }
  return Tint::kPlain;
}

class TextPrinter {
 public:
  TextPrinter(const Report& report, const Display& display, Sink& output)
      : report_(report), machine_(ReadMachine(report)), writer_(display, output) {}

  void Print(const std::string& root) {
    PrintSummary();
    PrintProblems(root);
    for (const Controller& controller : machine_.controllers) PrintController(controller);
    PrintManager();
  }

 private:
  void PrintSummary() {
    const Health health = Assess(machine_);
    const std::size_t count = health.findings.size();
    std::string attention = "nothing needs attention";
    Tint tint = Tint::kGood;
    if (count > 0) {
      attention = std::to_string(count) + (count == 1 ? " needs attention" : " need attention");
      tint = TintOf(health.findings.front().severity);
    } else if (machine_.controllers.empty()) {
      attention = "no controller was found";
      tint = Tint::kWarning;
    }
    if (!std::all_of(report_.problems.begin(), report_.problems.end(), [](const Problem& problem) {
          return problem.extent == Problem::Extent::kAbsentTool;
        })) {
      attention += "; not all was collected";
      tint = std::max(tint, Tint::kWarning);
    }
    const std::string text = Readable(report_.host) + ": " + machine_.DescribeCounts() + ";";
    writer_.Flow({}, "  ", {{text, Tint::kStrong}, {attention, tint}}, " ");
    if (count > 0) writer_.Line();
    for (const Finding& finding : health.findings) {
      const bool is_critical = finding.severity == Severity::kCritical;
      writer_.FlowWords({{is_critical ? "CRITICAL  " : "WARNING   ", TintOf(finding.severity)}},
                        std::string(12, ' '), finding.where + ": " + finding.what);
    }
  }

  void PrintProblems(const std::string& root) {
    std::string absent;
    bool is_begun = false;
    for (const Problem& problem : report_.problems) {
      if (problem.extent == Problem::Extent::kAbsentTool) {
        absent.append(absent.empty() ? "" : ", ").append(problem.what);
        continue;
      }
      if (!is_begun) writer_.Line();
      is_begun = true;
      writer_.FlowWords({{"NOT COLLECTED  ", Tint::kWarning}}, std::string(12, ' '),
                        Readable(problem.what + ": " + problem.why));
    }
    if (!absent.empty()) {
      writer_.Line();
      writer_.FlowWords({}, "  ", Readable("Not installed in " + root + ": " + absent));
    }
    if (machine_.controllers.empty()) {
      writer_.Line();
      writer_.FlowWords({}, "",
                        Readable("The tools kelvcmd, hrconf and arcconf are looked for in " + root +
                                 "/kraid; --root names another directory. Most of them need root. "
                                 "\"kraid-inventory KVXSG_krRawData\" shows what they said."));
    }
  }

  void PrintController(const Controller& controller) {
    writer_.Line();
    std::string title = "Controller " + controller.number;
    if (!controller.name.empty()) title += " \"" + controller.name + "\"";
    std::string kind = controller.type.empty() ? "type not reported" : controller.type;
    if (!controller.tool.empty()) kind += " (" + controller.tool + ")";
    writer_.Flow({}, "  ", {{title + ":", Tint::kStrong}, {kind}}, " ");
    PrintFacts(controller);
    std::string operation = controller.DescribeOperation();
    if (!operation.empty()) {
      if (!controller.stripes_left.empty() && controller.stripes_left != "0") {
        operation += ", " + controller.stripes_left + " of " + controller.stripes + " stripes left";
      }
      writer_.FlowWords({{"  "}}, "    ", operation);
    }
    PrintTree(controller);
    PrintLogs(controller);
  }

  void PrintFacts(const Controller& controller) {
    std::string battery = controller.battery_status;
    if (!controller.battery_capacity.empty()) battery += ", " + controller.battery_capacity;
    const struct {
      const char* name;
      std::string value;
      bool is_always_shown;
    } facts[] = {
        {"Status", controller.status, true},
        {"Firmware", controller.firmware, true},
        {"BIOS", controller.bios, true},
        {"Boot block", controller.boot_block, false},
        {"Driver", controller.driver, true},
        {"Battery", battery, true},
        {"Serial", controller.serial_number, false},
        {"Slot", controller.slot, false},
    };
    std::vector<Span> spans;
    for (const auto& fact : facts) {
      if (fact.value.empty() && !fact.is_always_shown) continue;
      const bool is_missing = fact.value.empty();
      spans.push_back({std::string(fact.name) + ": " + (is_missing ? kNotReported : fact.value),
                       is_missing ? Tint::kFaint : Tint::kPlain});
    }
    writer_.Flow({{"  "}}, "  ", spans, "   ");
  }

  static std::string CountersText(const Device& device) {
    std::string text;
    for (const auto& [name, count] : device.counters) {
      if (!text.empty()) text += ", ";
      text.append(count).append(" ").append(name);
    }
    return text;
  }

  static Span StateOf(const std::string& state, Severity severity) {
    return {state.empty() ? kNotReported : state, TintOf(severity)};
  }

  static TreeRow RowOf(const LogicalDrive& drive) {
    TreeRow row;
    row.name = "Logical drive " + drive.number;
    std::string errors = drive.bad_stripes.empty() ? "" : drive.bad_stripes + " bad stripes";
    if (IsBlocked(drive)) {
      errors.append(errors.empty() ? "" : ", ").append("access blocked: " + drive.access_blocked);
    }
    row.cells = {StateOf(drive.state, JudgeLogicalDrive(drive.state)),
                 {drive.size},
                 {drive.raid_level},
                 {},
                 {},
                 {},
                 {drive.name},
                 {errors, Tint::kWarning}};
    return row;
  }

  static TreeRow RowOf(const Device& device) {
    TreeRow row;
    row.name = device.place;
    row.cells = {StateOf(device.state, JudgeDevice(device.state)),
                 {device.size},
                 {device.type},
                 {device.predicts_failure, PredictsFailure(device) ? Tint::kWarning : Tint::kPlain},
                 {device.firmware},
                 {device.serial_number},
                 {device.model},
                 {CountersText(device), Tint::kWarning}};
    return row;
  }

  static TreeRow RowOf(const Controller& controller, const DriveGroup& group) {
    TreeRow top;
    std::vector<TreeRow> drives;
    for (const std::size_t i : group.logical_drives) {
      drives.push_back(RowOf(controller.logical_drives[i]));
    }
    if (group.array.empty() && drives.size() == 1) {
      top = std::move(drives.front());
      drives.clear();
    } else if (!group.array.empty()) {
      top.name = "Array " + group.array;
    } else {
      const bool is_rest = drives.empty() && group.absent_places.empty();
      top.name = is_rest ? "In no array" : "Array";
    }
    top.children = std::move(drives);
    for (const std::size_t i : group.devices) {
      top.children.push_back(RowOf(controller.devices[i]));
    }
    for (const std::string& place : group.absent_places) {
      top.children.push_back({place, Tint::kPlain, {{"missing", Tint::kCritical}}, {}});
    }
    for (const std::string& place : group.shared_places) {
      top.children.push_back({place, Tint::kPlain, {{"see above", Tint::kFaint}}, {}});
    }
    return top;
  }

  void PrintTree(const Controller& controller) {
    std::vector<TreeRow> rows;
    for (const DriveGroup& group : controller.groups) rows.push_back(RowOf(controller, group));
    for (const auto& [drive, count] : controller.stray_bad_stripes) {
      LogicalDrive stray;
      stray.number = drive;
      stray.state = "not listed";
      stray.bad_stripes = count;
      rows.push_back(RowOf(stray));
    }
    for (Device stray : controller.stray_counters) {
      stray.state = "not listed";
      rows.push_back(RowOf(stray));
    }
    if (rows.empty()) return;
    writer_.Line();
    WriteTree(
        writer_, "  ",
        {"NAME", "STATE", "SIZE", "TYPE", "PFA", "FIRMWARE", "SERIAL", "MODEL/NAME", "ERRORS"},
        rows);
  }

  void PrintLogs(const Controller& controller) {
    if (controller.ddd_count + controller.soft.count + controller.hard.count == 0) return;
    writer_.Line();
    if (controller.ddd_count > 0) {
      writer_.FlowWords(
          {{"  "}}, "    ",
          "Defunct drive log, " + Heading(controller.ddd_count, controller.last_ddd.size()));
      for (const std::string& entry : controller.last_ddd) {
        writer_.FlowWords({{"    "}}, std::string(6, ' '), entry);
      }
    }
    for (const auto& [name, words] :
         {std::pair{"Soft", &controller.soft}, std::pair{"Hard", &controller.hard}}) {
      if (words->count == 0) continue;
      std::vector<Span> pieces = {
          {std::string(name) + " event log, " + Heading(words->count, words->last.size())}};
      for (const std::string& word : words->last) pieces.push_back({word});
      writer_.Flow({{"  "}}, "    ", pieces, " ");
    }
  }

  static std::string Heading(std::size_t count, std::size_t shown) {
    const std::string all = std::to_string(count) + (count == 1 ? " entry" : " entries");
    return count > shown ? all + ", the last " + std::to_string(shown) + ":" : all + ":";
  }

  void PrintManager() {
    if (machine_.manager_event_count == 0) return;
    writer_.Line();
    writer_.Line({{"RAID manager, " +
                       Heading(machine_.manager_event_count, machine_.last_manager_events.size()),
                   Tint::kStrong}});
    for (const ManagerEvent& event : machine_.last_manager_events) {
      const Tint tint = event.severity == "ERR"   ? Tint::kCritical
                        : event.severity == "WRN" ? Tint::kWarning
                                                  : Tint::kPlain;
      std::vector<Span> pieces = {{event.time}};
      if (!event.severity.empty()) pieces.push_back({event.severity, tint});
      if (!event.machine.empty()) pieces.push_back({event.machine + ":"});
      std::istringstream words(event.message);
      for (std::string word; words >> word;) pieces.push_back({word});
      writer_.Flow({{"  "}}, "    ", pieces, " ");
    }
  }

  const Report& report_;
  Machine machine_;
  TextWriter writer_;
};

}  // namespace

void PrintText(const Report& report, const std::string& root, const Display& display,
               Sink& output) {
  TextPrinter(report, display, output).Print(root);
}

void PrintInstances(const Report& report, const Display& display, Sink& output) {
  TextWriter writer(display, output);
  bool is_first = true;
  for (const auto& instance : report.repository.GetCommitted()) {
    if (!is_first) writer.Line();
    is_first = false;
    writer.Line({{Readable(*instance->class_name), Tint::kStrong}});
    std::size_t width = 0;
    for (const standin::StoredProperty& property : instance->properties) {
      width = std::max(width, property.name->size());
    }
    // Long names leave their values half of the width.
    const std::string indent(std::min(width + 4, display.width / 2), ' ');
    for (const standin::StoredProperty& property : instance->properties) {
      std::string name = "  " + *property.name;
      name.resize(std::max(name.size() + 2, indent.size()), ' ');
      const std::vector<Span> start = {{name, Tint::kFaint}};
      if (!property.value.IsArray()) {
        writer.FlowWords(start, indent, Readable(property.value.ToString()));
        continue;
      }
      bool is_begun = false;
      for (const auto& element : property.value.GetArray()) {
        writer.FlowWords(is_begun ? std::vector<Span>{{indent}} : start, indent,
                         ReadableLine(element.ToString()));
        is_begun = true;
      }
      if (!is_begun) writer.Line(start);
    }
  }
  if (is_first) writer.Line({{"No instances."}});
  for (const Problem& problem : report.problems) {
    writer.FlowWords({{"Not collected: ", Tint::kWarning}}, "  ",
                     Readable(problem.what + ": " + problem.why));
  }
}
