#include "fuzz/views.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "collect/kraid_collect_data.h"
#include "fuzz/expect.h"
#include "inventory/machine/read_machine.h"
#include "inventory/machine/unread_lines.h"
#include "inventory/print/check_line.h"
#include "inventory/print/html/html_page.h"
#include "inventory/print/instance_list.h"
#include "inventory/print/json_printer.h"
#include "inventory/print/machine_json.h"
#include "inventory/print/mof_printer.h"
#include "inventory/print/openmetrics_printer.h"
#include "inventory/print/text_report.h"
#include "inventory/runs/run_problems.h"
#include "inventory/runs/tool_runs.h"
#include "plugin/dispatch.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "schema/mof_reader.h"
#include "standin/host_services.h"

namespace {

/// A text without the sequences that colour it, and without blanks at the ends of its lines, which
/// stay where they are coloured.
std::string Uncolored(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t end = text.compare(i, 2, "\x1b[") == 0
                                ? text.find_first_not_of("0123456789;", i + 2)
                                : std::string::npos;
    if (end != std::string::npos && text[end] == 'm') {
      i = end;
      continue;
    }
    if (text[i] == '\n') plain.erase(plain.find_last_not_of(' ') + 1);
    plain += text[i];
  }
  return plain;
}

std::string MachineText(const Machine& machine) {
  TextSink sink;
  JsonWriter json(sink);
  WriteMachineJson(machine, json);
  return std::move(sink.text);
}

/// What is read back of it: not the verdict, which is that of the findings.
nlohmann::json Parts(const std::string& machine) {
  nlohmann::json parts = nlohmann::json::parse(machine);
  parts.erase("verdict");
  return parts;
}

const std::string& SchemaText() {
  static const std::string text = [] {
    std::ifstream file(KRAID_SOURCE_DIR "/schema/kvxsg.mof");
    return std::string(std::istreambuf_iterator<char>(file), {});
  }();
  return text;
}

void ExpectMof(const std::string& mof) {
  try {
    ReadMof({{"schema", SchemaText()}, {"instances", mof}});
  } catch (const std::runtime_error& error) {
    Expect(false, std::string("MOF is refused: ") + error.what(), mof);
  }
}

void ExpectJson(const std::string& text) {
  try {
    Expect(nlohmann::json::parse(text).contains("machine"), "JSON has no machine", text);
  } catch (const nlohmann::json::exception& error) {
    Expect(false, std::string("JSON is refused: ") + error.what(), text);
  }
}

/// All that the plug-in publishes. Returns why not, where an output is to blame.
std::optional<std::string> Publish(const boost::shared_ptr<standin::Repository>& repository) {
  KraidCollectData collector(nullptr);
  try {
    collector.InitData();
  } catch (const std::out_of_range& error) {
    return error.what();
  }
  CollectRaidMgrData manager_log(nullptr);
  for (const DispatchEntry& entry : DispatchList()) {
    entry.publish({repository, repository->GetClass(entry.class_name), collector, manager_log});
  }
  return std::nullopt;
}

/// Whether each part can be told from the others of its kind: documents link them by these.
bool HasDistinctParts(const Controller& controller) {
  std::set<std::string> names;
  for (const LogicalDrive& drive : controller.logical_drives) {
    if (!drive.number || !names.insert("drive " + drive.number->text).second) return false;
  }
  for (const Device& device : controller.devices) {
    if (!names.insert("device " + device.place.GetText()).second) return false;
  }
  for (const DriveArray& array : controller.arrays) {
    if (!names.insert("array " + array.Name()).second) return false;
  }
  return true;
}

