#ifndef MODEL_KRAID_EVENT_DDD_DATA_H_
#define MODEL_KRAID_EVENT_DDD_DATA_H_

#include <memory>
#include <string>

#include "hmz/cim_date_time.h"
#include "model/collected_data.h"
#include "model/kraid_record.h"

/// One entry of a controller's log of defunct drives.
class KRaidEventDddData : public KRaidRecord {
 public:
  using KRaidRecord::KRaidRecord;

  /// Reads the line on which the cursor stands; the cursor stays.
  /// Throws std::out_of_range when the date or the time is too short to be cut, THMZException when
  /// what was cut is no date and time.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num, int record_num);

  std::string GetDateValue() const { return date_value_; }  // mm/dd/yyyy
  std::string GetTimeValue() const { return time_value_; }  // hh:mm:ss
  std::string GetChannelValue() const { return channel_value_; }
  std::string GetIdValue() const { return id_value_; }
  std::string GetReasonValue() const { return reason_value_; }
  std::string GetDescriptionValue() const { return description_value_; }
  /// The record's number in at least four hexadecimal digits.
  std::string GetRecordIdValue() const { return record_id_value_; }
  /// Date and time, with an offset of 0; null before a successful reading. The record's own.
  const NKVXHMZ20::TCIMDateTime* GetDateTimeValue() const { return date_time_value_.get(); }

  void DisplayAll() const;

 private:
  std::string date_value_;
  std::string time_value_;
  std::string channel_value_;
  std::string id_value_;
  std::string reason_value_;
  std::string description_value_;
  std::string record_id_value_;
  std::unique_ptr<NKVXHMZ20::TCIMDateTime> date_time_value_;
};

#endif  // MODEL_KRAID_EVENT_DDD_DATA_H_
