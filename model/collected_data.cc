#include "model/collected_data.h"

#include <iostream>
#include <stdexcept>

#include "schema/published_texts.h"

namespace {

constexpr std::string_view kWhiteSpace = " \t\n";

std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

CollectedData::CollectedData(NKVXHMZ20::TPluginManagerProvider* /*provider*/,
                             std::string_view text) {
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines_.emplace_back(text.substr(0, end + 1));
    text.remove_prefix(end + 1);
  }
}

const std::string& CollectedData::LineAt(std::int32_t index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= lines_.size()) {
    throw std::out_of_range(kOutputEndsTooEarly);
  }
  return lines_[static_cast<std::size_t>(index)];
}

const std::string& CollectedData::NextLine() {
  ++current_line_;
  return LineAt(current_line_);
}

const std::string* CollectedData::Find(std::string_view label) {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (lines_[i].find(label) != std::string::npos) {
      current_line_ = static_cast<std::int32_t>(i);
      return &lines_[i];
    }
  }
  return nullptr;
}

std::string CollectedData::FindLine(std::string_view label) {
  const std::string* line = Find(label);
  return line == nullptr ? "" : *line;
}

std::string CollectedData::FindParseLine(std::string_view label) {
  const std::string* line = Find(label);
  return line == nullptr ? "" : ParseLine(*line);
}

std::string CollectedData::GetNextLine() { return NextLine(); }

std::string CollectedData::GetCurrentLine() const { return LineAt(current_line_); }

std::string CollectedData::ParseLine(std::string_view line) {
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return "";
  const auto end = line.find('\n', colon);
  return std::string(line.substr(colon + 1, end - colon));
}

std::string CollectedData::ParseLine() const { return ParseLine(LineAt(current_line_)); }

std::string CollectedData::GetProperty(std::string_view label) {
  const std::string& line = NextLine();
  return line.find(label) == std::string::npos ? "" : ParseLine(line);
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

void CollectedData::DisplayAll() const {
  for (const std::string& line : lines_) std::cout << line;
}
