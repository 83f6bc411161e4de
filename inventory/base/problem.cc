#include "inventory/base/problem.h"

const char* NameOf(ProblemKind kind) {
  switch (kind) {
    case ProblemKind::kToolAbsent:
      return "tool_absent";
    case ProblemKind::kToolRefused:
      return "tool_refused";
    case ProblemKind::kToolUntrusted:
      return "tool_untrusted";
    case ProblemKind::kToolFailed:
      return "tool_failed";
    case ProblemKind::kRunFailed:
      return "run_failed";
    case ProblemKind::kRunTimedOut:
      return "run_timed_out";
    case ProblemKind::kRunNotAsked:
      return "run_not_asked";
    case ProblemKind::kOutputTruncated:
      return "output_truncated";
    case ProblemKind::kOutputUnreadable:
      return "output_unreadable";
    case ProblemKind::kLinesNotUnderstood:
      return "lines_not_understood";
    case ProblemKind::kLogCut:
      return "log_cut";
    case ProblemKind::kLogUnreadable:
      return "log_unreadable";
    case ProblemKind::kRepositoryFull:
      return "repository_full";
    case ProblemKind::kUnknownClass:
      return "unknown_class";
    case ProblemKind::kCollectionFailed:
      return "collection_failed";
    case ProblemKind::kPluginFailed:
      break;
  }
  return "plugin_failed";
}

bool IsLoss(const Problem& problem) {
  return problem.kind != ProblemKind::kToolAbsent &&
         problem.kind != ProblemKind::kLinesNotUnderstood;
}
