#include "inventory/command/collection.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "inventory/command/watched_class.h"
#include "schema/published_texts.h"
#include "standin/plugin_manager.h"

namespace {

/// What the exception in flight means to a person who has to look for its cause. `publishing` is
/// the class that was being published; "" before the first.
Problem DescribeFailure(const std::string& publishing, const ToolRuns& tools) {
  std::string text = "an unknown exception";
  bool out_of_range = false;
  try {
    throw;
  } catch (const std::exception& error) {
    text = error.what();
    out_of_range = dynamic_cast<const std::out_of_range*>(&error) != nullptr;
  } catch (...) {
  }

  if (!publishing.empty()) return {"class " + publishing, "publishing it failed: " + text};
  if (tools.GetLastRun().empty()) return {"collection", "it failed before any tool ran: " + text};
  if (out_of_range && text == kOutputEndsTooEarly) {
    return {tools.GetLastRun(),
            "its output ends too early: lines that have to follow, such as the closing one, are "
            "missing (the error's own text is \"" +
                text + "\"); the collection ended here"};
  }
  if (out_of_range) {
    return {tools.GetLastRun(),
            "its output holds a line that is too short to be cut (the error's own text is \"" +
                text + "\"); the collection ended here"};
  }
  return {tools.GetLastRun(), "the collection failed during this run or after it: " + text};
}

}  // namespace

Collection Collect(const Options& options, standin::Repository& repository, const ToolRuns& tools) {
  Collection collection;
  std::string publishing;
  std::vector<Problem>& failures = collection.failures;
  try {
    standin::LoadedPlugin plugin(options.plugin);
    for (int pass = 0; pass < options.passes; ++pass) {
      publishing.clear();
      const std::size_t committed_before = repository.GetCommitted().size();
      std::vector<boost::shared_ptr<NKVXHMZ20::ICIMClass>> classes;
      for (const std::string& name : options.classes) {
        classes.push_back(
            boost::make_shared<WatchedClass>(repository.GetOrDeclareClass(name), publishing));
      }
      // The caller keeps the repository; the plug-in only gets to see it.
      const boost::shared_ptr<NKVXHMZ20::ICIMNamespace> cim_namespace(
          &repository, [](NKVXHMZ20::ICIMNamespace*) {});
      try {
        plugin.GetQueries().GetData(cim_namespace, classes);
      } catch (...) {
        Problem failure = DescribeFailure(publishing, tools);
        failure.extent = Problem::Extent::kCollection;
        if (std::find(failures.begin(), failures.end(), failure) == failures.end()) {
          failures.push_back(std::move(failure));
        }
      }
      if (repository.GetCommitted().size() > committed_before) {
        collection.latest_pass = committed_before;
      }
    }
  } catch (const std::exception& error) {
    failures.push_back(
        {"plug-in " + options.plugin.string(), error.what(), Problem::Extent::kCollection});
  }
  return collection;
}
