#ifndef INVENTORY_PRINT_OPENMETRICS_WRITER_H_
#define INVENTORY_PRINT_OPENMETRICS_WRITER_H_

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "inventory/base/sink.h"

/// Labels as a sample has them: `controller="2",device="1,0"`.
class MetricLabels {
 public:
  /// Adds one. The text is made valid UTF-8 on one line; what goes beyond 128 bytes is cut, as
  /// servers keep labels in memory and a tool may print anything.
  MetricLabels With(std::string_view name, std::string_view text) const;
  /// No text, no label.
  MetricLabels WithReported(std::string_view name, const std::optional<std::string>& text) const;

  const std::string& GetText() const { return text_; }

 private:
  std::string text_;
};

/// Names that identify: a second one of the same gets "#2", as no two samples may have the same
/// labels. Linear in their number.
class DistinctNames {
 public:
  std::string Take(std::string_view name);

 private:
  std::unordered_map<std::string, unsigned> taken_;  // how often
};

/// Writes metrics that both of Prometheus' parsers take: that of OpenMetrics and the older one, by
/// which node_exporter reads files.
class OpenMetricsWriter {
 public:
  explicit OpenMetricsWriter(Sink& output) : output_(output) {}

  /// Begins a family. It is written when it has a sample.
  void Family(std::string_view name, std::string_view help);
  void Sample(const MetricLabels& labels, double value);
  /// Nothing may follow.
  void End();

 private:
  Sink& output_;
  std::string name_;
  std::string head_;  // of the family, until it is written
};

#endif  // INVENTORY_PRINT_OPENMETRICS_WRITER_H_
