#include "inventory/machine/unread_lines.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "inventory/base/readable.h"
#include "inventory/machine/property_text.h"
#include "schema/published_texts.h"

namespace {

using NKVXHMZ20::TCIMValue;
using standin::StoredInstance;
using Values = std::unordered_set<std::string>;

constexpr std::size_t kLabelsNamed = 3;
constexpr char kRawData[] = "KVXSG_krRawData";

/// The controller that an instance tells of; "" when it tells of none.
std::string ControllerNumber(const StoredInstance& instance) {
  for (const char* property : {"ControllerNum", "Controller"}) {
    if (std::string number = PropertyText(instance, property); !number.empty()) return number;
  }
  // A version's, with the device behind it where it is a device's.
  const std::string element = PropertyText(instance, "SoftwareElementID");
  return element.substr(0, element.find('-'));
}

void AddText(const std::string& text, Values& values) {
  // A value may go over several lines of the output; a device's identifier begins with its place.
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) values.insert(Readable(line));
  if (const auto colon = text.find(':'); colon != std::string::npos) {
    values.insert(Readable(text.substr(colon + 1)));
  }
}

std::unordered_map<std::string, Values> PublishedValues(const Report& report) {
  std::unordered_map<std::string, Values> values;
  const auto& committed = report.repository.GetCommitted();
  for (std::size_t i = report.latest_pass; i < committed.size(); ++i) {
    const std::string number = ControllerNumber(*committed[i]);
    if (number.empty()) continue;
    for (const standin::StoredProperty& property : committed[i]->properties) {
      if (property.value.GetType().GetCode() != TCIMValue::kString) continue;
      if (!property.value.IsArray()) {
        AddText(property.value.GetString(), values[number]);
        continue;
      }
      for (const std::string_view text : property.value.GetStrings()) {
        AddText(std::string(text), values[number]);
      }
    }
  }
  return values;
}

/// "2 lines of it show up in nothing that was published: Label, Other"
class UnreadLines {
 public:
  void Add(const std::string& label) {
    ++count_;
    // One more than is named, to know that there are more.
    if (labels_.size() > kLabelsNamed) return;
    if (std::find(labels_.begin(), labels_.end(), label) == labels_.end()) labels_.push_back(label);
  }

  std::size_t GetCount() const { return count_; }
  std::string Describe() const {
    std::string text = Counted(count_, "line") + " of it " + (count_ == 1 ? "shows" : "show") +
                       " up in nothing that was published: ";
    for (std::size_t i = 0; i < std::min(labels_.size(), kLabelsNamed); ++i) {
      text.append(i == 0 ? "" : ", ").append(labels_[i]);
    }
    return labels_.size() > kLabelsNamed ? text + ", ..." : text;
  }

 private:
  std::size_t count_ = 0;
  std::vector<std::string> labels_;
};

UnreadLines CompareLines(const NKVXHMZ20::TCIMStrings& lines, const Values& published) {
  UnreadLines unread;
  for (const std::string_view line : lines) {
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    const std::string value = Readable(std::string(line.substr(colon + 1)));
    if (!value.empty() && !published.contains(value)) {
      unread.Add(Readable(std::string(line.substr(0, colon))));
    }
  }
  return unread;
}

}  // namespace

std::vector<Problem> FindUnreadLines(const Report& report, const Machine& machine) {
  std::unordered_map<std::string, std::string> numbers;  // by tool and its number
  for (const Controller& controller : machine.controllers) {
    if (controller.tool) numbers.emplace(controller.tool->Describe(), controller.NumberText());
  }
  const std::unordered_map<std::string, Values> published = PublishedValues(report);
  std::vector<Problem> problems;
  const auto& committed = report.repository.GetCommitted();
  for (std::size_t i = report.latest_pass; i < committed.size(); ++i) {
    const StoredInstance& record = *committed[i];
    const TCIMValue* results = record.Find("RawResults");
    if (*record.class_name != kRawData || !IsArrayOfStrings(results)) continue;
    const std::string command_line = PropertyText(record, "Command");
    std::istringstream words(command_line);
    std::string program;
    std::string word;
    int number = 0;
    std::string option;
    words >> program >> word >> number >> option;
    const std::string tool = program.substr(program.rfind('/') + 1);
    std::string name = tool;
    const auto controller = numbers.find(name.append(" ").append(std::to_string(number)));
    if (word != kGetConfigWord || controller == numbers.end()) continue;
    const UnreadLines unread =
        CompareLines(results->GetStrings(), published.at(controller->second));
    if (unread.GetCount() == 0) continue;
    problems.push_back({command_line, unread.Describe(), ProblemKind::kLinesNotUnderstood, tool,
                        word.append(" ").append(option), number, unread.GetCount()});
  }
  return problems;
}
