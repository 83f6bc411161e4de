#include "inventory/command/collection.h"

#include <unistd.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cerrno>
#include <exception>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "inventory/command/watched_class.h"
#include "inventory/runs/trust.h"
#include "schema/published_texts.h"
#include "standin/host_services.h"
#include "standin/plugin_manager.h"

namespace {

/// What the plug-in threw.
struct Thrown {
  std::string text = "an unknown exception";
  bool is_out_of_range = false;
  bool is_repository_full = false;
};

/// The exception in flight.
Thrown Catch() {
  Thrown thrown;
  try {
    throw;
  } catch (const std::exception& error) {
    thrown.text = error.what();
    thrown.is_out_of_range = dynamic_cast<const std::out_of_range*>(&error) != nullptr;
    thrown.is_repository_full = dynamic_cast<const standin::RepositoryFull*>(&error) != nullptr;
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

std::string DescribeReading(const Thrown& thrown) { return "reading it failed: " + thrown.text; }

/// `publishing` is the class that was being published; "" before the first. `file` is what the
/// plug-in asked for last; "" where that was a tool.
Problem DescribeFailure(const Thrown& thrown, const std::string& publishing,
                        const std::string& file, const ToolRuns& tools) {
  Problem problem;
  problem.kind = ProblemKind::kPluginFailed;
  problem.is_blind = true;
  if (thrown.is_repository_full) {
    problem.kind = ProblemKind::kRepositoryFull;
    problem.what = "class " + publishing;
    problem.why = "publishing it ended early: " + thrown.text +
                  "; the classes behind it are missing, --max-instances allows more";
  } else if (!publishing.empty()) {
    problem.what = "class " + publishing;
    problem.why = "publishing it failed: " + thrown.text;
  } else if (!file.empty()) {
    problem.what = file;
    problem.why = DescribeReading(thrown);
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

/// What of the outside the plug-in threw over.
struct Unreadable {
  std::string file;  ///< "" where it was the latest output.
  std::string why;
};

using UnreadableFiles = std::map<std::string, std::string>;  // why, by path

/// The services in force, but for the unreadable files, which are as if they were not there. `file`
/// becomes the one that was asked for last, "" when it was a tool.
standin::HostServices WatchFiles(const UnreadableFiles& unreadable, std::string& file) {
  standin::HostServices services = standin::Services();
  services.spawn_process = [&file, spawn = services.spawn_process](const auto& program,
                                                                   const auto& arguments) {
    file.clear();
    return spawn(program, arguments);
  };
  services.capture_file = [&, capture = services.capture_file](const std::string& path) {
    file = path;
    return unreadable.contains(path) ? std::string() : capture(path);
  };
  services.open_file = [&, open = services.open_file](const std::string& path) -> std::FILE* {
    file = path;
    if (!unreadable.contains(path)) return open(path);
    errno = ENOENT;
    return nullptr;
  };
  return services;
}

/// A long-running host has its passes' instances for a while each; here they stay.
standin::RepositoryLimits LimitsOf(const Options& options) {
  standin::RepositoryLimits limits{options.max_instances};
  limits.instances *= static_cast<std::size_t>(options.passes);
  limits.bytes *= static_cast<std::size_t>(options.passes);
  return limits;
}

/// One loading of the plug-in, with all its passes.
class Attempt {
 public:
  Attempt(const Options& options, ToolRuns& tools, const UnreadableFiles& unreadable)
      : options_(options), tools_(tools), in_force_(WatchFiles(unreadable, file_)) {
    collection_.repository = std::make_unique<standin::Repository>(LimitsOf(options));
    tools_.BeginAttempt();
  }

  /// Salvaging, it ends at the first throw over an output or a file and says why: see
  /// `GetUnreadable`.
  void Run(bool is_salvaging) {
    try {
      if (IsUntrusted()) return;
      standin::LoadedPlugin plugin(options_.plugin);
      for (int pass = 0; pass < options_.passes && !unreadable_ && !is_full_; ++pass) {
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

  const std::optional<Unreadable>& GetUnreadable() const { return unreadable_; }
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
    file_.clear();
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
      if (is_salvaging && publishing.empty() && !file_.empty()) {
        unreadable_ = {file_, DescribeReading(thrown)};
        return;
      }
      if (is_salvaging && publishing.empty() && tools_.GetLatest() != nullptr) {
        unreadable_ = {"", DescribeOutput(thrown)};
        return;
      }
      is_full_ = thrown.is_repository_full;
      Problem failure = DescribeFailure(thrown, publishing, file_, tools_);
      std::vector<Problem>& failures = collection_.failures;
      if (std::find(failures.begin(), failures.end(), failure) == failures.end()) {
        failures.push_back(std::move(failure));
      }
    }
  }

  const Options& options_;
  ToolRuns& tools_;
  Collection collection_;
  std::optional<Unreadable> unreadable_;
  bool is_full_ = false;
  std::string file_;
  const standin::ScopedServices in_force_;
};

}  // namespace

Collection Collect(const Options& options, ToolRuns& tools) {
  UnreadableFiles files;
  for (bool is_salvaging = !options.as_host;;) {
    Attempt attempt(options, tools, files);
    attempt.Run(is_salvaging);
    const std::optional<Unreadable>& unreadable = attempt.GetUnreadable();
    if (!unreadable) {
      Collection collection = attempt.Take();
      for (const auto& [file, why] : files) {
        collection.failures.push_back({file, why, ProblemKind::kLogUnreadable});
      }
      return collection;
    }
    // Where nothing is learnt, nothing of the outside is to blame: the next attempt is the last.
    if (unreadable->file.empty()) {
      is_salvaging = tools.RefuseLatestRequest(unreadable->why);
    } else {
      is_salvaging = files.emplace(unreadable->file, unreadable->why).second;
      if (!is_salvaging) files.erase(unreadable->file);
    }
  }
}
