#include "model/array_stripe_order.h"

#include "model/display_fields.h"
#include "model/markers.h"
#include "model/record_identifiers.h"
#include "model/text.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void ArrayStripeOrder::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  controller_num_ = controller_num;
  const std::string line = cursor->GetCurrentLine();
  const auto label = line.find(kStripeOrderLabel);
  if (label == std::string::npos) return;
  // A label at the very start of the line leaves no place for a letter.
  if (label > 0) array_data_ = line[label - 1];
  collection_id_ = ArrayIdentifier(controller_num_, array_data_);
  stripe_order_ = CollectedData::ParseLine(line);
  // No more than one line is taken: a list over three lines loses its third, on purpose.
  const std::string next = CollectedData::krRemoveLeadingWhiteSpace(cursor->GetNextLine());
  if (!next.empty() && IsDigit(next.front())) {
    stripe_order_ += next;
  } else {
    cursor->decrementLinePtr();
  }
}

void ArrayStripeOrder::SetConfigHrconfData(CollectedData* cursor, const std::string& controller_num,
                                           const std::string& logical_drive_num) {
  controller_num_ = controller_num;
  const std::string line = cursor->GetCurrentLine();
  if (!Contains(line, "Stripe order (Channel,Device)")) return;
  array_data_ = line;
  stripe_order_ = CollectedData::ParseLine(line);
  std::string next = CollectedData::krRemoveLeadingWhiteSpace(cursor->GetNextLine());
  while (IsDigit(next.at(0))) {
    stripe_order_ += " " + next;
    next = CollectedData::krRemoveLeadingWhiteSpace(cursor->GetNextLine());
  }
  cursor->decrementLinePtr();
  collection_id_ = DriveArrayIdentifier(controller_num_, logical_drive_num, stripe_order_);
}

void ArrayStripeOrder::SetConfigArcConfData(CollectedData* cursor,
                                            const std::string& controller_num,
                                            const std::string& logical_drive_num) {
  SetConfigHrconfData(cursor, controller_num, logical_drive_num);  // the tools do not differ here
}

void ArrayStripeOrder::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"CollectionID", collection_id_},
                 {"Array data", array_data_},
                 {"Stripe order", stripe_order_}});
}
