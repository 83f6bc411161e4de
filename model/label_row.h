#ifndef MODEL_LABEL_ROW_H_
#define MODEL_LABEL_ROW_H_

#include <span>
#include <string>
#include <type_traits>

#include "model/collected_data.h"

// How labels of a tool's output become fields of a record: line by line, or from anywhere.

/// What an empty value does to the cursor.
enum class IfEmpty {
  kKeepLine,  ///< The line is consumed: a missing line shifts the reading of those that follow.
  kStepBack,  ///< The line is read again for the next label: this one is optional.
};

/// A label that is expected on the next line, and the field that takes its value.
template <class Record>
struct LabelRow {
  const char* label;
  std::string Record::*field;
  IfEmpty if_empty = IfEmpty::kKeepLine;
};

/// Reads one line for each row, in the order of the rows; see CollectedData::GetProperty.
/// Throws std::out_of_range when the output ends before the last of them.
template <class Record>
void ReadRows(CollectedData& cursor, std::type_identity_t<std::span<const LabelRow<Record>>> rows,
              Record& record) {
  for (const auto& [label, field, if_empty] : rows) {
    record.*field = cursor.GetProperty(label);
    if ((record.*field).empty() && if_empty == IfEmpty::kStepBack) cursor.decrementLinePtr();
  }
}

/// A label that is looked for in a whole output, not in its section, and the field that takes its
/// value. The first place counts, so a short label takes the first line that holds it.
template <class Record>
struct AnywhereRow {
  const char* label;
  std::string Record::*field;
  const char* if_empty = "";  ///< What the field holds when there is no value.
};

/// Fills a field for each row. `find` gives the value of a label.
template <class Record, class Find>
void ReadAnywhere(std::type_identity_t<std::span<const AnywhereRow<Record>>> rows, Record& record,
                  Find find) {
  for (const auto& [label, field, if_empty] : rows) {
    record.*field = find(label);
    if ((record.*field).empty()) record.*field = if_empty;
  }
}

#endif  // MODEL_LABEL_ROW_H_
