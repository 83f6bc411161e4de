// The runs of the tools: when, for how long, how they ended, what they printed.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/base/times.h"
#include "inventory/print/html/html_parts.h"

namespace {

// The size of a page, in bytes.
constexpr std::size_t kPageRoom = 60'000;
constexpr std::size_t kRoomOfDevice = 1'000;
constexpr std::size_t kRest = 250;          // that follows
constexpr std::size_t kNotice = 130;        // that an output is cut
constexpr std::size_t kLeastRoom = 16'000;  // for what the tools printed

/// The runs of a tool about one controller, which stand together.
using Group = std::vector<const RunRecord*>;

bool IsTogether(const RunRecord& a, const RunRecord& b) {
  return a.program == b.program && a.Controller() == b.Controller();
}

std::vector<Group> GroupRuns(const std::vector<RunRecord>& runs) {
  std::vector<Group> groups;
  for (const RunRecord& run : runs) {
    if (run.is_tool_absent) continue;
    if (groups.empty() || !IsTogether(*groups.back().front(), run)) groups.emplace_back();
    groups.back().push_back(&run);
  }
  return groups;
}

/// "exit status 1", "stopped at its limit"; "" for one that ended well.
std::string DescribeEnd(const RunRecord& run) {
  std::string text = run.reason;
  if (text.empty() && run.end == RunEnd::kExited && run.exit_status != 0) {
    text = "exit status " + std::to_string(run.exit_status);
  } else if (text.empty() && run.end != RunEnd::kExited) {
    text = NameOf(run.end);
  }
  if (!run.why_unreadable.empty()) text += (text.empty() ? "" : "; ") + run.why_unreadable;
  const char* gap = text.empty() ? "left behind: " : "; left behind: ";
  for (const std::string& process : run.left_behind) {
    text += gap + process;
    gap = ", ";
  }
  return text;
}

/// Whether nothing tells the runs apart but their commands and times, as where no controller is.
bool IsAllTheSame(const Group& group) {
  const RunRecord& first = *group.front();
  return group.size() > 1 && std::all_of(group.begin(), group.end(), [&](const RunRecord* run) {
           return *run->output == *first.output && DescribeEnd(*run) == DescribeEnd(first) &&
                  run->error_output == first.error_output;
         });
}

std::size_t EscapedSize(std::string_view text) {
  SizeSink sink;
  HtmlWriter(sink).Lines(text);
  return sink.size;
}

/// How much of each output is shown: so much that all together have room, the short ones whole. One
/// that came several times is shown once.
std::size_t FindShare(const std::vector<RunRecord>& runs, std::size_t room) {
  std::set<std::string_view> outputs;
  for (const RunRecord& run : runs) outputs.insert(*run.output);
  std::vector<std::size_t> sizes;
  sizes.reserve(outputs.size());
  for (const std::string_view output : outputs) {
    sizes.push_back(output.size() > room ? output.size() : EscapedSize(output));
  }
  std::sort(sizes.begin(), sizes.end());
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const std::size_t share = room / (sizes.size() - i);
    if (sizes[i] > share) return share - std::min(share, kNotice);
    room -= sizes[i];
  }
  return std::string::npos;
}

class RunsWriter {
 public:
  /// Of each output it writes as much as `share`, and of none anything when that is 0.
  RunsWriter(const Report& report, std::size_t share, HtmlWriter& html)
      : html_(html), share_(share) {
    for (const RunRecord& run : report.runs) {
      if (const auto start = ToInstant(run.started)) {
        begin_ = begin_ ? std::min(*begin_, start->utc) : start->utc;
        end_ = std::max(end_, start->utc + run.duration);
      }
    }
  }

  void Write(const Group& group) {
    const RunRecord& first = *group.front();
    std::chrono::milliseconds time{};
    std::size_t bytes = 0;
    std::size_t failed = 0;
    for (const RunRecord* run : group) {
      time += run->duration;
      bytes += run->output_bytes;
      failed += run->HasFailed() || !run->why_unreadable.empty() ? 1 : 0;
    }
    html_("<details><summary><b>{} {}</b>", first.Tool(),
          first.Controller() == 0 ? "" : std::to_string(first.Controller()));
    WriteBar(first, time);
    html_("<span>{} s</span><small>{}, {}", SecondsText(time), Counted(group.size(), "run"),
          Counted(bytes, "byte"));
    if (failed > 0) html_(", <strong>{} failed</strong>", failed);
    html_("</small></summary>\n");
    if (IsAllTheSame(group)) {
      WriteAtOnce(group);
    } else {
      for (const RunRecord* run : group) WriteRun(*run);
    }
    html_("</details>\n");
  }

