#include "inventory/print/html/html_parts.h"

const char* ClassOf(Severity severity) {
  static constexpr const char* kClasses[] = {"ok", "wn", "cr"};
  return kClasses[static_cast<int>(severity)];
}

void WriteMark(Severity severity, HtmlWriter& html) {
  static constexpr const char* kLetters[] = {"O", "W", "C"};
  html("<i class=\"m {}\">{}</i>", ClassOf(severity), kLetters[static_cast<int>(severity)]);
}

std::string IdOf(const Subject& subject) {
  static constexpr const char* kKinds[] = {"t", "", "-l", "-d", "-ul", "-ud", "-m"};
  const std::string kind = kKinds[static_cast<int>(subject.kind)];
  if (subject.kind == Subject::Kind::kTool) return kind + std::to_string(subject.index);
  const std::string controller = "c" + std::to_string(subject.controller);
  return kind.empty() ? controller : controller + kind + std::to_string(subject.index);
}

std::string TitleOf(const Controller& controller) {
  const std::string title = "Controller " + controller.NumberText();
  return controller.name ? title + " “" + *controller.name + "”" : title;
}

std::string LabelOf(const DriveArray& array) {
  if (array.letter) return *array.letter;
  return array.logical_drive ? array.logical_drive->text : "?";
}

std::string DescribeCounters(const std::vector<ErrorCounters>& counters) {
  std::string text;
  for (const ErrorCounters& all : counters) {
    for (const auto& [name, member] : kErrorKinds) {
      const std::optional<Number>& count = all.*member;
      if (!count || IsZero(*count)) continue;
      text.append(text.empty() ? "" : ", ").append(count->text).append(" ").append(name);
    }
  }
  return text;
}
