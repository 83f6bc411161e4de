#include "inventory/command/collection.h"

#include <unistd.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "inventory/command/watched_class.h"
#include "inventory/runs/trust.h"
#include "schema/published_texts.h"
#include "standin/plugin_manager.h"

namespace {

/// What the plug-in threw.
struct Thrown {
  std::string text = "an unknown exception";
  bool is_out_of_range = false;
};

/// The exception in flight.
Thrown Catch() {
  Thrown thrown;
  try {
    throw;
  } catch (const std::exception& error) {
    thrown.text = error.what();
    thrown.is_out_of_range = dynamic_cast<const std::out_of_range*>(&error) != nullptr;
  } catch (...) {
  }
  return thrown;
}

/// What it means to a person who has to look for its cause in the output.
std::string DescribeOutput(const Thrown& thrown) {
  if (!thrown.is_out_of_range) {
    return "the collection failed during this run or after it: " + thrown.text;
  }
  const std::string own_text = " (the error's own text is \"" + thrown.text + "\")";
  if (thrown.text == kOutputEndsTooEarly) {
    return "its output ends too early: lines that have to follow, such as the closing one, are "
           "missing" +
           own_text;
  }
  return "its output holds a line that is too short to be cut" + own_text;
}

/// `publishing` is the class that was being published; "" before the first.
Problem DescribeFailure(const Thrown& thrown, const std::string& publishing,
                        const ToolRuns& tools) {
  Problem problem;
  problem.kind = ProblemKind::kPluginFailed;
  problem.is_blind = true;
  if (!publishing.empty()) {
    problem.what = "class " + publishing;
    problem.why = "publishing it failed: " + thrown.text;
  } else if (const RunRecord* run = tools.GetLatest(); run != nullptr) {
    problem.what = run->CommandLine();
    problem.why = DescribeOutput(thrown);
    if (thrown.is_out_of_range) problem.why += "; the collection ended here";
    problem.tool = run->Tool();
    problem.command = run->Command();
    problem.controller = run->Controller();
  } else {
    problem.what = "collection";
    problem.why = "it failed before any tool ran: " + thrown.text;
  }
  return problem;
}

/// One loading of the plug-in, with all its passes.
class Attempt {
 public:
  Attempt(const Options& options, ToolRuns& tools) : options_(options), tools_(tools) {
    collection_.repository = std::make_unique<standin::Repository>();
    tools_.BeginAttempt();
  }

  /// Salvaging, it ends at the first throw over an output and says why: see `GetUnreadable`.
  void Run(bool is_salvaging) {
    try {
      if (IsUntrusted()) return;
      standin::LoadedPlugin plugin(options_.plugin);
      for (int pass = 0; pass < options_.passes && !unreadable_; ++pass) {
        const std::size_t committed_before = collection_.repository->GetCommitted().size();
        RunPass(plugin, is_salvaging);
        if (collection_.repository->GetCommitted().size() > committed_before) {
          collection_.latest_pass = committed_before;
        }
      }
    } catch (const std::exception& error) {
      AddPluginFailure(ProblemKind::kPluginFailed, error.what());
    }
  }

  const std::optional<std::string>& GetUnreadable() const { return unreadable_; }
  Collection Take() { return std::move(collection_); }

 private:
  void AddPluginFailure(ProblemKind kind, const std::string& why) {
    Problem& problem = collection_.failures.emplace_back();
    problem.kind = kind;
    problem.what = "plug-in " + options_.plugin.string();
    problem.why = why;
    problem.is_blind = true;
  }

  /// Whether it is one of the user's choice that gets no rights of root's.
  bool IsUntrusted() {
    if (!options_.is_own_plugin || options_.trust_tools || geteuid() != 0) return false;
    const TrustedFile file(options_.plugin);
    if (file.WhyNot().empty()) return false;
    AddPluginFailure(ProblemKind::kToolUntrusted,
                     "was not loaded, as others than root could have put it there: " +
                         file.WhyNot() + "; --trust-tools loads it all the same");
    return true;
  }

  void RunPass(standin::LoadedPlugin& plugin, bool is_salvaging) {
    std::string publishing;
    std::vector<boost::shared_ptr<NKVXHMZ20::ICIMClass>> classes;
    for (const std::string& name : options_.classes) {
      classes.push_back(boost::make_shared<WatchedClass>(
          collection_.repository->GetOrDeclareClass(name), publishing));
    }
    // The caller keeps the repository; the plug-in only gets to see it.
    const boost::shared_ptr<NKVXHMZ20::ICIMNamespace> cim_namespace(
        collection_.repository.get(), [](NKVXHMZ20::ICIMNamespace*) {});
    try {
      plugin.GetQueries().GetData(cim_namespace, classes);
    } catch (...) {
      const Thrown thrown = Catch();
      if (is_salvaging && publishing.empty() && tools_.GetLatest() != nullptr) {
        unreadable_ = DescribeOutput(thrown);
        return;
      }
      Problem failure = DescribeFailure(thrown, publishing, tools_);
      std::vector<Problem>& failures = collection_.failures;
      if (std::find(failures.begin(), failures.end(), failure) == failures.end()) {
        failures.push_back(std::move(failure));
      }
    }
  }

  const Options& options_;
  ToolRuns& tools_;
  Collection collection_;
  std::optional<std::string> unreadable_;
};

}  // namespace

Collection Collect(const Options& options, ToolRuns& tools) {
  for (bool is_salvaging = !options.as_host;;) {
    Attempt attempt(options, tools);
    attempt.Run(is_salvaging);
    if (!attempt.GetUnreadable()) return attempt.Take();
    // Where nothing is learnt, no output is to blame: the next attempt is the last.
    is_salvaging = tools.RefuseLatestRequest(*attempt.GetUnreadable());
  }
}
