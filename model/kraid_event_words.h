#ifndef MODEL_KRAID_EVENT_WORDS_H_
#define MODEL_KRAID_EVENT_WORDS_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "hmz/cim_date_time.h"
#include "model/collected_data.h"
#include "model/kraid_record.h"

/// A log of event words in hexadecimal: what the soft and the hard event log have in common, which
/// is everything but their names.
class KRaidEventWords : public KRaidRecord {
 public:
  /// Reads the whole log. The cursor stands on its heading, in the end on "Command completed
  /// successfully". Throws std::out_of_range when that line is missing.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num);

  /// The heading as it is printed.
  std::string GetNumberOfEntriesValue() const { return number_of_entries_value_; }
  std::string GetRecordIdValue() const { return record_id_value_; }
  /// A fixed time, since the log has none; null before a successful reading. The record's own.
  const NKVXHMZ20::TCIMDateTime* GetDateTimeValue() const { return date_time_value_.get(); }

  void DisplayAll() const;

 protected:
  using KRaidRecord::KRaidRecord;

  std::vector<std::uint32_t> values_;

 private:
  std::string number_of_entries_value_;
  std::string record_id_value_;
  std::unique_ptr<NKVXHMZ20::TCIMDateTime> date_time_value_;
};

/// A controller's log of soft events.
class KRaidEventSoftData : public KRaidEventWords {
 public:
  using KRaidEventWords::KRaidEventWords;
  std::vector<std::uint32_t> GetSoftEventValues() const { return values_; }
};

/// A controller's log of hard events.
class KRaidEventHardData : public KRaidEventWords {
 public:
  using KRaidEventWords::KRaidEventWords;
  std::vector<std::uint32_t> GetHardEventValues() const { return values_; }
};

#endif  // MODEL_KRAID_EVENT_WORDS_H_
