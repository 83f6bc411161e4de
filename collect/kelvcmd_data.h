#ifndef COLLECT_KELVCMD_DATA_H_
#define COLLECT_KELVCMD_DATA_H_

#include <memory>
#include <string>
#include <vector>

#include "collect/kraid_raw_data.h"
#include "hmz/plugin_management.h"
#include "model/kraid_controller.h"

/// The collector of the kelvcmd tool: asks about controllers 1 to 8, keeps every output as a raw
/// record and makes a KRaidController of each controller that answers.
class KelvcmdData {
 public:
  explicit KelvcmdData(NKVXHMZ20::TPluginManagerProvider* provider) : provider_(provider) {}
  virtual ~KelvcmdData() = default;
  KelvcmdData(const KelvcmdData&) = delete;
  KelvcmdData& operator=(const KelvcmdData&) = delete;

  /// Runs the whole collection. `controller_offset` is added to the numbers of the controllers,
  /// but not to those of the raw records, which keep the tool's own.
  /// Throws std::out_of_range when an output ends before its end marker; what was found before
  /// stays.
  void InitData(int controller_offset);

  /// One run of the tool: all that it printed, "" when the run failed.
  std::string GetDataFromTextFile(const std::string& command, const std::string& option,
                                  int controller_number);

  /// The objects belong to this collector.
  std::vector<KRaidController*> GetControllers() const;
  std::vector<KRaidRawData*> GetRawDataVector() const;

  /// Writes the lines of the text to standard output.
  void DisplayAll(const std::string& text) const;

 private:
  /// Whether the collection goes on with the next controller.
  enum class Next { kController, kEnd };

  void CaptureOutputs();
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

  NKVXHMZ20::TPluginManagerProvider* provider_;
  std::vector<std::unique_ptr<KRaidController>> controllers_;
  std::vector<std::unique_ptr<KRaidRawData>> raw_data_;
  // Taken from the latest heading that had one; they live on through all controllers of a call.
  std::string logical_drive_num_;
  std::string channel_num_;
};

#endif  // COLLECT_KELVCMD_DATA_H_
