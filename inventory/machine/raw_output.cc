#include "inventory/machine/raw_output.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>

#include "inventory/base/readable.h"
#include "inventory/machine/property_text.h"
#include "schema/published_texts.h"

namespace {

constexpr char kBatteryHeading[] = "Battery information";
constexpr char kStatusLabel[] = "Status";

}  // namespace

RawOutput ReadRawOutput(const standin::StoredInstance& raw_record) {
  std::istringstream command(PropertyText(raw_record, "Command"));
  std::string program;
  std::string word;
  RawOutput output;
  if (!(command >> program >> word >> output.number) || word != kGetConfigWord) return output;
  output.tool = program.substr(program.rfind('/') + 1);
  const NKVXHMZ20::TCIMValue* results = raw_record.Find("RawResults");
  if (!IsArrayOfStrings(results)) return output;
  bool is_battery = false;
  for (const std::string_view line : results->GetStrings()) {
    const auto holds = [line](const char* text) {
      return line.find(text) != std::string_view::npos;
    };
    output.has_controller = output.has_controller || holds(kControllerHeading);
    output.has_devices = output.has_devices || holds(kPhysicalDeviceHeading);
    is_battery = is_battery || holds(kBatteryHeading);
    // The published status is that of the first line with the word: mostly the controller's own.
    if (is_battery && output.battery_status.empty() && holds(kStatusLabel)) {
      output.battery_status =
          Readable(std::string(line.substr(std::min(line.find(':'), line.size() - 1) + 1)));
    }
  }
  return output;
}

namespace {

/// What the plug-in made of one controller's configuration.
struct Parsed {
  std::string tool;
  int number = 0;
  bool is_found = false;
};

/// Of kelvcmd's, a controller without a section of devices is never published.
bool IsFound(const std::string& tool, bool has_controller, bool has_devices) {
  return has_controller && (has_devices || tool != kKelvcmd);
}

/// The plug-in asks for each configuration twice, the second time to parse it; when it collects
/// anew, twice again. The last time counts.
std::vector<Parsed> ParsedOf(const Report& report) {
  std::vector<Parsed> all;
  std::map<std::pair<std::string, int>, std::size_t> indices;
  std::map<std::pair<std::string, int>, int> times;
  for (const RunRequest& request : report.requests) {
    const RunRecord& run = report.runs[request.record];
    if (run.arguments.empty() || run.arguments[0] != kGetConfigWord) continue;
    const std::pair key(run.Tool(), run.Controller());
    if (++times[key] % 2 != 0) continue;
    const auto [found, is_new] = indices.emplace(key, all.size());
    if (is_new) all.push_back({key.first, key.second, false});
    const auto holds = [&run](const char* text) {
      return run.output->find(text) != std::string::npos;
    };
    all[found->second].is_found =
        !request.is_refused &&
        IsFound(key.first, holds(kControllerHeading), holds(kPhysicalDeviceHeading));
  }
  return all;
}

std::vector<Parsed> ParsedOf(const std::vector<RawOutput>& outputs) {
  std::vector<Parsed> all;
  for (const RawOutput& output : outputs) {
    if (!output.has_controller) continue;
    all.push_back({output.tool, output.number, IsFound(output.tool, true, output.has_devices)});
  }
  return all;
}

}  // namespace

void AddRawOutputs(const std::vector<RawOutput>& outputs, const Report& report, Machine& machine) {
  std::map<std::pair<std::string, int>, Controller*> published;
  std::size_t next = 0;
  int offset = 0;
  std::string tool;
  for (const Parsed& parsed : report.requests.empty() ? ParsedOf(outputs) : ParsedOf(report)) {
    if (tool != parsed.tool) offset = static_cast<int>(next);
    tool = parsed.tool;
    if (!parsed.is_found || next >= machine.controllers.size() ||
        machine.controllers[next].NumberText() != std::to_string(parsed.number + offset)) {
      continue;
    }
    Controller& controller = machine.controllers[next++];
    controller.tool = ToolNumber{parsed.tool, parsed.number};
    controller.battery.state.text.reset();
    published[{parsed.tool, parsed.number}] = &controller;
  }
  for (const RawOutput& output : outputs) {
    if (!output.has_controller) continue;
    const auto controller = published.find({output.tool, output.number});
    if (controller != published.end()) {
      controller->second->battery.state.text = MakeText(output.battery_status);
    } else {
      machine.unpublished.push_back({output.tool, output.number});
    }
  }
}
