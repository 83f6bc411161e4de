#include "model/kraid_event_words.h"

#include <cstdio>

#include "model/display.h"
#include "model/text.h"

void KRaidEventWords::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  controller_num_ = controller_num;
  number_of_entries_value_ = cursor->GetCurrentLine();
  for (std::string line = cursor->GetNextLine(); !Contains(line, "Command completed successfully");
       line = cursor->GetNextLine()) {
    if (Contains(line, "-----------")) continue;
    // Only the start of the line counts, for which any word may do: "entry" is 14.
    unsigned int value = 0;
    if (std::sscanf(line.c_str(), "%x", &value) == 1) values_.push_back(value);
  }
  date_time_value_ =
      std::make_unique<NKVXHMZ20::TCIMDateTime>(2000, 1, 1, 1, 1, 1, 1, static_cast<short>(1));
  record_id_value_ = "1";
}

void KRaidEventWords::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"Number Of Entries ", number_of_entries_value_},
                 {"RecordID ", record_id_value_}});
}
