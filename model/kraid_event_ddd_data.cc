#include "model/kraid_event_ddd_data.h"

#include <cstdio>

#include "model/bar_row.h"
#include "model/display_fields.h"

void KRaidEventDddData::SetConfigData(CollectedData* cursor, const std::string& controller_num,
                                      int record_num) {
  using D = KRaidEventDddData;
  static constexpr ColumnRow<D> kColumns[] = {
      {&D::date_value_}, {&D::time_value_},   {&D::channel_value_},
      {&D::id_value_},   {&D::reason_value_},
  };
  controller_num_ = controller_num;
  const std::string line = cursor->GetCurrentLine();
  BarRow columns(line);
  ReadColumns(columns, kColumns, *this);
  description_value_ = columns.Rest();
  // By fixed positions; substr throws where a text ends before one.
  const std::string stamp = date_value_.substr(6, 4) + date_value_.substr(0, 2) +
                            date_value_.substr(3, 2) + time_value_.substr(0, 2) +
                            time_value_.substr(3, 2) + time_value_.substr(6, 2) + ".000000+000";
  date_time_value_ = std::make_unique<NKVXHMZ20::TCIMDateTime>(stamp);
  char record_id[12];
  std::snprintf(record_id, sizeof record_id, "%04x", static_cast<unsigned int>(record_num));
  record_id_value_ = record_id;
}

void KRaidEventDddData::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"Date ", date_value_},
                 {"Time ", time_value_},
                 {"Channel ", channel_value_},
                 {"ID ", id_value_},
                 {"Reason ", reason_value_},
                 {"Description ", description_value_}});
}