 private:
  void WriteAtOnce(const Group& group) {
    html_("<p class=\"alike\">");
    for (const RunRecord* run : group) {
      html_("{} {} s, ", run->Command(), SecondsText(run->duration));
    }
    const RunRecord& first = *group.front();
    const std::string end = DescribeEnd(first);
    html_("each {}{}\n", end.empty() ? "with this output" : end.c_str(),
          first.output->empty() && first.error_output.empty() ? "" : ":");
    WriteOutputs(first);
  }

  void WriteRun(const RunRecord& run) {
    html_("<p><code>{}</code>", run.Command());
    WriteBar(run, run.duration);
    html_("<span>{} s</span>", SecondsText(run.duration));
    if (const std::string end = DescribeEnd(run); !end.empty()) html_("<small>{}</small>", end);
    html_("\n");
    WriteOutputs(run);
  }

  void WriteOutputs(const RunRecord& run) {
    if (!run.error_output.empty()) {
      html_("<pre class=\"err\">\n");
      html_.Lines(run.error_output);
      html_("</pre>\n");
    }
    if (run.output->empty()) return;
    const auto [shown, is_new] = shown_.emplace(*run.output, &run);
    if (!is_new) {
      html_("<p class=\"cut\">Its output is that of {}.\n", shown->second->CommandLine());
      return;
    }
    html_("<pre>\n");
    const std::size_t length = share_ == 0 ? 0 : FittingLength(*run.output, share_);
    html_.Lines(std::string_view(*run.output).substr(0, length));
    html_("</pre>\n");
    if (length == run.output->size() || share_ == 0) return;
    html_("<p class=\"cut\">{} of {} bytes, as the page has no room for more: ", length,
          run.output->size());
    html_("a recording (<code>--record</code>) has all.\n");
  }

  /// Where in the collection it was, and for how long.
  void WriteBar(const RunRecord& run, std::chrono::milliseconds time) {
    const auto start = ToInstant(run.started);
    const auto whole =
        std::chrono::duration_cast<std::chrono::milliseconds>(end_ - begin_.value_or(end_));
    if (!start || whole.count() <= 0) {
      html_("<svg></svg>");
      return;
    }
    const auto share = [&](auto part) {
      return std::chrono::duration_cast<std::chrono::milliseconds>(part).count() * 100 /
             whole.count();
    };
    html_("<svg><rect x=\"{}%\" width=\"{}%\"/></svg>",
          std::min<std::int64_t>(99, share(start->utc - *begin_)),
          std::max<std::int64_t>(1, share(time)));
  }

  HtmlWriter& html_;
  std::size_t share_;
  std::unordered_map<std::string_view, const RunRecord*> shown_;
  std::optional<decltype(Instant::utc)> begin_;
  decltype(Instant::utc) end_{};
};

}  // namespace

void WriteRuns(const ViewInput& input, HtmlWriter& html) {
  const Report& report = input.report;
  html("<section id=\"runs\" aria-labelledby=\"hr\">\n<h2 id=\"hr\">Tool runs</h2>\n");
  const std::vector<Group> groups = GroupRuns(report.runs);
  if (groups.empty()) {
    html("<p>No tool was run.</p>\n</section>");
    return;
  }
  html("<p>Each bar shows when in the collection the tool ran about a controller, and for how ");
  html("long. What it printed is folded away. <button type=\"button\" id=\"fold\" hidden>");
  html("Open all</button></p>\n");
  const std::size_t most = kPageRoom + kRoomOfDevice * input.machine.CountDevices();
  const auto write = [&](std::size_t share, HtmlWriter& to) {
    RunsWriter writer(report, share, to);
    for (const Group& group : groups) writer.Write(group);
  };
  SizeSink nowhere;
  HtmlWriter measured(nowhere);
  write(0, measured);
  const std::size_t taken = html.GetSize() + measured.GetSize() + kRest;
  const std::size_t room = std::max(most - std::min(most, taken), kLeastRoom);
  write(std::max(FindShare(report.runs, room), std::size_t{1}), html);
  html("</section>");
}
