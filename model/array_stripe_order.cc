#include "model/array_stripe_order.h"

#include "model/display.h"

namespace {

bool StartsWithDigit(const std::string& text) {
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

}  // namespace

void ArrayStripeOrder::SetConfigData(CollectedData* cursor, const std::string& controller_num) {
  controller_num_ = controller_num;
  const std::string line = cursor->GetCurrentLine();
  const auto label = line.find(" stripe order (Channel/SCSI ID)");
  if (label == std::string::npos) return;
  // A label at the very start of the line leaves no place for a letter.
  if (label > 0) array_data_ = line[label - 1];
  collection_id_ = "KelvaRAID" + controller_num_ + "Array" + array_data_;
  stripe_order_ = CollectedData::ParseLine(line);
  // No more than one line is taken: a list over three lines loses its third, on purpose.
  const std::string next = CollectedData::krRemoveLeadingWhiteSpace(cursor->GetNextLine());
  if (StartsWithDigit(next)) {
    stripe_order_ += next;
  } else {
    cursor->decrementLinePtr();
  }
}

void ArrayStripeOrder::DisplayAll() const {
  DisplayFields({{"Controller number", controller_num_},
                 {"CollectionID", collection_id_},
                 {"Array data", array_data_},
                 {"Stripe order", stripe_order_}});
}
