#include "inventory/print/instance_list.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/print/flow.h"

namespace {

std::string LineOf(std::string_view text) { return ReadableLine(std::string(text)); }
std::string LineOf(std::uint32_t number) { return std::to_string(number); }

void PrintProperty(const std::string& name, const NKVXHMZ20::TCIMValue& value,
                   const std::string& indent, TextWriter& writer) {
  std::string start = "  " + name;
  start.append(std::max(WidthOf(start) + 2, indent.size()) - WidthOf(start), ' ');
  std::vector<Span> lead = {{start, Tint::kFaint}};
  if (!value.IsArray()) {
    writer.FlowWords(lead, indent, Readable(value.ToString()));
    return;
  }
  value.ForEach([&](const auto& element) {
    writer.FlowWords(lead, indent, LineOf(element));
    lead = {{indent}};
  });
  if (value.GetCount() == 0) writer.Line(lead);
}

void PrintInstance(const standin::StoredInstance& instance, TextWriter& writer) {
  writer.Line({{Readable(*instance.class_name), Tint::kStrong}});
  std::vector<std::string> names;
  std::size_t width = 0;
  for (const standin::StoredProperty& property : instance.properties) {
    width = std::max(width, WidthOf(names.emplace_back(Readable(*property.name))));
  }
  // Long names leave their values half of the width.
  const std::string indent(std::min(width + 4, writer.GetDisplay().width / 2), ' ');
  for (std::size_t i = 0; i < names.size(); ++i) {
    PrintProperty(names[i], instance.properties[i].value, indent, writer);
  }
}

}  // namespace

int PrintInstances(const ViewInput& input, const ViewOptions& options, Sink& output) {
  const Report& report = input.report;
  TextWriter writer(options.display, output);
  const auto& committed = report.repository.GetCommitted();
  for (const auto& instance : committed) {
    if (&instance != &committed.front()) writer.Line();
    PrintInstance(*instance, writer);
  }
  if (committed.empty()) writer.Line({{"No instances."}});
  for (const Problem& problem : report.problems) {
    writer.FlowWords({{"Not collected: ", Tint::kWarning}}, "  ",
                     Readable(problem.what + ": " + problem.why));
  }
  return report.exit_status;
}
