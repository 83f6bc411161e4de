#ifndef MODEL_KRAID_SUB_STAT_DATA_H_
#define MODEL_KRAID_SUB_STAT_DATA_H_

#include <string>

#include "hmz/cim_date_time.h"
#include "model/collected_data.h"
#include "model/kraid_record.h"

/// One row of a controller's sub-statistics: how a device transfers.
class KRaidSubStatData : public KRaidRecord {
 public:
  using KRaidRecord::KRaidRecord;

  /// Reads the line on which the cursor stands; the cursor stays. Throws std::out_of_range when it
  /// stands on none. Keys that the row lacks leave their fields empty. The controller's number is
  /// the one in the row: the argument is not used, on purpose.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num);

  std::string GetChannelValue() const { return channel_value_; }
  std::string GetScsiIDValue() const { return scsi_id_value_; }
  std::string GetInstanceIDValue() const { return instance_id_value_; }
  std::string GetParamsValue() const { return params_value_; }
  std::string GetReq_OffValue() const { return req_off_value_; }
  std::string GetMax_Txer_PValue() const { return max_txer_p_value_; }
  std::string GetCur_Txer_PValue() const { return cur_txer_p_value_; }
  /// When the row was read: the host's local time.
  NKVXHMZ20::TCIMDateTime GetStatisticTimeValue() const { return statistic_time_value_; }

  void DisplayAll() const;

 private:
  std::string channel_value_;
  std::string scsi_id_value_;
  std::string instance_id_value_;
  std::string params_value_;
  std::string req_off_value_;
  std::string max_txer_p_value_;
  std::string cur_txer_p_value_;
  NKVXHMZ20::TCIMDateTime statistic_time_value_;
};

#endif  // MODEL_KRAID_SUB_STAT_DATA_H_
