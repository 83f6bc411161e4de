#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/machine/state_words.h"
#include "inventory/print/html/html_parts.h"

namespace {

struct Fact {
  const char* name;
  Text value;
  Severity judgement = Severity::kFine;
};

/// "Charging, 91 percent"
Fact BatteryFact(const Battery& battery) {
  Fact fact = {"Battery", battery.state.text, battery.state.judgement};
  for (const Text& more : {battery.capacity, battery.time_remaining}) {
    if (more) fact.value = (fact.value ? *fact.value + ", " : "") + *more;
  }
  return fact;
}

/// Said only where it may be so.
Fact WarmthFact(const Flag& over_temperature) {
  const bool is_warm = JudgeFlag(over_temperature) != Severity::kFine;
  return {"Battery too warm", is_warm ? over_temperature.text : std::nullopt, Severity::kWarning};
}

std::vector<Fact> FactsOf(const Controller& controller) {
  return {
      {"Status", controller.state.text.value_or("not reported"), controller.state.judgement},
      BatteryFact(controller.battery),
      WarmthFact(controller.battery.over_temperature),
      {"Firmware", controller.firmware.Reported()},
      {"BIOS", controller.bios.Reported()},
      {"Boot block", controller.boot_block.Reported()},
      {"Driver", controller.driver},
      {"Serial", controller.serial_number},
      {"Slot", controller.slot},
      {"FRU", controller.fru},
      {"Part number", controller.part_number},
  };
}

void WriteFacts(const Controller& controller, HtmlWriter& html) {
  html("<ul class=\"facts\">");
  for (const Fact& fact : FactsOf(controller)) {
    if (!fact.value) continue;
    html("<li><small>{}</small> ", fact.name);
    if (fact.judgement != Severity::kFine) WriteMark(fact.judgement, html);
    html("{}", *fact.value);
  }
  html("</ul>\n");
}

/// How far it is, as a bar, where the controller tells that.
void WriteOperation(const Operation& operation, HtmlWriter& html) {
  if (!operation.IsReported()) return;
  html("<p class=\"work\">");
  if (operation.judgement != Severity::kFine) WriteMark(operation.judgement, html);
  html("<span>{}</span>", operation.Describe());
  const auto& [all, left] = std::tie(operation.stripes, operation.stripes_left);
  if (operation.Progress() && !IsZero(*left)) {
    const std::uint64_t done = *all->value - *left->value;
    html("<progress aria-label=\"{}\" max=\"{}\" value=\"{}\"></progress>", operation.Describe(),
         *all->value, done);
    // Not of the ratio: a whole number of percent would come out below itself.
    html("<span>{} %, {} of {} stripes left</span>",
         static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(*all->value)),
         left->text, all->text);
  } else if (left && !IsZero(*left)) {
    html("<span>{} stripes left</span>", left->text);
  }
  html("</p>\n");
}

void WriteCard(const Controller& controller, std::size_t index, Severity worst, HtmlWriter& html) {
  html("<article class=\"card {}\" id=\"c{}\" aria-labelledby=\"hc{}\">\n", ClassOf(worst), index,
       index);
  html("<h3 id=\"hc{}\">", index);
  if (worst != Severity::kFine) WriteMark(worst, html);
  html("{} <span>{}</span></h3>\n", TitleOf(controller),
       controller.type.value_or("type not reported") +
           (controller.tool ? ", " + controller.tool->Describe() : ""));
  WriteFacts(controller, html);
  WriteOperation(controller.operation, html);
  WriteDrawing(controller, index, html);
  html("</article>\n");
}

void WriteHint(const Report& report, HtmlWriter& html) {
  html("<p>The tools kelvcmd, hrconf and arcconf are looked for in {}; ",
       report.root.empty() ? "kraid below the working folder, which is gone"
                           : report.root + "/kraid");
  html("<code>--root</code> names another directory. Most of them need root.</p>\n");
}

}  // namespace

void WriteControllers(const ViewInput& input, HtmlWriter& html) {
  const Machine& machine = input.machine;
  html("<section id=\"machine\" aria-labelledby=\"hm\">\n<h2 id=\"hm\">Machine</h2>\n");
  if (machine.controllers.empty()) WriteHint(input.report, html);
  if (!machine.controllers.empty()) {
    html("<p class=\"legend\">");
    for (const auto& [severity, words] : {std::pair{Severity::kFine, "in order"},
                                          {Severity::kWarning, "needs attention"},
                                          {Severity::kCritical, "has failed"}}) {
      html("<span>");
      WriteMark(severity, html);
      html("{}</span>", words);
    }
    html("<span>Boxes of one array have its outline and its letter.</span></p>\n");
  }
  // Of the controller or any of its parts.
  std::vector<Severity> worst(machine.controllers.size(), Severity::kFine);
  for (const Finding& finding : machine.findings) {
    if (finding.subject.kind == Subject::Kind::kTool) continue;
    Severity& of_controller = worst[finding.subject.controller];
    of_controller = std::max(of_controller, finding.severity);
  }
  html("<div class=\"cards\">\n");
  for (std::size_t i = 0; i < machine.unpublished.size(); ++i) {
    html("<article class=\"card cr\" id=\"t{}\">\n<h3>", i);
    WriteMark(Severity::kCritical, html);
    html("{} <span>its output tells of a controller that was not collected</span></h3>\n",
         machine.unpublished[i].Describe());
    html("</article>\n");
  }
  for (std::size_t i = 0; i < machine.controllers.size(); ++i) {
    WriteCard(machine.controllers[i], i, worst[i], html);
  }
  html("</div>\n</section>");
}
