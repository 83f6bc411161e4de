#include "inventory/machine/part_changes.h"

#include <algorithm>

#include "inventory/base/readable.h"

namespace {

/// A text of a part that is compared.
template <class Part>
struct TextRow {
  const char* property;
  const char* name;
  Text (*get)(const Part& part);
};

constexpr TextRow<Controller> kControllerStates[] = {
    {"state", "state", [](const Controller& c) { return c.state.text; }},
    {"battery_state", "battery", [](const Controller& c) { return c.battery.state.text; }},
    {"battery_over_temperature", "battery over temperature",
     [](const Controller& c) { return c.battery.over_temperature.text; }},
    // Not how far it is, which is another number each time.
    {"operation", "background operation",
     [](const Controller& c) { return MakeText(c.operation.Describe()); }},
};
constexpr TextRow<Controller> kControllerVersions[] = {
    {"firmware", "firmware", [](const Controller& c) { return c.firmware.Reported(); }},
    {"bios", "BIOS", [](const Controller& c) { return c.bios.Reported(); }},
    {"boot_block", "boot block", [](const Controller& c) { return c.boot_block.Reported(); }},
    {"driver", "driver", [](const Controller& c) { return c.driver; }},
};
constexpr TextRow<LogicalDrive> kDriveStates[] = {
    {"state", "state", [](const LogicalDrive& d) { return d.state.text; }},
    {"access_blocked", "access blocked",
     [](const LogicalDrive& d) { return d.access_blocked.text; }},
};
constexpr TextRow<Device> kDeviceStates[] = {
    {"state", "state", [](const Device& d) { return d.state.text; }},
    {"predicts_failure", "PFA", [](const Device& d) { return d.predicts_failure.text; }},
};
constexpr TextRow<Device> kDeviceVersions[] = {
    {"firmware", "firmware", [](const Device& d) { return d.firmware; }},
};

/// A counter of a device.
struct CounterRow {
  const char* property;
  const char* name;
  std::optional<Number> ErrorCounters::*field;
};
constexpr CounterRow kCounters[] = {
    {"hard", "hard errors", &ErrorCounters::hard},
    {"soft", "soft errors", &ErrorCounters::soft},
    {"parity", "parity errors", &ErrorCounters::parity},
    {"predicted_failures", "PFA counter", &ErrorCounters::predicted_failures},
    {"misc", "misc errors", &ErrorCounters::misc},
};

constexpr char kBadStripes[] = "bad_stripes";
constexpr char kBadStripesName[] = "bad stripes";

template <class Part, std::size_t kCount>
void AddTexts(ChangeCode code, const TextRow<Part> (&rows)[kCount], const Part& before,
              const Part& now, const PartScope& scope, PartChanges& changes) {
  for (const TextRow<Part>& row : rows) {
    const Text old_text = row.get(before);
    const Text new_text = row.get(now);
    if ((!old_text && scope.may_lack_before) || (!new_text && scope.may_lack_now)) continue;
    changes.AddText(code, row.property, row.name, old_text, new_text);
  }
}

/// The largest of the counts; of several nobody knows which one went on.
const Number* Largest(const std::vector<const Number*>& counts) {
  const Number* largest = nullptr;
  for (const Number* count : counts) {
    if (!count->value) continue;
    if (largest == nullptr || *count->value > *largest->value) largest = count;
  }
  return largest;
}

std::optional<Number> Largest(const std::vector<Number>& counts) {
  std::vector<const Number*> all;
  all.reserve(counts.size());
  for (const Number& count : counts) all.push_back(&count);
  const Number* largest = Largest(all);
  return largest == nullptr ? std::nullopt : std::optional(*largest);
}

std::optional<Number> Largest(const std::vector<ErrorCounters>& rows,
                              std::optional<Number> ErrorCounters::*field) {
  std::vector<const Number*> all;
  for (const ErrorCounters& row : rows) {
    if (row.*field) all.push_back(&*(row.*field));
  }
  const Number* largest = Largest(all);
  return largest == nullptr ? std::nullopt : std::optional(*largest);
}

}  // namespace

void PartChanges::Compare(const Controller& before, const Controller& now, const PartScope& scope) {
  AddTexts(ChangeCode::kStateChanged, kControllerStates, before, now, scope, *this);
  if (scope.is_replaced) return;
  AddTexts(ChangeCode::kFirmwareChanged, kControllerVersions, before, now, scope, *this);
  AddCount("defunct_drives", "defunct disk drives", before.defunct_drives, now.defunct_drives);
}

