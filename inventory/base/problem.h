#ifndef INVENTORY_BASE_PROBLEM_H_
#define INVENTORY_BASE_PROBLEM_H_

#include <cstddef>
#include <string>

/// What kind of thing was not collected.
enum class ProblemKind {
  kToolAbsent,          ///< A tool that is not there: most machines lack two of the three.
  kToolRefused,         ///< A tool that is there and says nothing of use about any controller.
  kToolUntrusted,       ///< A tool, or a plug-in, that not only root could have put there.
  kToolFailed,          ///< A tool none of whose runs ended by itself.
  kRunFailed,           ///< Some runs that did not end by themselves, or with nothing but a status.
  kRunTimedOut,         ///< Some runs that were stopped at their time limit.
  kRunNotAsked,         ///< Some runs that were not made, as the bounds of all runs were used up.
  kOutputTruncated,     ///< A run stopped at its output limit, or an output that is not whole.
  kOutputUnreadable,    ///< An output over which the plug-in threw.
  kLinesNotUnderstood,  ///< Lines of a controller's configuration that show up nowhere.
  kLogCut,              ///< Of the manager's log only the newest end was read.
  kLogUnreadable,       ///< The plug-in threw over the manager's log.
  kRepositoryFull,      ///< More was published than the host's repository takes.
  kPluginFailed,        ///< The plug-in or the host threw, and no output is to blame.
  kUnknownClass,        ///< A class that was asked for and is none of the schema's.
  kCollectionFailed,    ///< There was no collection, or it has come to nothing.
};

/// "tool_absent", "run_failed", ...: as documents name it.
const char* NameOf(ProblemKind kind);

/// Something that was not collected.
struct Problem {
  std::string what{};  ///< For a person: the tool, its run, the class.
  std::string why{};   ///< For a person.
  ProblemKind kind = ProblemKind::kRunFailed;
  std::string tool{};     ///< "kelvcmd"; "" where no tool is to blame.
  std::string command{};  ///< "getconfig al"; "" where it is not one command.
  int controller = 0;     ///< The tool's number; 0 where it is not one controller.
  std::size_t count = 0;  ///< Of runs or lines; 0 where nothing is counted.
  bool is_blind = false;  ///< All that is to be known of a controller, at least, is not known.

  bool operator==(const Problem&) const = default;
};

/// Whether something is missing from what is shown that a person expects there: not a tool that
/// most machines lack, nor lines beyond what anybody asks for.
bool IsLoss(const Problem& problem);

#endif  // INVENTORY_BASE_PROBLEM_H_
