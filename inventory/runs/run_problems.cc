#include "inventory/runs/run_problems.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "inventory/base/readable.h"
#include "schema/published_texts.h"

namespace {

using Runs = std::vector<const RunRecord*>;

bool HoldsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [text](std::string_view word) {
    return text.find(word) != std::string_view::npos;
  });
}

bool IsConfiguration(const RunRecord& run) {
  return !run.arguments.empty() && run.arguments[0] == kGetConfigWord;
}

bool TellsOfController(const RunRecord& run) {
  return run.output->find(kControllerHeading) != std::string::npos;
}

/// Whether one of the lines is as asked. They are looked at one by one, as the text may be large.
template <class IsAsked>
bool AnyLine(std::string_view text, const IsAsked& is_asked) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (is_asked(text.substr(0, end))) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

/// The same of what the tool said in the run, in lower case.
template <class IsAsked>
bool SaidLine(const RunRecord& run, const IsAsked& is_asked) {
  const auto is_asked_lower = [&](std::string_view line) { return is_asked(Lower(line)); };
  return AnyLine(*run.output, is_asked_lower) || AnyLine(run.error_output, is_asked_lower);
}

bool NamesRights(const RunRecord& run) {
  return SaidLine(run, [](const std::string& line) {
    return HoldsOneOf(line, {"permission", "permitted", "denied", "privilege", "root", "superuser",
                             "administrator"});
  });
}

/// An answer, and not a refusal: there is no controller of this number, in a line of its own.
bool SaysThatThereIsNone(const RunRecord& run) {
  if (NamesRights(run)) return false;
  return SaidLine(run, [](const std::string& line) {
    return HoldsOneOf(line, {"controller", "adapter"}) &&
           HoldsOneOf(line, {"not present", "no controller", "no adapter", "not found", "not exist",
                             "no such", "invalid", "unknown", "not installed", "out of range"});
  });
}

/// Orders outputs as if all digits were the same: what a tool says of numbers that it does not
/// know.
struct LessButForDigits {
  bool operator()(std::string_view x, std::string_view y) const {
    const auto alike = [](char c) { return c >= '0' && c <= '9' ? '0' : c; };
    return std::lexicographical_compare(
        x.begin(), x.end(), y.begin(), y.end(),
        [&alike](char left, char right) { return alike(left) < alike(right); });
  }
};

/// The first line with something on it.
std::string FirstLine(std::string_view text) {
  std::string first;
  AnyLine(text, [&first](std::string_view line) {
    first = Readable(std::string(line));
    return !first.empty();
  });
  return first;
}

/// "ended with status 127 and printed nothing: no such library"
std::string StatusText(const RunRecord& run) {
  std::string text = "ended with status " + std::to_string(run.exit_status);
  if (run.output_bytes == 0) text += " and printed nothing";
  if (!run.last_error_line.empty()) text += ": " + Readable(run.last_error_line);
  return text;
}

/// All runs failed: which ways there were, and how often each.
std::string Reasons(const Runs& runs) {
  std::vector<std::pair<std::string, int>> reasons;
  std::map<std::string, std::size_t> indices;
  for (const RunRecord* run : runs) {
    const auto [found, is_new] = indices.emplace(run->reason, reasons.size());
    if (is_new) reasons.emplace_back(run->reason, 0);
    ++reasons[found->second].second;
  }
  std::string text =
      std::to_string(runs.size()) + " of " + std::to_string(runs.size()) + " runs failed: ";
  for (const auto& [reason, count] : reasons) {
    if (&reason != &reasons.front().first) text += "; ";
    text += reason;
    if (reasons.size() > 1) text += " (" + std::to_string(count) + ")";
  }
  return text;
}

class ToolProblems {
 public:
  /// `runs` are all those of one tool, in their order.
  ToolProblems(const Runs& runs, std::vector<Problem>& problems)
      : runs_(runs), problems_(problems) {}

