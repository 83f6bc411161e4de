#ifndef MODEL_ARRAY_STRIPE_ORDER_H_
#define MODEL_ARRAY_STRIPE_ORDER_H_

#include <string>

#include "model/collected_data.h"
#include "model/kraid_record.h"

/// The order in which the member drives of one array are striped.
class ArrayStripeOrder : public KRaidRecord {
 public:
  using KRaidRecord::KRaidRecord;

  /// Reads the array's line in kelvcmd's "getconfig", on which the cursor stands, and the one line
  /// behind it when that continues the list; the cursor is then on it.
  /// Throws std::out_of_range when no line follows.
  void SetConfigData(CollectedData* cursor, const std::string& controller_num);

  /// Reads the array's line in the "getconfig" of the newer tools, on which the cursor stands, and
  /// all lines behind it that continue the list. The whole line stands for the array's letter, and
  /// the list is part of the key.
  /// Throws std::out_of_range when the list runs to the end of the output.
  void SetConfigHrconfData(CollectedData* cursor, const std::string& controller_num,
                           const std::string& logical_drive_num);
  void SetConfigArcConfData(CollectedData* cursor, const std::string& controller_num,
                            const std::string& logical_drive_num);

  /// The key of the array; see model/record_identifiers.h.
  std::string GetCollectionID() const { return collection_id_; }
  /// The array's letter; the whole line with the newer tools.
  std::string GetArrayData() const { return array_data_; }
  /// The members as printed; only lines that continue the list lose their leading white space.
  std::string GetStripeOrder() const { return stripe_order_; }

  void DisplayAll() const;

 private:
  std::string collection_id_;
  std::string array_data_;
  std::string stripe_order_;
};

#endif  // MODEL_ARRAY_STRIPE_ORDER_H_
