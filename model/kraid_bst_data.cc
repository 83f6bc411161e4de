#include "model/kraid_bst_data.h"

#include <string_view>

#include "model/display_fields.h"
#include "model/text.h"

void KRaidBstData::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  static constexpr std::string_view kLabel = "Logical drive ";
  controller_num_ = controller_num;
  // The line's end is missing behind a NUL, and again where the drive's number was cut out.
  std::string text = CollectedData::krRemoveLeadingWhiteSpace(cursor->GetCurrentLine());
  if (const auto label = text.find(kLabel); label != std::string::npos) {
    text = CutShortOf(text, label + kLabel.size(), text.find('\n', label));
    logical_drive_num_ = std::to_string(ToInt32(text));
  }
  if (const auto dash = text.find('-'); dash != std::string::npos) {
    const std::string count = CutShortOf(text, dash + 1, text.find('\n', dash));
    bad_stripe_num_ = std::to_string(ToInt32(CollectedData::krRemoveLeadingWhiteSpace(count)));
  }
}

void KRaidBstData::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"Logical drive number", logical_drive_num_},
                 {"Bad stripe number", bad_stripe_num_}});
}
