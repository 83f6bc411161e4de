#include "inventory/print/change_list.h"

#include <string>

#include "inventory/base/readable.h"
#include "inventory/print/severity_tint.h"

namespace {

/// "2026-11-20 04:00", of the clock that was read then.
std::string DescribeSince(const std::string& since) {
  static constexpr std::size_t kMinutes = 16;
  static constexpr std::size_t kDate = 10;
  if (since.size() < kMinutes || since[kDate] != 'T') return "an unknown time";
  return Readable(since.substr(0, kDate) + " " + since.substr(kDate + 1, kMinutes - kDate - 1));
}

Tint TintOf(const Change& change) {
  const Severity severity = SeverityOf(change.code);
  return severity == Severity::kFine ? Tint::kPlain : TintOf(severity);
}

}  // namespace

void PrintChanges(const Comparison& comparison, TextWriter& writer) {
  const std::string title = "Changes since " + DescribeSince(comparison.since) + ":";
  writer.Line();
  if (comparison.changes.empty()) {
    writer.FlowWords({}, "  ", title + " none", Tint::kStrong);
  } else {
    writer.FlowWords({}, "  ", title, Tint::kStrong);
  }
  const std::string indent(4, ' ');
  for (const Change& change : comparison.changes) {
    const std::string where = change.where.empty() ? "" : change.where + ": ";
    writer.FlowWords({{"  "}}, indent, Readable(where + change.what), TintOf(change));
  }
  for (const std::string& part : comparison.not_compared) {
    writer.FlowWords({{"  "}}, indent, Readable("not compared: " + part), Tint::kWarning);
  }
}
