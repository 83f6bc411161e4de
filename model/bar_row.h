#ifndef MODEL_BAR_ROW_H_
#define MODEL_BAR_ROW_H_

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "model/collected_data.h"

/// Cuts a table row with columns between bars: "n | first | second |". What stands before the
/// first bar is passed over.
class BarRow {
 public:
  /// `line` must outlive the row.
  explicit BarRow(std::string_view line) : line_(line), bar_(line.find('|')) {}

  /// The text between the bar reached and the next one, cut short of that (see CutShortOf), without
  /// its leading white space. "" when a bar is missing.
  std::string NextColumn();

  /// What follows the bar reached, up to the end of the line, without its leading white space. ""
  /// when that bar is missing.
  std::string Rest() const;

 private:
  std::string_view line_;
  std::size_t bar_;  // the bar reached; npos behind the last one
};

/// Where a column loses its white space.
enum class Trim { kFront, kBothEnds };

/// The field that takes the next column.
template <class Record>
struct ColumnRow {
  std::string Record::*field;
  Trim trim = Trim::kFront;
};

/// Reads one column for each row, in the order of the rows.
template <class Record>
void ReadColumns(BarRow& columns, std::type_identity_t<std::span<const ColumnRow<Record>>> rows,
                 Record& record) {
  for (const auto& [field, trim] : rows) {
    record.*field = columns.NextColumn();
    if (trim == Trim::kBothEnds) {
      record.*field = CollectedData::krRemoveTrailingWhiteSpace(record.*field);
    }
  }
}

#endif  // MODEL_BAR_ROW_H_
