// The event logs: all that have a time on one line, below it their texts.

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "inventory/base/times.h"
#include "inventory/machine/state_words.h"
#include "inventory/print/html/html_parts.h"

namespace {

/// Seconds of the clock on the wall: controllers know no zone. Of "2004-11-27 02:14:08", whatever
/// stands behind it.
std::optional<std::int64_t> WallClock(std::string text) {
  static constexpr std::size_t kLength = 19;
  if (text.size() < kLength) return std::nullopt;
  text.resize(kLength);
  text[10] = 'T';
  const std::optional<Instant> instant = ParseRfc3339(text + "Z");
  if (!instant) return std::nullopt;
  return std::chrono::floor<std::chrono::seconds>(instant->utc).time_since_epoch().count();
}

struct Moment {
  std::int64_t seconds;
  const std::string& text;  // of its log
};

/// One row of the time line.
struct Lane {
  std::string name;
  Severity severity = Severity::kFine;
  std::vector<Moment> moments = {};
};

void Add(Lane& lane, const std::string& time) {
  if (const auto seconds = WallClock(time)) lane.moments.push_back({*seconds, time});
}

std::vector<Lane> LanesOf(const Machine& machine) {
  std::vector<Lane> lanes;
  std::map<Text, Lane> of_manager;
  for (const ManagerEvent& event : machine.manager_log.last) {
    Lane& lane = of_manager[event.severity];
    lane.name = "Manager " + event.severity.value_or("");
    lane.severity = JudgeEvent(event.severity);
    Add(lane, event.time.text);
  }
  lanes.reserve(of_manager.size() + machine.controllers.size());
  for (auto& [severity, lane] : of_manager) lanes.push_back(std::move(lane));
  std::stable_sort(lanes.begin(), lanes.end(),
                   [](const Lane& a, const Lane& b) { return a.severity > b.severity; });
  for (const Controller& controller : machine.controllers) {
    Lane lane = {TitleOf(controller) + " defunct", Severity::kCritical};
    for (const DefunctEvent& event : controller.defunct_log.last) {
      Add(lane, event.local_time);
    }
    lanes.push_back(std::move(lane));
  }
  std::erase_if(lanes, [](const Lane& lane) { return lane.moments.empty(); });
  return lanes;
}

void WriteLane(const Lane& lane, std::int64_t first, std::int64_t span, HtmlWriter& html) {
  html("<dt>{}<dd><svg class=\"{}\" role=\"img\"", lane.name, ClassOf(lane.severity));
  html(" aria-label=\"{}: {}\">", lane.name,
       DescribeEntries(lane.moments.size(), lane.moments.size()));
  for (const Moment& moment : lane.moments) {
    const std::int64_t share = (moment.seconds - first) * 1000 / span;
    html("<circle cx=\"{}.{}%\" r=\"5\"><title>{}</title></circle>", share / 10, share % 10,
         moment.text);
  }
  html("</svg>\n");
}

void WriteTimeLine(const Machine& machine, HtmlWriter& html) {
  const std::vector<Lane> lanes = LanesOf(machine);
  if (lanes.empty()) return;
  std::vector<const Moment*> all;
  for (const Lane& lane : lanes) {
    for (const Moment& moment : lane.moments) all.push_back(&moment);
  }
  const auto [first, last] =
      std::minmax_element(all.begin(), all.end(),
                          [](const Moment* a, const Moment* b) { return a->seconds < b->seconds; });
  const std::int64_t span = std::max<std::int64_t>((*last)->seconds - (*first)->seconds, 1);
  html("<dl class=\"line\">\n");
  for (const Lane& lane : lanes) WriteLane(lane, (*first)->seconds, span, html);
  html("<dt class=\"ends\">By the clocks of the logs<dd class=\"ends\"><span>{}</span>",
       (*first)->text.substr(0, 10));
  html("<span>{}</span>\n</dl>\n", (*last)->text.substr(0, 10));
}

void WriteManagerLog(const ManagerLog& log, HtmlWriter& html) {
  if (log.count == 0) return;
  html("<h3>RAID manager <span>{}</span></h3>\n", DescribeEntries(log.count, log.last.size()));
  std::set<std::string> severities;
  for (const ManagerEvent& event : log.last) severities.insert(event.severity.value_or("other"));
  html("<form class=\"filter\" data-of=\"log\" hidden><label>Show <select><option value=\"\">all");
  for (const std::string& severity : severities)
    html("<option value=\"={}\">{}", severity, severity);
  html("</select></label> <label>with <input type=\"search\" placeholder=\"any text\"></label>");
  html(" <output>all shown</output></form>\n<table class=\"wide log\" id=\"log\">\n");
  html("<caption>Entries of the RAID manager</caption>\n<thead><tr><th scope=\"col\">Time");
  html("<th scope=\"col\">Severity<th scope=\"col\">Machine<th scope=\"col\">Message</thead>\n");
  html("<tbody>\n");
  for (const ManagerEvent& event : log.last) {
    const std::string severity = event.severity.value_or("other");
    html("<tr class=\"{}\" data-s=\"={}\"><td>{}<td>{}<td>{}<td>{}</tr>\n",
         ClassOf(JudgeEvent(event.severity)), severity, event.time.text, severity, event.machine,
         event.message);
  }
  html("</tbody></table>\n");
}

void WriteWords(const char* name, const EventWords& words, HtmlWriter& html) {
  if (words.count == 0) return;
  html("<p>{}, {}: <code>", name, DescribeEntries(words.count, words.last.size()));
  const char* gap = "";
  for (const std::string& word : words.last) {
    html("{}{}", gap, word);
    gap = " ";
  }
  html("</code></p>\n");
}

void WriteControllerLogs(const Controller& controller, HtmlWriter& html) {
  const DefunctLog& defunct = controller.defunct_log;
  if (defunct.count + controller.soft_log.count + controller.hard_log.count == 0) return;
  html("<h3>{}</h3>\n", TitleOf(controller));
  if (defunct.count > 0) {
    html("<table class=\"wide defunct\">\n<caption>Defunct drive log, {}</caption>\n",
         DescribeEntries(defunct.count, defunct.last.size()));
    html("<thead><tr><th scope=\"col\">Time<th scope=\"col\">Device<th scope=\"col\">Reason");
    html("<th scope=\"col\">Description</thead>\n<tbody>\n");
    for (const DefunctEvent& event : defunct.last) {
      html("<tr><td>{}<td>{}<td>{}<td>{}</tr>\n", event.local_time, event.place.GetText(),
           event.reason, event.description);
    }
    html("</tbody></table>\n");
  }
  WriteWords("Soft event log", controller.soft_log, html);
  WriteWords("Hard event log", controller.hard_log, html);
}

}  // namespace

void WriteEvents(const ViewInput& input, HtmlWriter& html) {
  const Machine& machine = input.machine;
  html("<section id=\"events\" aria-labelledby=\"he\">\n<h2 id=\"he\">Event logs</h2>\n");
  const bool is_empty =
      machine.manager_log.count == 0 &&
      std::all_of(machine.controllers.begin(), machine.controllers.end(), [](const auto& c) {
        return c.defunct_log.count + c.soft_log.count + c.hard_log.count == 0;
      });
  if (is_empty) html("<p>No log has an entry.</p>\n");
  WriteTimeLine(machine, html);
  WriteManagerLog(machine.manager_log, html);
  for (const Controller& controller : machine.controllers) WriteControllerLogs(controller, html);
  html("</section>");
}
