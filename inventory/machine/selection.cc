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

std::optional<std::uint64_t> NumberOf(const Controller& controller) {
  return controller.number ? controller.number->value : std::nullopt;
}

/// Adds to `known` the numbers of controllers that are gone.
void SelectChanges(const NewIndices& indices, const std::unordered_set<std::uint64_t>& wanted,
                   Comparison& comparison, std::unordered_set<std::uint64_t>& known) {
  std::erase_if(comparison.changes, [&](Change& change) {
    if (!change.subject) return false;
    if (!change.is_of_earlier) return !Follow(indices, *change.subject);
    const std::size_t before = change.subject->controller;
    // What is gone of a controller that is there goes with it.
    if (const auto same = comparison.controllers_now[before]) return !indices[*same];
    const auto number = NumberOf(comparison.earlier.controllers[before]);
    if (number) known.insert(*number);
    return !number || !wanted.contains(*number);
  });
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

std::string SelectControllers(const std::vector<std::uint64_t>& numbers, Machine& machine,
                              Comparison* comparison) {
  const std::unordered_set<std::uint64_t> wanted(numbers.begin(), numbers.end());
  std::unordered_set<std::uint64_t> known;
  std::vector<Controller> selected;
  NewIndices indices;
  for (Controller& controller : machine.controllers) {
    const auto number = NumberOf(controller);
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
  if (comparison != nullptr) SelectChanges(indices, wanted, *comparison, known);
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
