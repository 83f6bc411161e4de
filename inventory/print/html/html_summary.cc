// What a reader has to know first: how the machine is, what is wrong, what is not known.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/base/times.h"
#include "inventory/print/html/html_parts.h"

namespace {

bool IsAbsence(const Problem& problem) { return problem.kind == ProblemKind::kToolAbsent; }

std::size_t CountLosses(const Report& report) {
  return static_cast<std::size_t>(
      std::count_if(report.problems.begin(), report.problems.end(), IsLoss));
}

void WriteTile(const char* id, std::size_t count, const std::string& noun, const char* kind,
               HtmlWriter& html) {
  html("<li><a class=\"{}\" href=\"#{}\"><b>{}</b> {}</a>", count == 0 ? "" : kind, id, count,
       Counted(count, noun).substr(std::to_string(count).size() + 1));
}

/// "2005-03-15 04:00:05 -05:00"
std::string DescribeTime(std::string rfc3339) {
  if (rfc3339.size() != 25) return "an unknown time";
  rfc3339[10] = ' ';
  return rfc3339.insert(19, " ");
}

void WriteEntry(Severity severity, HtmlWriter& html) {
  html("<li class=\"{}\">", ClassOf(severity));
  WriteMark(severity, html);
}

}  // namespace

Attention VerdictOf(const ViewInput& input) {
  Attention verdict = DescribeAttention(input.report, input.machine);
  char& first = verdict.text.front();
  if (first >= 'a' && first <= 'z') first = static_cast<char>(first - 'a' + 'A');
  return verdict;
}

void WriteSummary(const ViewInput& input, HtmlWriter& html) {
  const auto& [report, machine, comparison] = input;
  html("<h1>{}</h1>\n<p class=\"when\">RAID inventory, collected {} in {} s</p>\n",
       Readable(report.host), DescribeTime(Rfc3339(report.collected_at)),
       SecondsText(report.duration));
  const auto [verdict, severity] = VerdictOf(input);
  html("<p class=\"verdict {}\">", ClassOf(severity));
  WriteMark(severity, html);
  html("{}</p>\n<ul class=\"tiles\">\n", verdict);
  const std::size_t critical = machine.CountCritical();
  html("<li><a class=\"{}\" href=\"#findings\"><b>{}</b> critical</a>", critical > 0 ? "cr" : "",
       critical);
  WriteTile("findings", machine.findings.size() - critical, "warning", "wn", html);
  if (const std::size_t losses = CountLosses(report); losses > 0) {
    html("<li><a class=\"wn\" href=\"#losses\"><b>{}</b> not collected</a>", losses);
  }
  WriteTile("machine", machine.controllers.size(), "controller", "", html);
  const char* const parts = machine.controllers.empty() ? "machine" : "drives";
  WriteTile(parts, machine.CountLogicalDrives(), "logical drive", "", html);
  WriteTile(parts, machine.CountDevices(), "device", "", html);
  html("\n</ul>");
}

void WriteContents(const ViewInput& input, HtmlWriter& html) {
  const auto& [report, machine, comparison] = input;
  const struct {
    const char* id;
    const char* title;
    bool is_there;
  } entries[] = {
      {"findings", "Findings", true},
      {"losses", "Not collected", true},
      {"changes", "Changes", comparison != nullptr},
      {"machine", "Machine", true},
      {"drives", "Drives", !machine.controllers.empty()},
      {"events", "Event logs", true},
      {"runs", "Tool runs", true},
  };
  for (const auto& entry : entries) {
    if (entry.is_there) html("<li><a href=\"#{}\">{}</a>", entry.id, entry.title);
  }
}

void WriteFindings(const ViewInput& input, HtmlWriter& html) {
  const Machine& machine = input.machine;
  html("<section id=\"findings\" aria-labelledby=\"hf\">\n<h2 id=\"hf\">Findings</h2>\n");
  if (machine.controllers.empty() && machine.findings.empty()) {
    html("<p>There is nothing to judge.</p>\n");
  } else if (machine.findings.empty()) {
    html("<p>Everything that was found is in order.</p>\n");
  } else {
    html("<ol class=\"list\">\n");
    for (const Finding& finding : machine.findings) {
      WriteEntry(finding.severity, html);
      html("<a href=\"#{}\">{}</a><span>{}</span>\n", IdOf(finding.subject), finding.where,
           finding.What());
    }
    html("</ol>\n");
  }
  html("</section>");
}

void WriteLosses(const ViewInput& input, HtmlWriter& html) {
  const Report& report = input.report;
  html("<section id=\"losses\" aria-labelledby=\"hl\">\n<h2 id=\"hl\">Not collected</h2>\n");
  const bool is_all = std::all_of(report.problems.begin(), report.problems.end(), IsAbsence);
  if (is_all && input.machine.controllers.empty()) {
    html("<p>Nothing is known to be missing.</p>\n");
  } else if (is_all) {
    html("<p>Everything was collected that the tools tell.</p>\n");
  }
  if (!is_all) html("<ul class=\"list\">\n");
  std::string absent;
  for (const Problem& problem : report.problems) {
    if (IsAbsence(problem)) {
      absent.append(absent.empty() ? "" : ", ").append(problem.what);
    } else if (IsLoss(problem)) {
      WriteEntry(Severity::kWarning, html);
      html("<b>{}</b><span>{}</span>\n", Readable(problem.what), Readable(problem.why));
    } else {
      html("<li class=\"q\"><i class=\"m\">i</i><b>{}</b><span>not read: {}</span>\n",
           Readable(problem.what), Readable(problem.why));
    }
  }
  if (!is_all) html("</ul>\n");
  if (!absent.empty()) {
    html("<p class=\"quiet\">Not installed{}{}: {}</p>\n", report.root.empty() ? "" : " in ",
         report.root, absent);
  }
  html("</section>");
}

void WriteChanges(const ViewInput& input, HtmlWriter& html) {
  if (input.comparison == nullptr) return;
  const Comparison& comparison = *input.comparison;
  html("<section id=\"changes\" aria-labelledby=\"hc\">\n<h2 id=\"hc\">Changes since {}</h2>\n",
       DescribeTime(comparison.since));
  if (comparison.changes.empty() && comparison.not_compared.empty()) {
    html("<p>None.</p>\n</section>");
    return;
  }
  html("<ul class=\"list\">\n");
  for (const Change& change : comparison.changes) {
    const Severity severity = SeverityOf(change.code);
    severity == Severity::kFine ? html("<li><i class=\"m\">i</i>") : WriteEntry(severity, html);
    // What is gone has no place on the page.
    if (change.subject && !change.is_of_earlier) {
      html("<a href=\"#{}\">{}</a>", IdOf(*change.subject), change.where);
    } else if (!change.where.empty()) {
      html("<b>{}</b>", change.where);
    }
    html("<span>{}</span>\n", change.what);
  }
  for (const std::string& part : comparison.not_compared) {
    WriteEntry(Severity::kWarning, html);
    html("<b>{}</b><span>not compared</span>\n", part);
  }
  html("</ul>\n</section>");
}
