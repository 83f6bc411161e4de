#ifndef MODEL_BAR_ROW_H_
#define MODEL_BAR_ROW_H_

#include <cstddef>
#include <string>
#include <string_view>

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

#endif  // MODEL_BAR_ROW_H_
