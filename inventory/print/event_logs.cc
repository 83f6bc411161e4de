#include "inventory/print/event_logs.h"

#include <string>
#include <utility>
#include <vector>

namespace {

std::string Heading(const std::string& log, std::size_t count, std::size_t shown) {
  const std::string all = log + ", " + std::to_string(count) + (count == 1 ? " entry" : " entries");
  return count > shown ? all + ", the last " + std::to_string(shown) + ":" : all + ":";
}

Tint TintOfEvent(const std::string& severity) {
  if (severity == "ERR") return Tint::kCritical;
  return severity == "WRN" ? Tint::kWarning : Tint::kPlain;
}

}  // namespace

void PrintControllerLogs(const Controller& controller, TextWriter& writer) {
  if (controller.ddd_count + controller.soft.count + controller.hard.count == 0) return;
  writer.Line();
  if (controller.ddd_count > 0) {
    writer.FlowWords(
        {{"  "}}, "    ",
        Heading("Defunct drive log", controller.ddd_count, controller.last_ddd.size()));
    for (const std::string& entry : controller.last_ddd) {
      writer.FlowWords({{"    "}}, std::string(6, ' '), entry);
    }
  }
  for (const auto& [log, words] : {std::pair{"Soft event log", &controller.soft},
                                   std::pair{"Hard event log", &controller.hard}}) {
    if (words->count == 0) continue;
    std::vector<Span> pieces = {{Heading(log, words->count, words->last.size())}};
    for (const std::string& word : words->last) pieces.push_back({word});
    writer.Flow({{"  "}}, "    ", pieces, " ");
  }
}

void PrintManagerEvents(const Machine& machine, TextWriter& writer) {
  if (machine.manager_event_count == 0) return;
  writer.Line();
  writer.Line(
      {{Heading("RAID manager", machine.manager_event_count, machine.last_manager_events.size()),
        Tint::kStrong}});
  for (const ManagerEvent& event : machine.last_manager_events) {
    std::vector<Span> pieces = {{event.time}};
    if (!event.severity.empty()) pieces.push_back({event.severity, TintOfEvent(event.severity)});
    if (!event.machine.empty()) pieces.push_back({event.machine + ":"});
    for (Span& word : WordsOf(event.message)) pieces.push_back(std::move(word));
    writer.Flow({{"  "}}, "    ", pieces, " ");
  }
}
