#ifndef MODEL_LABEL_ROW_H_
#define MODEL_LABEL_ROW_H_

#include <string>

/// One label of a tool's output and the field of the record that takes its value.
template <class Record>
struct LabelRow {
  const char* label;
  std::string Record::*field;
};

#endif  // MODEL_LABEL_ROW_H_
