#ifndef MODEL_KRAID_BST_DATA_H_
#define MODEL_KRAID_BST_DATA_H_

#include <string>

#include "model/collected_data.h"
#include "model/kraid_record.h"

/// One row of a controller's bad stripe table: how many bad stripes a logical drive has.
class KRaidBstData : public KRaidRecord {
 public:
  using KRaidRecord::KRaidRecord;

  /// Reads the line on which the cursor stands; the cursor stays. Throws std::out_of_range when it
  /// stands on none.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num);

  /// Decimal numbers; "0" where the line has no digits, "" where it has not even the place.
  std::string GetLogicalDriveNum() const { return logical_drive_num_; }
  std::string GetBadStripeNum() const { return bad_stripe_num_; }

  void DisplayAll() const;

 private:
  std::string logical_drive_num_;
  std::string bad_stripe_num_;
};

#endif  // MODEL_KRAID_BST_DATA_H_
