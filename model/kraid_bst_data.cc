#include "model/kraid_bst_data.h"

#include <string_view>

#include "model/display.h"
#include "model/text.h"

void KRaidBstData::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  static constexpr std::string_view kLabel = "Logical drive ";
  controller_num_ = controller_num;
  std::string text = CollectedData::krRemoveLeadingWhiteSpace(cursor->GetCurrentLine());
  if (const auto label = text.find(kLabel); label != std::string::npos) {
    // One character before the line's end goes with it, on purpose. It is part of the unit that
    // follows the count; a count at the very end of the line loses its last digit.
    const auto end = text.find('\n', label);
    text = Cut(text, label + kLabel.size(), static_cast<std::ptrdiff_t>(end - label) - 15);
    logical_drive_num_ = std::to_string(ToInt32(text));
  }
  if (const auto dash = text.find('-'); dash != std::string::npos) {
    const auto end = text.find('\n', dash);
    const std::string count =
        end == std::string::npos ? text.substr(dash + 1)
                                 : Cut(text, dash + 1, static_cast<std::ptrdiff_t>(end - dash) - 2);
    bad_stripe_num_ = std::to_string(ToInt32(CollectedData::krRemoveLeadingWhiteSpace(count)));
  }
}

void KRaidBstData::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"Logical drive number", logical_drive_num_},
                 {"Bad stripe number", bad_stripe_num_}});
}
