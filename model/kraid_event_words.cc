#include "model/kraid_event_words.h"

#include <cstdlib>

#include "model/display_fields.h"
#include "model/markers.h"
#include "model/text.h"

void KRaidEventWords::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  controller_num_ = controller_num;
  number_of_entries_value_ = cursor->GetCurrentLine();
  for (std::string line = cursor->GetNextLine(); !Contains(line, kEndMarker);
       line = cursor->GetNextLine()) {
    if (Contains(line, "-----------")) continue;
    // Only the start of the line counts. A word that begins with a letter from a to f is a number
    // there, too: "entry" is 14.
    char* end = nullptr;
    const auto value = static_cast<std::uint32_t>(std::strtoul(line.c_str(), &end, 16));
    if (end != line.c_str()) values_.push_back(value);
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
