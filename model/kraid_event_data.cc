#include "model/kraid_event_data.h"

#include "hmz/os_specific.h"
#include "model/bar_row.h"
#include "model/display_fields.h"

void KRaidEventData::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  using E = KRaidEventData;
  // Which columns keep their trailing blanks is part of what is published: leave it as it is.
  static constexpr ColumnRow<E> kColumns[] = {
      {&E::channel_value_, Trim::kBothEnds},
      {&E::scsi_id_value_, Trim::kBothEnds},
      {&E::parity_value_},
      {&E::soft_value_, Trim::kBothEnds},
      {&E::hard_value_},
      {&E::pfa_value_, Trim::kBothEnds},
      {&E::misc_value_},
  };
  controller_num_ = controller_num;
  const std::string line = cursor->GetCurrentLine();
  BarRow columns(line);
  ReadColumns(columns, kColumns, *this);
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
