#include "inventory/machine/raw_output.h"

#include <algorithm>
#include <sstream>

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
  if (results == nullptr || !results->IsArray()) return output;
  bool is_battery = false;
  for (const NKVXHMZ20::TCIMValue& element : results->GetArray()) {
    const std::string line = element.ToString();
    const auto holds = [&line](const char* text) { return line.find(text) != std::string::npos; };
    output.has_controller = output.has_controller || holds(kControllerHeading);
    output.has_devices = output.has_devices || holds(kPhysicalDeviceHeading);
    is_battery = is_battery || holds(kBatteryHeading);
    // The published status is that of the first line with the word: mostly the controller's own.
    if (is_battery && output.battery_status.empty() && holds(kStatusLabel)) {
      output.battery_status = Readable(line.substr(std::min(line.find(':'), line.size() - 1) + 1));
    }
  }
  return output;
}

// The plug-in numbers each tool's controllers on from those that it found before.
void AddRawOutputs(const std::vector<RawOutput>& outputs, Machine& machine) {
  std::size_t next = 0;
  int offset = 0;
  const std::string* tool = nullptr;
  for (const RawOutput& output : outputs) {
    if (!output.has_controller) continue;
    if (tool == nullptr || *tool != output.tool) offset = static_cast<int>(next);
    tool = &output.tool;
    // Of kelvcmd's, a controller without a section of devices is never published.
    const bool is_published =
        next < machine.controllers.size() && (output.has_devices || output.tool != kKelvcmd) &&
        machine.controllers[next].number == std::to_string(output.number + offset);
    const std::string name = output.tool + " " + std::to_string(output.number);
    if (!is_published) {
      machine.unpublished.push_back(name);
      continue;
    }
    machine.controllers[next].tool = name;
    machine.controllers[next].battery_status = output.battery_status;
    ++next;
  }
}
