#ifndef COLLECT_KRAID_COLLECT_DATA_H_
#define COLLECT_KRAID_COLLECT_DATA_H_

#include <memory>
#include <vector>

#include "collect/kraid_raw_data.h"
#include "collect/tool_collector.h"
#include "hmz/plugin_management.h"
#include "model/kraid_controller.h"

/// The collection driver: runs the collectors, one per tool, in their fixed order and joins what
/// they found. It runs no tool and reads no text itself.
class KraidCollectData {
 public:
  explicit KraidCollectData(NKVXHMZ20::TPluginManagerProvider* provider) : provider_(provider) {}
  virtual ~KraidCollectData() = default;
  KraidCollectData(const KraidCollectData&) = delete;
  KraidCollectData& operator=(const KraidCollectData&) = delete;

  /// Collects everything. Tools that are missing or fail only add nothing; an exception that
  /// leaves a collector passes, and that collector's results are then not joined. A second call
  /// adds its results behind those of the first.
  void InitData();

  /// In the order of the collectors and, within one, in the order of finding. The objects belong
  /// to this driver.
  std::vector<KRaidController*> GetControllers() const { return controllers_; }
  std::vector<KRaidRawData*> GetKraidRawDataV() const { return raw_data_; }

 private:
  NKVXHMZ20::TPluginManagerProvider* provider_;
  std::vector<KRaidController*> controllers_;
  std::vector<KRaidRawData*> raw_data_;
  // They own what the two lists point to: one for each tool and call of InitData.
  std::vector<std::unique_ptr<ToolCollector>> collectors_;
};

#endif  // COLLECT_KRAID_COLLECT_DATA_H_