/// Its own script and style only, no control character, and no end tag of theirs from elsewhere.
void ExpectPage(const std::string& page) {
  const auto count = [&page](std::string_view part) {
    std::size_t found = 0;
    for (auto at = page.find(part); at != std::string::npos; at = page.find(part, at + 1)) ++found;
    return found;
  };
  const bool is_own = count("<script") == 1 && count("<style") == 1 && count("<body") == 1;
  Expect(is_own && page.ends_with("</html>\n"), "markup from elsewhere", page);
  const bool is_text = std::none_of(page.begin(), page.end(), [](char c) {
    return (c >= 0 && c < ' ' && c != '\n' && c != '\t') || c == '\x7f';
  });
  Expect(is_text, "a control character in the page", page);
}

}  // namespace

Collected CollectAgain(const Recording& recording) {
  ToolRuns tools(recording, {});
  standin::HostServices services = ReplayServices(recording);
  services.spawn_process = [&tools](const auto& program, const auto& arguments) {
    return tools.Run(program, arguments);
  };
  const standin::ScopedServices in_force(std::move(services));
  Collected collected;
  for (bool is_refused = true; is_refused;) {
    tools.BeginAttempt();
    collected.repository = std::make_unique<standin::Repository>();
    // The plug-in only gets to see it.
    const auto why = Publish({collected.repository.get(), [](standin::Repository*) {}});
    is_refused = why && tools.RefuseLatestRequest(*why);
    Expect(!why || is_refused, "the collection throws, and no output is to blame");
  }
  Expect(collected.repository->GetUndeclared().empty(), "the schema lacks what is published");
  collected.report = std::make_unique<Report>(
      Report{recording.host, 0, FindRunProblems(tools.GetRecords()), *collected.repository, 0,
             tools.GetRecords(), tools.GetRequests(), recording.collected_at, recording.duration,
             recording.root});
  Report& report = *collected.report;
  collected.machine = ReadMachine(report);
  for (Problem& problem : FindUnreadLines(report, collected.machine)) {
    report.problems.push_back(std::move(problem));
  }
  return collected;
}

void ExpectGoodViews(const Report& report, const Machine& machine, const Comparison* comparison) {
  const auto print = [&](PrintView view, const ViewOptions& options, int* status = nullptr) {
    TextSink sink;
    const int result = view({report, machine, comparison}, options, sink);
    if (status != nullptr) *status = result;
    return std::move(sink.text);
  };
  ViewOptions options;
  options.is_verbose = true;
  options.runs = RunsShown::kAll;
  // The instances are the same whatever they are compared with.
  options.has_instances = comparison == nullptr;
  if (options.has_instances) ExpectMof(print(PrintMof, options));
  ExpectJson(print(PrintJson, options));
  ExpectMetrics(print(PrintOpenMetrics, options));
  ExpectPage(print(PrintHtml, options));
  int status = 0;
  const std::string check = print(PrintCheck, options, &status);
  ExpectCheckLine(check, status);

  ExpectFitForTerminal(print(PrintText, options));
  options.display = {40, false, true, 24};
  if (options.has_instances) ExpectFitForTerminal(print(PrintInstances, options));
  for (const bool is_brief : {false, true}) {
    options.is_brief = is_brief;
    options.display.color = false;
    const std::string plain = print(PrintText, options);
    ExpectFitForTerminal(plain);
    ExpectWithin(plain, options.display.width);
    options.display.color = true;
    Expect(Uncolored(print(PrintText, options)) == Uncolored(plain), "colours change it", plain);
  }
}

void ExpectReadBack(const Machine& machine) {
  const bool is_distinct =
      std::all_of(machine.controllers.begin(), machine.controllers.end(), HasDistinctParts);
  const std::string written = MachineText(machine);
  const nlohmann::json parts = Parts(written);
  try {
    const Machine read = ReadMachineJson(nlohmann::json::parse(written));
    const nlohmann::json again = Parts(MachineText(read));
    Expect(again == parts || !is_distinct, "a machine is read back as another",
           again == parts ? "" : nlohmann::json::diff(parts, again).dump(1));
  } catch (const std::runtime_error& error) {
    Expect(false, std::string("a machine is not read back: ") + error.what(), written);
  }
}
