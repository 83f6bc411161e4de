#include "model/kraid_event_data.h"

#include "hmz/os_specific.h"
#include "model/bar_row.h"
#include "model/display_fields.h"

void KRaidEventData::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  using E = KRaidEventData;
  enum class Trim { kFront, kBothEnds };
  // Which columns keep their trailing blanks is part of what is published: leave it as it is.
  static constexpr struct {
    std::string E::*field;
    Trim trim;
  } kColumns[] = {
      {&E::channel_value_, Trim::kBothEnds}, {&E::scsi_id_value_, Trim::kBothEnds},
      {&E::parity_value_, Trim::kFront},     {&E::soft_value_, Trim::kBothEnds},
      {&E::hard_value_, Trim::kFront},       {&E::pfa_value_, Trim::kBothEnds},
      {&E::misc_value_, Trim::kFront},
  };
  controller_num_ = controller_num;
  const std::string line = cursor->GetCurrentLine();
  BarRow row(line);
  for (const auto& [field, trim] : kColumns) {
    this->*field = row.NextColumn();
    if (trim == Trim::kBothEnds) {
      this->*field = CollectedData::krRemoveTrailingWhiteSpace(this->*field);
    }
  }
  statistic_time_value_ = NKVXHMZ20::TOSSpecific::GetLocalTime();
}

void KRaidEventData::DisplayAll() const {
  // Odd labels, kept as people know them.
  DisplayFields({{"Controller number", controller_num_},
                 {"Statistic Time ", statistic_time_value_.ToString()},
                 {"Channel ", channel_value_},
                 {"SCSI ID", scsi_id_value_},
                 {"Parity", parity_value_},
                 {"Soft", soft_value_},
                 {"Mard", hard_value_},
                 {"PFA", pfa_value_},
                 {"Misc", misc_value_}});
}
