#ifndef COLLECT_HRCONF_DATA_H_
#define COLLECT_HRCONF_DATA_H_

#include <string>

#include "collect/tool_collector.h"

/// The collector of the hrconf tool.
class HrconfData final : public ToolCollector {
 public:
  explicit HrconfData(NKVXHMZ20::TPluginManagerProvider* provider);

  void InitData(int controller_offset) override;

  /// One run of the tool: all that it printed, "" when the run failed.
  std::string GatherData(const std::string& command, const std::string& parameter,
                         int controller_number);

  /// Does nothing; the other collectors have it, too.
  void DisplayAll(const std::string& /*text*/) const {}

 private:
  void ParseLogicalDrives(CollectedData& cursor, KRaidController& controller);
  void ParsePhysicalDevices(CollectedData& cursor, KRaidController& controller);

  // Taken from the latest heading that had one; it lives on through all controllers of a call.
  std::string logical_drive_num_;
};

#endif  // COLLECT_HRCONF_DATA_H_
