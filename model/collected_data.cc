#include "model/collected_data.h"

#include <iostream>
#include <stdexcept>
#include <utility>

#include "schema/published_texts.h"

namespace {

constexpr std::string_view kWhiteSpace = " \t\n";

std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

CollectedData::CollectedData(NKVXHMZ20::TPluginManagerProvider* /*provider*/, std::string text)
    : text_(std::move(text)) {
  text_.resize(text_.rfind('\n') + 1);  // npos + 1 is 0
}

std::string_view CollectedData::CurrentLine() const {
  if (outside_ != 0 || begin_ == text_.size()) throw std::out_of_range(kOutputEndsTooEarly);
  return std::string_view(text_).substr(begin_, text_.find('\n', begin_) + 1 - begin_);
}

std::string_view CollectedData::NextLine() {
  if (outside_ != 0 || begin_ == text_.size()) {
    ++outside_;
  } else {
    begin_ = text_.find('\n', begin_) + 1;
  }
  return CurrentLine();
}

void CollectedData::decrementLinePtr() {
  if (outside_ != 0 || begin_ == 0) {
    --outside_;
  } else {
    begin_ = begin_ == 1 ? 0 : text_.rfind('\n', begin_ - 2) + 1;
  }
}

std::string_view CollectedData::Find(std::string_view label) {
  const auto found = text_.find(label);
  // A label with a line end before its last character goes across lines, and so is in none.
  const bool goes_across = label.substr(0, label.size() - 1).find('\n') != std::string_view::npos;
  if (text_.empty() || found == std::string::npos || goes_across) return "";
  begin_ = found == 0 ? 0 : text_.rfind('\n', found - 1) + 1;
  outside_ = 0;
  return CurrentLine();
}

std::string CollectedData::FindLine(std::string_view label) { return std::string(Find(label)); }

std::string CollectedData::FindParseLine(std::string_view label) { return ParseLine(Find(label)); }

std::string CollectedData::GetNextLine() { return std::string(NextLine()); }

std::string CollectedData::GetCurrentLine() const { return std::string(CurrentLine()); }

std::string CollectedData::ParseLine(std::string_view line) {
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return "";
  const auto end = line.find('\n', colon);
  return std::string(line.substr(colon + 1, end - colon));
}

std::string CollectedData::ParseLine() const { return ParseLine(CurrentLine()); }

std::string CollectedData::GetProperty(std::string_view label) {
  const std::string_view line = NextLine();
  return line.find(label) == std::string_view::npos ? "" : ParseLine(line);
}

std::string CollectedData::GetProperty() { return ParseLine(NextLine()); }

std::string CollectedData::krRemoveLeadingWhiteSpace(std::string_view text) {
  text = UpToNul(text);
  while (text.size() > 1 && kWhiteSpace.find(text.front()) != std::string_view::npos) {
    text.remove_prefix(1);
  }
  return std::string(text);
}

std::string CollectedData::krRemoveTrailingWhiteSpace(std::string_view text) {
  text = UpToNul(text);
  return std::string(text.substr(0, text.find_last_not_of(kWhiteSpace) + 1));
}

void CollectedData::DisplayAll() const { std::cout << text_; }