void PartChanges::Compare(const LogicalDrive& before, const LogicalDrive& now,
                          const PartScope& scope) {
  AddTexts(ChangeCode::kStateChanged, kDriveStates, before, now, scope, *this);
  if (!scope.has_counters) return;
  AddCount(kBadStripes, kBadStripesName, Largest(before.bad_stripes), Largest(now.bad_stripes));
}

void PartChanges::Compare(const Device& before, const Device& now, const PartScope& scope) {
  AddTexts(ChangeCode::kStateChanged, kDeviceStates, before, now, scope, *this);
  if (scope.is_replaced) return;
  AddTexts(ChangeCode::kFirmwareChanged, kDeviceVersions, before, now, scope, *this);
  if (!scope.has_counters) return;
  for (const CounterRow& row : kCounters) {
    AddCount(row.property, row.name, Largest(before.counters, row.field),
             Largest(now.counters, row.field));
  }
}

void PartChanges::Compare(const UnlistedDrive& before, const UnlistedDrive& now) {
  AddCount(kBadStripes, kBadStripesName, Largest(before.bad_stripes), Largest(now.bad_stripes));
}

void PartChanges::Compare(const UnlistedDevice& before, const UnlistedDevice& now) {
  for (const CounterRow& row : kCounters) {
    AddCount(row.property, row.name, before.counters.*row.field, now.counters.*row.field);
  }
}

void PartChanges::CompareLogs(const Controller& before, const Controller& now,
                              const PartScope& scope) {
  const auto add = [this](std::optional<Change> change) {
    if (!change) return;
    change->subject = subject_;
    change->where = where_;
    changes_.push_back(std::move(*change));
  };
  add(CompareLog("defunct_log", "defunct drive log", before.defunct_log.count,
                 now.defunct_log.count, scope));
  // The other two are not collected as long as that one is empty.
  if (before.defunct_log.count == 0 || now.defunct_log.count == 0) return;
  add(CompareLog("soft_log", "soft event log", before.soft_log.count, now.soft_log.count, scope));
  add(CompareLog("hard_log", "hard event log", before.hard_log.count, now.hard_log.count, scope));
}

Change& PartChanges::Add(ChangeCode code, std::string what) {
  Change& change = changes_.emplace_back();
  change.code = code;
  change.subject = subject_;
  change.where = where_;
  change.what = std::move(what);
  return change;
}

void PartChanges::AddText(ChangeCode code, const char* property, const char* name,
                          const Text& before, const Text& now) {
  if (before == now) return;
  static constexpr char kAbsent[] = "not reported";
  Change& change = Add(
      code, std::string(name) + ": " + before.value_or(kAbsent) + ", now " + now.value_or(kAbsent));
  change.property = property;
  change.before = before;
  change.after = now;
}

void PartChanges::AddCount(const char* property, const char* name,
                           const std::optional<Number>& before, const std::optional<Number>& now) {
  if (!before || !now || !before->value || !now->value || *before->value == *now->value) return;
  const bool is_grown = *now->value > *before->value;
  const std::string text = std::string(name) + ": " + now->text + ", ";
  const std::uint64_t more = *now->value - *before->value;
  Change& change = is_grown ? Add(ChangeCode::kCounterGrown, text + std::to_string(more) + " more")
                            : Add(ChangeCode::kCounterReset, text + before->text + " before");
  change.property = property;
  change.before = before->text;
  change.after = now->text;
  if (is_grown) change.grown_by = more;
}

std::optional<Change> CompareLog(const char* property, const char* name, std::size_t before,
                                 std::size_t now, const PartScope& scope) {
  if (before == now || scope.is_replaced) return std::nullopt;
  const bool is_grown = now > before;
  // An entry that was not read then is not new, nor is one that is not read now lost.
  if (is_grown ? scope.may_lack_before : scope.may_lack_now) return std::nullopt;
  const std::size_t more = now - before;
  Change change;
  change.code = is_grown ? ChangeCode::kLogGrown : ChangeCode::kCounterReset;
  change.what = std::string(name) + ": ";
  change.what += is_grown ? std::to_string(more) + (more == 1 ? " new entry" : " new entries")
                          : "was cleared: " + std::to_string(before) +
                                (before == 1 ? " entry" : " entries") + " before, " +
                                std::to_string(now) + " now";
  change.property = property;
  change.before = std::to_string(before);
  change.after = std::to_string(now);
  if (is_grown) change.grown_by = more;
  return change;
}
