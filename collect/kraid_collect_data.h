#ifndef COLLECT_KRAID_COLLECT_DATA_H_
#define COLLECT_KRAID_COLLECT_DATA_H_

#include <memory>
#include <vector>

#include "collect/arcconf_data.h"
#include "collect/hrconf_data.h"
#include "collect/kelvcmd_data.h"
#include "collect/kraid_raw_data.h"
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
  template <class Collector>
  void Run(std::vector<std::unique_ptr<Collector>>& collectors, int offset);

  NKVXHMZ20::TPluginManagerProvider* provider_;
  std::vector<KRaidController*> controllers_;
  std::vector<KRaidRawData*> raw_data_;
  // They own what the two lists point to: one collector for each call of InitData.
  std::vector<std::unique_ptr<KelvcmdData>> kelvcmd_collectors_;
  std::vector<std::unique_ptr<HrconfData>> hrconf_collectors_;
  std::vector<std::unique_ptr<ArcconfData>> arcconf_collectors_;
};

#endif  // COLLECT_KRAID_COLLECT_DATA_H_