  void Find() {
    if (!FindWholeTool()) FindSingleRuns();
    for (const RunRecord* run : runs_) {
      if (run->why_unreadable.empty()) continue;
      Problem& problem = Add(ProblemKind::kOutputUnreadable, *run, run->why_unreadable);
      problem.is_blind = true;
    }
  }

 private:
  Problem& Add(ProblemKind kind, const RunRecord& run, const std::string& why) {
    return problems_.emplace_back(Problem{run.CommandLine(), why, kind, run.Tool(), run.Command(),
                                          run.Controller(), 0, IsConfiguration(run)});
  }

  void AddTool(ProblemKind kind, const std::string& why, std::size_t count) {
    const RunRecord& first = *runs_.front();
    problems_.push_back(
        {first.program, why, kind, first.Tool(), "", 0, count, kind != ProblemKind::kToolAbsent});
  }

  /// Whether there is nothing to be had from the tool at all.
  bool FindWholeTool() {
    for (const RunRecord* run : runs_) {
      if (run->end != RunEnd::kUntrusted) continue;
      const auto is_untrusted = [](const RunRecord* r) { return r->end == RunEnd::kUntrusted; };
      AddTool(ProblemKind::kToolUntrusted, run->reason,
              static_cast<std::size_t>(std::count_if(runs_.begin(), runs_.end(), is_untrusted)));
      return true;
    }
    Runs asked;
    for (const RunRecord* run : runs_) {
      if (run->end != RunEnd::kNotAsked) asked.push_back(run);
    }
    const auto ended = [](const RunRecord* run) { return run->end == RunEnd::kExited; };
    if (std::none_of(asked.begin(), asked.end(), ended)) {
      const bool is_absent = runs_.front()->is_tool_absent;
      // Runs that hung are named, each of them.
      const auto hung = [](const RunRecord* run) { return run->end == RunEnd::kTimedOut; };
      if (!is_absent && (asked.empty() || std::any_of(asked.begin(), asked.end(), hung))) {
        return false;
      }
      AddTool(is_absent ? ProblemKind::kToolAbsent : ProblemKind::kToolFailed,
              Reasons(asked.empty() ? runs_ : asked), asked.size());
      return true;
    }
    return FindRefusal(asked);
  }

  bool FindRefusal(const Runs& asked) {
    std::size_t answers = 0;
    const RunRecord* first = nullptr;  // that says anything else than that there is no controller
    for (const RunRecord* run : asked) {
      if (!IsConfiguration(*run)) continue;
      if (run->end != RunEnd::kExited || run->exit_status == 0 || TellsOfController(*run)) {
        return false;
      }
      if (first == nullptr && !SaysThatThereIsNone(*run)) first = run;
      ++answers;
    }
    if (first == nullptr) return false;
    std::string line = FirstLine(first->error_output);
    if (line.empty()) line = FirstLine(*first->output);
    std::string why = "refused: it ended with status " + std::to_string(first->exit_status) +
                      " for every controller number" + (line.empty() ? "" : ": " + line);
    if (NamesRights(*first)) why += " (does it need root?)";
    AddTool(ProblemKind::kToolRefused, why, answers);
    return true;
  }

  void FindSingleRuns() {
    std::set<int> present;
    for (const RunRecord* run : runs_) {
      if (TellsOfController(*run)) present.insert(run->Controller());
    }
    for (const RunRecord* run : runs_) {
      if (run->HasFailed() && IsProblem(*run, present)) AddRun(*run);
    }
    FindCutConfigurations();
  }

  static bool IsProblem(const RunRecord& run, const std::set<int>& present) {
    if (run.end != RunEnd::kExited) return true;
    // A shell's words for a program that it cannot run, as the system's loader has them, too.
    const bool never_began = run.exit_status == 126 || run.exit_status == 127;
    return never_began || NamesRights(run) || present.contains(run.Controller());
  }

