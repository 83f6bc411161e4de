#include "collect/tool_collector.h"

#include <string_view>
#include <utility>

#include "model/markers.h"
#include "model/owned.h"
#include "model/text.h"
#include "schema/published_texts.h"

std::vector<KRaidController*> ToolCollector::GetControllers() const {
  return PointersTo(controllers_);
}

std::vector<KRaidRawData*> ToolCollector::GetRawDataVector() const { return PointersTo(raw_data_); }

std::string ToolCollector::Run(const Command& command, int number) const {
  return RunTool(tool_, command.word, command.option, number);
}

void ToolCollector::CaptureOutputs(std::span<const Command> commands) {
  for (int number = kFirstController; number <= kLastController; ++number) {
    for (const Command& command : commands) {
      const std::string output = Run(command, number);
      if (output.empty()) continue;
      raw_data_.push_back(std::make_unique<KRaidRawData>(PathOf(tool_), command.word, number,
                                                         command.option, output));
    }
  }
}

ToolCollector::Found ToolCollector::FindController(const Command& command, int number, int offset,
                                                   void (KRaidController::*read)(const std::string&,
                                                                                 int)) const {
  std::string config = Run(command, number);
  if (config.empty()) return {};
  // Its properties are looked for in all of the text, the heading in whole lines only.
  auto controller = std::make_unique<KRaidController>(provider_);
  (controller.get()->*read)(config, number + offset);
  if (!controller->GetControllerFound()) return {};
  auto cursor = std::make_unique<CollectedData>(provider_, std::move(config));
  if (cursor->FindLine(kControllerHeading).empty()) return {};
  return {std::move(controller), std::move(cursor)};
}

void ToolCollector::CutDriveNumber(const std::string& line, std::string_view label,
                                   std::string& number) {
  const auto found = line.find(label);
  if (found == std::string::npos) return;
  number =
      CutShortOf(line, found + std::string_view(kLogicalDriveLabel).size(), line.find('\n', found));
}

void ToolCollector::CutChannel(const std::string& line, std::string& channel) {
  const auto mark = line.find('#');
  if (mark == std::string::npos) return;
  channel = line.substr(mark + 1, line.find(':', mark) - mark - 1);
}
