#ifndef MODEL_KRAID_BST_DATA_H_
#define MODEL_KRAID_BST_DATA_H_

#include <string>

#include "hmz/plugin_management.h"
#include "model/collected_data.h"

/// One row of a controller's bad stripe table: how many bad stripes a logical drive has.
class KRaidBstData {
 public:
  explicit KRaidBstData(NKVXHMZ20::TPluginManagerProvider* /*provider*/) {}
  virtual ~KRaidBstData() = default;
  KRaidBstData(const KRaidBstData&) = delete;
  KRaidBstData& operator=(const KRaidBstData&) = delete;

  virtual void InitData() {}

  /// Reads the line on which the cursor stands; the cursor stays. Throws std::out_of_range when it
  /// stands on none.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num);

  std::string GetControllerNum() const { return controller_num_; }
  /// Decimal numbers; "0" where the line has no digits, "" where it has not even the place.
  std::string GetLogicalDriveNum() const { return logical_drive_num_; }
  std::string GetBadStripeNum() const { return bad_stripe_num_; }

  void DisplayAll() const;

 private:
  std::string controller_num_;
  std::string logical_drive_num_;
  std::string bad_stripe_num_;
};

#endif  // MODEL_KRAID_BST_DATA_H_
