#ifndef MODEL_KRAID_EVENT_DATA_H_
#define MODEL_KRAID_EVENT_DATA_H_

#include <string>

#include "hmz/cim_date_time.h"
#include "model/collected_data.h"
#include "model/kraid_record.h"

/// One row of a controller's device event table: how often what happened to a device.
class KRaidEventData : public KRaidRecord {
 public:
  using KRaidRecord::KRaidRecord;

  /// Reads the line on which the cursor stands; the cursor stays. Throws std::out_of_range when it
  /// stands on none. Columns that the row lacks stay empty.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num);

  std::string GetChannelValue() const { return channel_value_; }
  std::string GetScsiIDValue() const { return scsi_id_value_; }
  std::string GetParityValue() const { return parity_value_; }
  std::string GetSoftValue() const { return soft_value_; }
  std::string GetHardValue() const { return hard_value_; }
  std::string GetPFAValue() const { return pfa_value_; }
  std::string GetMiscValue() const { return misc_value_; }
  /// When the row was read: the host's local time.
  NKVXHMZ20::TCIMDateTime GetStatisticTimeValue() const { return statistic_time_value_; }

  void DisplayAll() const;

 private:
  std::string channel_value_;
  std::string scsi_id_value_;
  std::string parity_value_;
  std::string soft_value_;
  std::string hard_value_;
  std::string pfa_value_;
  std::string misc_value_;
  NKVXHMZ20::TCIMDateTime statistic_time_value_;
};

#endif  // MODEL_KRAID_EVENT_DATA_H_
