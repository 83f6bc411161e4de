#include "model/bar_row.h"

#include "model/collected_data.h"
#include "model/text.h"

std::string BarRow::NextColumn() {
  if (bar_ == std::string_view::npos) return "";
  const std::size_t opening = bar_;
  bar_ = line_.find('|', opening + 1);
  if (bar_ == std::string_view::npos) return "";
  return CollectedData::krRemoveLeadingWhiteSpace(CutShortOf(line_, opening + 1, bar_));
}

std::string BarRow::Rest() const {
  if (bar_ == std::string_view::npos) return "";
  const std::string_view rest = line_.substr(bar_ + 1);
  return CollectedData::krRemoveLeadingWhiteSpace(rest.substr(0, rest.find('\n')));
}
