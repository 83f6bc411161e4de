#ifndef COLLECT_ARCCONF_DATA_H_
#define COLLECT_ARCCONF_DATA_H_

#include <string>

#include "collect/tool_collector.h"

/// The collector of the arcconf tool, which has no status to ask for.
class ArcconfData final : public ToolCollector {
 public:
  explicit ArcconfData(NKVXHMZ20::TPluginManagerProvider* provider);

  void InitData(int controller_offset) override;

  /// One run of the tool: all that it printed, "" when the run failed.
  std::string GatherData(const std::string& command, const std::string& parameter,
                         int controller_number);

  /// Does nothing; the other collectors have it, too.
  void DisplayAll(const std::string& /*text*/) const {}

 private:
  void ParseLogicalDrives(CollectedData& cursor, KRaidController& controller);
  void ParsePhysicalDevices(CollectedData& cursor, KRaidController& controller);
};

#endif  // COLLECT_ARCCONF_DATA_H_
