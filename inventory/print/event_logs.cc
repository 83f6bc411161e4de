#include "inventory/print/event_logs.h"

#include <string>
#include <utility>
#include <vector>

#include "inventory/machine/state_words.h"
#include "inventory/machine/wording.h"
#include "inventory/print/severity_tint.h"

namespace {

std::string Heading(const std::string& log, std::size_t count, std::size_t shown) {
  return log + ", " + DescribeEntries(count, shown) + ":";
}

/// What is fine is plain: most of a log is.
Tint TintOfEvent(const Text& severity) {
  const Severity judgement = JudgeEvent(severity);
  return judgement == Severity::kFine ? Tint::kPlain : TintOf(judgement);
}

std::string Describe(const DefunctEvent& event) {
  return event.local_time + "  " + event.place.GetText() + "  reason " + event.reason.value_or("") +
         "  " + event.description.value_or("");
}

}  // namespace

void PrintControllerLogs(const Controller& controller, TextWriter& writer) {
  const DefunctLog& defunct = controller.defunct_log;
  if (defunct.count + controller.soft_log.count + controller.hard_log.count == 0) return;
  writer.Line();
  if (defunct.count > 0) {
    writer.FlowWords({{"  "}}, "    ",
                     Heading("Defunct drive log", defunct.count, defunct.last.size()));
    for (const DefunctEvent& event : defunct.last) {
      writer.FlowWords({{"    "}}, std::string(6, ' '), Describe(event));
    }
  }
  for (const auto& [log, words] : {std::pair{"Soft event log", &controller.soft_log},
                                   std::pair{"Hard event log", &controller.hard_log}}) {
    if (words->count == 0) continue;
    std::vector<Span> pieces = {{Heading(log, words->count, words->last.size())}};
    for (const std::string& word : words->last) pieces.push_back({word});
    writer.Flow({{"  "}}, "    ", pieces, " ");
  }
}

void PrintManagerEvents(const ManagerLog& log, TextWriter& writer) {
  if (log.count == 0) return;
  writer.Line();
  writer.Line({{Heading("RAID manager", log.count, log.last.size()), Tint::kStrong}});
  for (const ManagerEvent& event : log.last) {
    std::vector<Span> pieces = {{event.time.text}};
    if (event.severity) pieces.push_back({*event.severity, TintOfEvent(event.severity)});
    if (event.machine) pieces.push_back({*event.machine + ":"});
    for (Span& word : WordsOf(event.message.value_or(""))) pieces.push_back(std::move(word));
    writer.Flow({{"  "}}, "    ", pieces, " ");
  }
}
