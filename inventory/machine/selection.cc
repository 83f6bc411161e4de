#include "inventory/machine/selection.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <unordered_set>
#include <utility>

namespace {

/// Where a selected controller went; the findings of others go with them.
using NewIndices = std::vector<std::optional<std::size_t>>;

bool Follow(const NewIndices& indices, Subject& subject) {
  if (subject.kind == Subject::Kind::kTool) return true;
  const std::optional<std::size_t> index = indices[subject.controller];
  if (index) subject.controller = *index;
  return index.has_value();
}

std::string DescribeMissing(const std::vector<std::uint64_t>& numbers,
                            const std::unordered_set<std::uint64_t>& known) {
  std::string missing;
  for (const std::uint64_t number : numbers) {
    if (known.contains(number)) continue;
    missing.append(missing.empty() ? "" : ", ").append(std::to_string(number));
  }
  return missing.empty() ? "" : "no controller has the number " + missing;
}

}  // namespace

std::string SelectControllers(const std::vector<std::uint64_t>& numbers, Machine& machine) {
  const std::unordered_set<std::uint64_t> wanted(numbers.begin(), numbers.end());
  std::unordered_set<std::uint64_t> known;
  std::vector<Controller> selected;
  NewIndices indices;
  for (Controller& controller : machine.controllers) {
    const auto number = controller.number ? controller.number->value : std::nullopt;
    if (number) known.insert(*number);
    if (!number || !wanted.contains(*number)) {
      indices.emplace_back();
      continue;
    }
    indices.emplace_back(selected.size());
    selected.push_back(std::move(controller));
  }
  machine.controllers = std::move(selected);
  std::erase_if(machine.findings,
                [&](Finding& finding) { return !Follow(indices, finding.subject); });
  return DescribeMissing(numbers, known);
}

void SelectProblems(const Machine& selected, std::vector<Problem>& problems) {
  std::erase_if(problems, [&selected](const Problem& problem) {
    if (problem.is_blind || problem.tool.empty() || problem.controller == 0) return false;
    const ToolNumber tool = {problem.tool, problem.controller};
    return std::none_of(selected.controllers.begin(), selected.controllers.end(),
                        [&tool](const Controller& controller) { return controller.tool == tool; });
  });
}
