#ifndef COLLECT_TOOL_COLLECTOR_H_
#define COLLECT_TOOL_COLLECTOR_H_

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "collect/kraid_raw_data.h"
#include "collect/tool_run.h"
#include "hmz/plugin_management.h"
#include "model/collected_data.h"
#include "model/kraid_controller.h"

/// What the collectors of all tools have in common: controllers are asked for by number, each
/// output is kept as a raw record, and each controller begins with the same look at its
/// configuration. How a tool's sections are walked is the business of its own collector.
class ToolCollector {
 public:
  virtual ~ToolCollector() = default;
  ToolCollector(const ToolCollector&) = delete;
  ToolCollector& operator=(const ToolCollector&) = delete;

  /// Runs the whole collection. `controller_offset` is the count of the controllers that were found
  /// before: it is added to the numbers of the controllers, but not to those of the raw records,
  /// which keep the tool's own.
  /// Throws std::out_of_range when a walk runs off the end of an output that lacks its end marker;
  /// what was found before stays.
  virtual void InitData(int controller_offset) = 0;

  /// The objects belong to this collector.
  std::vector<KRaidController*> GetControllers() const;
  std::vector<KRaidRawData*> GetRawDataVector() const;

 protected:
  /// A controller whose configuration was found, and the cursor over its output.
  struct Found {
    std::unique_ptr<KRaidController> controller;
    std::unique_ptr<CollectedData> cursor;
  };

  ToolCollector(const Tool& tool, NKVXHMZ20::TPluginManagerProvider* provider)
      : tool_(tool), provider_(provider) {}

  /// One run of the tool: all that it printed, "" when the run failed.
  std::string Run(const Command& command, int number) const;

  /// Runs all commands for all controllers and keeps every output that is not empty, under the
  /// number that the tool knows.
  void CaptureOutputs(std::span<const Command> commands);

  /// Runs the command once more and has the controller read its output by `read`, with the number
  /// `offset` higher than the tool's. Null pointers when there is no such controller.
  Found FindController(const Command& command, int number, int offset,
                       void (KRaidController::*read)(const std::string&, int)) const;

  /// The number behind "Logical drive number" and a blank, whether or not `label` has that blank;
  /// see CutShortOf: a line that ends in a blank or a carriage return gives the number whole, any
  /// other loses its last digit. Without the label `number` stays.
  static void CutDriveNumber(const std::string& line, std::string_view label, std::string& number);

  /// The channel in a heading: between "#" and ":", or up to the end of the line. Without "#"
  /// `channel` stays.
  static void CutChannel(const std::string& line, std::string& channel);

  const Tool& tool_;
  NKVXHMZ20::TPluginManagerProvider* provider_;
  std::vector<std::unique_ptr<KRaidController>> controllers_;
  std::vector<std::unique_ptr<KRaidRawData>> raw_data_;
};

inline constexpr char kLogicalDriveHeading[] = "Logical drive information";
inline constexpr char kPhysicalDriveHeading[] = "Physical drive information";

/// The newer tools' heading of a device, and how much of that line names it.
inline constexpr std::string_view kDeviceLabel = "Device #";
inline constexpr std::size_t kDeviceLabelLength = 12;

#endif  // COLLECT_TOOL_COLLECTOR_H_
