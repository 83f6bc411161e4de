#include "inventory/print/openmetrics_writer.h"

#include <array>
#include <charconv>
#include <utility>

#include "inventory/base/readable.h"

namespace {

constexpr std::size_t kLongestLabel = 128;

/// At most so many bytes: whole characters, and no blank at the end.
std::string Cut(std::string text, std::size_t size) {
  if (text.size() > size) {
    while ((text[size] & '\xC0') == '\x80') --size;
    text.resize(size);
  }
  while (text.ends_with(' ')) text.pop_back();
  return text;
}

/// Of a label: readable text as it stands between the quotes.
std::string LabelText(std::string_view text) {
  // What is behind this does not matter, even where blanks make room for it.
  constexpr std::size_t kSeen = 4 * kLongestLabel;
  return Cut(Readable(std::string(text.substr(0, kSeen))), kLongestLabel);
}

/// The unit that the end of a name says.
std::string_view UnitOf(std::string_view name) {
  for (const std::string_view unit : {"seconds", "bytes", "ratio"}) {
    if (name.ends_with(unit)) return unit;
  }
  return "";
}

}  // namespace

MetricLabels MetricLabels::With(std::string_view name, std::string_view text) const {
  MetricLabels labels = *this;
  std::string& all = labels.text_;
  if (!all.empty()) all += ',';
  all.append(name).append("=\"");
  for (const char c : LabelText(text)) {
    if (c == '"' || c == '\\') all += '\\';
    all += c;  // readable text has no line ends
  }
  all += '"';
  return labels;
}

MetricLabels MetricLabels::WithReported(std::string_view name,
                                        const std::optional<std::string>& text) const {
  return text ? With(name, *text) : *this;
}

std::string DistinctNames::Take(std::string_view name) {
  std::string wanted = LabelText(name);
  unsigned& count = taken_[wanted];  // stays where it is when others come
  if (++count == 1) return wanted;
  std::string other;
  do {
    // A number has to stand behind it even where all of the label's room is taken.
    const std::string number = "#" + std::to_string(count++);
    other = Cut(wanted, kLongestLabel - number.size()) + number;
  } while (!taken_.emplace(other, 1).second);
  --count;
  return other;
}

void OpenMetricsWriter::Family(std::string_view name, std::string_view help) {
  name_ = name;
  head_ = "# HELP " + name_ + " " + std::string(help) + "\n";
  // A counter has none: OpenMetrics names it without "_total" there and the older format with it,
  // and where the name is another one, readers lose the help.
  if (!name.ends_with("_total")) head_ += "# TYPE " + name_ + " gauge\n";
  const std::string_view unit = UnitOf(name);
  if (!unit.empty()) head_ += "# UNIT " + name_ + " " + std::string(unit) + "\n";
}

void OpenMetricsWriter::Sample(const MetricLabels& labels, double value) {
  std::string line = std::move(head_);
  head_.clear();
  line += name_;
  if (!labels.GetText().empty()) line.append("{").append(labels.GetText()).append("}");
  std::array<char, 64> number;  // of 2^64, or with as many zeros behind the point
  const auto [end, error] =
      std::to_chars(number.data(), number.data() + number.size(), value, std::chars_format::fixed);
  line.append(" ").append(number.data(), end).append("\n");
  output_.Write(line);
}

void OpenMetricsWriter::End() { output_.Write("# EOF\n"); }