  /// Configurations that end with a status of 0 and are not whole, where the plug-in notices
  /// nothing.
  void FindCutConfigurations() {
    std::map<std::string_view, int, LessButForDigits> alike;  // those without a controller
    std::set<int> answering;                                  // numbers that other commands tell of
    for (const RunRecord* run : runs_) {
      if (run->end != RunEnd::kExited || run->exit_status != 0) continue;
      if (!IsConfiguration(*run)) {
        if (run->output_bytes > 0 && !SaysThatThereIsNone(*run))
          answering.insert(run->Controller());
      } else if (!TellsOfController(*run)) {
        ++alike[*run->output];
      }
    }
    for (const RunRecord* run : runs_) {
      if (!IsConfiguration(*run) || run->HasFailed() || !run->why_unreadable.empty()) continue;
      if (TellsOfController(*run)) {
        if (run->output->find(kEndMarker) != std::string::npos) continue;
        Add(ProblemKind::kOutputTruncated, *run,
            "it lacks its closing line, and what else is behind");
      } else if (run->exit_status == 0 && !SaysThatThereIsNone(*run) && alike[*run->output] == 1 &&
                 (run->output_bytes > 0 || answering.contains(run->Controller()))) {
        Add(ProblemKind::kOutputTruncated, *run,
            "it tells neither of a controller nor that there is none");
      }
    }
  }

  void AddRun(const RunRecord& run) {
    ProblemKind kind = ProblemKind::kRunFailed;
    if (run.end == RunEnd::kTimedOut) kind = ProblemKind::kRunTimedOut;
    if (run.end == RunEnd::kOutputLimit) kind = ProblemKind::kOutputTruncated;
    if (run.end == RunEnd::kNotAsked) kind = ProblemKind::kRunNotAsked;
    const std::string why = run.end == RunEnd::kExited ? StatusText(run) : run.reason;
    // A run that was stopped is named: of these there are few, as the bounds see to it.
    const bool is_named =
        kind == ProblemKind::kRunTimedOut || kind == ProblemKind::kOutputTruncated;
    const auto [known, is_new] =
        alike_.emplace(std::pair(kind, is_named ? run.CommandLine() : why), problems_.size());
    if (is_new) {
      Add(kind, run, why).count = 1;
      return;
    }
    Problem& problem = problems_[known->second];
    ++problem.count;
    problem.what = run.program + ", " + std::to_string(problem.count) + " runs";
    if (problem.command != run.Command()) problem.command.clear();
    if (problem.controller != run.Controller()) problem.controller = 0;
    problem.is_blind = problem.is_blind || IsConfiguration(run);
  }

  const Runs& runs_;
  std::vector<Problem>& problems_;
  std::map<std::pair<ProblemKind, std::string>, std::size_t> alike_;  // by kind and reason
};

}  // namespace

std::vector<Problem> FindRunProblems(const std::vector<RunRecord>& records) {
  std::vector<Runs> tools;
  std::map<std::string_view, std::size_t> indices;
  for (const RunRecord& record : records) {
    const auto [found, is_new] = indices.emplace(record.program, tools.size());
    if (is_new) tools.emplace_back();
    tools[found->second].push_back(&record);
  }
  std::vector<Problem> problems;
  for (const Runs& runs : tools) ToolProblems(runs, problems).Find();
  return problems;
}

Problem DescribeCut(const standin::FileCut& cut) {
  const auto mebibytes = [](std::uint64_t bytes) {
    return std::to_string((bytes >> 20) + (bytes % (1 << 20) > 0 ? 1 : 0));
  };
  const std::string read = mebibytes(cut.read);
  const std::string size = mebibytes(cut.size);
  // What was left out never vanishes in the rounding.
  return {cut.path,
          "only its newest " +
              (read != size ? read + " MiB of " + size + " MiB"
                            : std::to_string(cut.read) + " bytes of " + std::to_string(cut.size)) +
              " were read",
          ProblemKind::kLogCut};
}
