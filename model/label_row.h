#ifndef MODEL_LABEL_ROW_H_
#define MODEL_LABEL_ROW_H_

#include <span>
#include <string>
#include <type_traits>

#include "model/collected_data.h"

/// What an empty value does to the cursor.
enum class IfEmpty {
  kKeepLine,  ///< The line is consumed: a missing line shifts the reading of those that follow.
  kStepBack,  ///< The line is read again for the next label: this one is optional.
};

/// One label of a tool's output and the field of the record that takes its value.
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

#endif  // MODEL_LABEL_ROW_H_
