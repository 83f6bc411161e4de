#ifndef COLLECT_KELVCMD_DATA_H_
#define COLLECT_KELVCMD_DATA_H_

#include <string>

#include "collect/tool_collector.h"

/// The collector of the kelvcmd tool: asks about controllers 1 to 8, keeps every output as a raw
/// record and makes a KRaidController of each controller that answers.
class KelvcmdData final : public ToolCollector {
 public:
  explicit KelvcmdData(NKVXHMZ20::TPluginManagerProvider* provider);

  void InitData(int controller_offset) override;

  /// One run of the tool: all that it printed, "" when the run failed.
  std::string GetDataFromTextFile(const std::string& command, const std::string& option,
                                  int controller_number);

  /// Writes the lines of the text to standard output.
  void DisplayAll(const std::string& text) const;

 private:
  /// Whether the collection goes on with the next controller.
  enum class Next { kController, kEnd };

  Next ParseController(int number, int controller_offset);
  void ParseLogicalDrives(CollectedData& cursor, KRaidController& controller);
  void ParseStripeOrders(CollectedData& cursor, KRaidController& controller);
  void ParsePhysicalDevices(CollectedData& cursor, KRaidController& controller);
  void ParseBadStripes(int number, KRaidController& controller);
  void ParseDeviceEvents(int number, KRaidController& controller);
  /// Whether the controller's other logs are to be read: not behind an empty log of this kind.
  bool ParseDddEvents(int number, KRaidController& controller);
  void ParseEventWords(int number, KRaidController& controller);
  void ParseSubStatistics(int number, KRaidController& controller);

  // Taken from the latest heading that had one; they live on through all controllers of a call.
  std::string logical_drive_num_;
  std::string channel_num_;
};

#endif  // COLLECT_KELVCMD_DATA_H_
