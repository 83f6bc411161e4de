#ifndef INVENTORY_MACHINE_PART_CHANGES_H_
#define INVENTORY_MACHINE_PART_CHANGES_H_

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "inventory/machine/compare.h"

/// What can be said of a part that was there before.
struct PartScope {
  bool is_replaced = false;      ///< By another one: of the two only the states compare.
  bool has_counters = true;      ///< The same controller counted both times.
  bool may_lack_before = false;  ///< Values that are absent may just not have been collected then.
  bool may_lack_now = false;     ///< Nor now.
};

/// Adds the changes of one part, all with the same subject. In what is added, `property` is the
/// name for documents and `name` that for a person.
class PartChanges {
 public:
  PartChanges(Subject subject, std::string where, std::vector<Change>& changes)
      : subject_(subject), where_(std::move(where)), changes_(changes) {}

  void Compare(const Controller& before, const Controller& now, const PartScope& scope);
  void Compare(const LogicalDrive& before, const LogicalDrive& now, const PartScope& scope);
  void Compare(const Device& before, const Device& now, const PartScope& scope);
  void Compare(const UnlistedDrive& before, const UnlistedDrive& now);
  void Compare(const UnlistedDevice& before, const UnlistedDevice& now);
  /// They stand behind the controller's parts.
  void CompareLogs(const Controller& before, const Controller& now, const PartScope& scope);

  /// What is to be said of the part as a whole.
  Change& Add(ChangeCode code, std::string what);
  /// Words; nothing where they are the same.
  void AddText(ChangeCode code, const char* property, const char* name, const Text& before,
               const Text& now);
  /// Nothing where one of the two is no number.
  void AddCount(const char* property, const char* name, const std::optional<Number>& before,
                const std::optional<Number>& now);

 private:
  Subject subject_;
  std::string where_;
  std::vector<Change>& changes_;
};

/// The change of a log of so many entries; nothing where there are as many as before.
std::optional<Change> CompareLog(const char* property, const char* name, std::size_t before,
                                 std::size_t now, const PartScope& scope);

#endif  // INVENTORY_MACHINE_PART_CHANGES_H_
