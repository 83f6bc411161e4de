#include "inventory/machine/compare.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>

#include "inventory/base/readable.h"
#include "inventory/machine/health.h"
#include "inventory/machine/part_changes.h"
#include "inventory/machine/part_identity.h"
#include "inventory/machine/part_matching.h"
#include "inventory/machine/unseen.h"

namespace {

using Kind = Subject::Kind;

struct CodeRow {
  const char* name;
  Severity severity;
};
/// In the order of the codes.
constexpr CodeRow kCodes[] = {
    {"gone", Severity::kCritical},      {"new", Severity::kWarning},
    {"replaced", Severity::kWarning},   {"moved", Severity::kFine},
    {"state_changed", Severity::kFine}, {"firmware_changed", Severity::kFine},
    {"counter_grown", Severity::kFine}, {"counter_reset", Severity::kFine},
    {"log_grown", Severity::kFine},     {"host_changed", Severity::kFine},
};

constexpr char kNumberShared[] = ", as two controllers have one number";

std::unordered_set<std::string> SharedNumbers(const Machine& machine) {
  std::unordered_set<std::string> shared;
  for (const Controller& controller : machine.controllers) {
    if (controller.shares_number) shared.insert(controller.NumberText());
  }
  return shared;
}

class Comparer {
 public:
  Comparer(const EarlierMachine& earlier, const Machine& now, const std::vector<Problem>& problems,
           Comparison& comparison)
      : earlier_(earlier.machine),
        now_(now),
        unseen_before_(earlier.machine, earlier.problems),
        unseen_now_(now, problems),
        shared_before_(SharedNumbers(earlier.machine)),
        shared_now_(SharedNumbers(now)),
        controllers_(MatchControllers(earlier_, now)),
        devices_(MatchDevices(earlier_, now, controllers_)),
        earlier_numbering_(earlier_),
        numbering_(now),
        comparison_(comparison) {}

  void Compare() {
    for (std::size_t i = 0; i < now_.controllers.size(); ++i) {
      if (const Matches::Index before = controllers_.EarlierOf(i)) {
        CompareControllers(*before, i);
      } else {
        AddNewController(i);
      }
    }
    for (std::size_t i = 0; i < earlier_.controllers.size(); ++i) {
      comparison_.controllers_now.push_back(controllers_.NowOf(i));
      if (!controllers_.NowOf(i)) AddGoneController(i);
    }
    CompareManagerLogs();
  }

 private:
  /// What a controller and one of its parts are called and where they are.
  PartChanges ChangesOf(Kind kind, std::size_t controller, std::size_t index,
                        const std::string& part) {
    std::string where = DescribeController(now_.controllers[controller]);
    if (!part.empty()) where += ", " + part;
    return {{kind, controller, index}, std::move(where), comparison_.changes};
  }
  PartChanges ChangesOf(std::size_t controller) {
    return ChangesOf(Kind::kController, controller, 0, "");
  }

  /// Its place is the controller's that it was on.
  void AddGone(const Subject& subject, const std::string& part, const std::string& what) {
    std::string where = DescribeController(earlier_.controllers[subject.controller]);
    if (!part.empty()) where += ", " + part;
    PartChanges changes(subject, std::move(where), comparison_.changes);
    changes.Add(ChangeCode::kGone, what).is_of_earlier = true;
  }

  /// The controller is there both times.
  void CompareControllers(std::size_t before, std::size_t now);
  void CompareOwn(const Controller& old, std::size_t now, const PartScope& scope);
  void CompareLogicalDrives(std::size_t before, std::size_t now, const PartScope& scope);
  void CompareDevices(std::size_t before, std::size_t now, const PartScope& scope);
  /// The device `number` of those now, on a controller that may be new, was there before.
  void CompareDevice(std::size_t before, std::size_t number, const PartScope& scope);
  void CompareUnlisted(std::size_t before, std::size_t now);
  void AddUncompared(std::size_t now, const PartScope& scope);
  /// The parts of all controllers of one number are shown with the first: nobody knows whose.
  static bool HasPartsOfOthers(const Controller& controller,
                               const std::unordered_set<std::string>& shared) {
    return shared.contains(controller.NumberText());
  }
  void AddNewController(std::size_t now);
  void AddGoneController(std::size_t before);
  void CompareManagerLogs();

  const Machine& earlier_;
  const Machine& now_;
  Unseen unseen_before_;
  Unseen unseen_now_;
  std::unordered_set<std::string> shared_before_;  // numbers that two controllers have
  std::unordered_set<std::string> shared_now_;
  Matches controllers_;
  Matches devices_;
  DeviceNumbering earlier_numbering_;
  DeviceNumbering numbering_;
  Comparison& comparison_;
  // Parts of the current controller that were seen once and may have been there twice.
  std::size_t uncompared_drives_ = 0;
  std::size_t uncompared_devices_ = 0;
};

void Comparer::CompareControllers(std::size_t before, std::size_t now) {
  const Controller& old = earlier_.controllers[before];
  const Controller& current = now_.controllers[now];
  if (HasPartsOfOthers(old, shared_before_) || HasPartsOfOthers(current, shared_now_)) {
    comparison_.not_compared.push_back(DescribeController(current) + kNumberShared);
    return;
  }
  PartScope scope;
  scope.is_replaced = IdentityOf(old).IsOther(IdentityOf(current));
  scope.has_counters = !scope.is_replaced;
  scope.may_lack_before = unseen_before_.MayLack(old);
  scope.may_lack_now = unseen_now_.MayLack(current);
  uncompared_drives_ = 0;
  uncompared_devices_ = 0;
  CompareOwn(old, now, scope);
  CompareLogicalDrives(before, now, scope);
  CompareDevices(before, now, scope);
  if (scope.has_counters) CompareUnlisted(before, now);
  AddUncompared(now, scope);
  ChangesOf(now).CompareLogs(old, current, scope);
}

void Comparer::CompareOwn(const Controller& old, std::size_t now, const PartScope& scope) {
  const Controller& current = now_.controllers[now];
  PartChanges changes = ChangesOf(now);
  if (scope.is_replaced) {
    AddReplaced(IdentityOf(old), IdentityOf(current), changes);
  } else if (old.slot && current.slot && old.slot != current.slot) {
    // Its numbers change when others vanish. That is no move.
    Change& moved =
        changes.Add(ChangeCode::kMoved, "moved from slot " + *old.slot + " to " + *current.slot);
    moved.property = "slot";
    moved.before = old.slot;
    moved.after = current.slot;
  }
  changes.Compare(old, current, scope);
}

void Comparer::CompareLogicalDrives(std::size_t before, std::size_t now, const PartScope& scope) {
  const std::vector<LogicalDrive>& old = earlier_.controllers[before].logical_drives;
  const std::vector<LogicalDrive>& current = now_.controllers[now].logical_drives;
  const Matches matches = MatchLogicalDrives(earlier_.controllers[before], now_.controllers[now]);
  for (std::size_t i = 0; i < current.size(); ++i) {
    PartChanges changes = ChangesOf(Kind::kLogicalDrive, now, i, DescribeDrive(current[i]));
    if (const Matches::Index same = matches.EarlierOf(i)) {
      changes.Compare(old[*same], current[i], scope);
    } else if (unseen_before_.MayHide(earlier_.controllers[before])) {
      ++uncompared_drives_;
    } else {
      changes.Add(ChangeCode::kNew, "is new");
    }
  }
  for (std::size_t i = 0; i < old.size(); ++i) {
    if (matches.NowOf(i)) continue;
    if (unseen_now_.MayHide(now_.controllers[now])) {
      ++uncompared_drives_;
    } else {
      AddGone({Kind::kLogicalDrive, before, i}, DescribeDrive(old[i]), "is gone");
    }
  }
}

void Comparer::CompareDevices(std::size_t before, std::size_t now, const PartScope& scope) {
  const std::vector<Device>& current = now_.controllers[now].devices;
  for (std::size_t i = 0; i < current.size(); ++i) {
    const std::size_t number = numbering_.NumberOf(now, i);
    if (const Matches::Index same = devices_.EarlierOf(number)) {
      CompareDevice(*same, number, scope);
    } else if (unseen_before_.MayHide(earlier_.controllers[before])) {
      ++uncompared_devices_;
    } else {
      ChangesOf(Kind::kDevice, now, i, DescribeDevice(current[i]))
          .Add(ChangeCode::kNew, WithIdentity("is new", IdentityOf(current[i])));
    }
  }
  const std::vector<Device>& old = earlier_.controllers[before].devices;
  for (std::size_t i = 0; i < old.size(); ++i) {
    if (devices_.NowOf(earlier_numbering_.NumberOf(before, i))) continue;
    if (unseen_now_.MayHide(now_.controllers[now])) {
      ++uncompared_devices_;
    } else {
      AddGone({Kind::kDevice, before, i}, DescribeDevice(old[i]),
              WithIdentity("is gone", IdentityOf(old[i])));
    }
  }
}

void Comparer::CompareDevice(std::size_t before, std::size_t number, const PartScope& scope) {
  const auto [old_controller, old_index] = earlier_numbering_.PositionOf(before);
  const auto [controller, index] = numbering_.PositionOf(number);
  const Device& old = earlier_.controllers[old_controller].devices[old_index];
  const Device& current = now_.controllers[controller].devices[index];
  const bool is_on_same = controllers_.NowOf(old_controller) == controller;
  PartScope own = scope;
  own.is_replaced = IdentityOf(old).IsOther(IdentityOf(current));
  own.has_counters = scope.has_counters && is_on_same;
  PartChanges changes = ChangesOf(Kind::kDevice, controller, index, DescribeDevice(current));
  if (own.is_replaced) {
    AddReplaced(IdentityOf(old), IdentityOf(current), changes);
  } else if (!is_on_same || old.place != current.place) {
    std::string from = DescribeDevice(old);
    if (!is_on_same) {
      from = DescribeController(earlier_.controllers[old_controller]) + ", " + from;
    }
    Change& moved = changes.Add(ChangeCode::kMoved,
                                WithIdentity("moved here from " + from, IdentityOf(current)));
    moved.property = "place";
    moved.before = old.place.GetText();
    moved.after = current.place.GetText();
  }
  changes.Compare(old, current, own);
}

void Comparer::CompareUnlisted(std::size_t before, std::size_t now) {
  const Controller& old = earlier_.controllers[before];
  const Controller& current = now_.controllers[now];
  const Matches drives = MatchUnlistedDrives(old, current);
  for (std::size_t i = 0; i < current.unlisted_drives.size(); ++i) {
    const UnlistedDrive& drive = current.unlisted_drives[i];
    if (const Matches::Index same = drives.EarlierOf(i)) {
      ChangesOf(Kind::kUnlistedDrive, now, i, DescribeDrive(drive))
          .Compare(old.unlisted_drives[*same], drive);
    }
  }
  const Matches devices = MatchUnlistedDevices(old, current);
  for (std::size_t i = 0; i < current.unlisted_devices.size(); ++i) {
    const UnlistedDevice& device = current.unlisted_devices[i];
    if (const Matches::Index same = devices.EarlierOf(i)) {
      ChangesOf(Kind::kUnlistedDevice, now, i, DescribeDevice(device))
          .Compare(old.unlisted_devices[*same], device);
    }
  }
}

void Comparer::AddUncompared(std::size_t now, const PartScope& scope) {
  const bool has_parts = uncompared_drives_ + uncompared_devices_ > 0;
  if (!has_parts && (scope.may_lack_before || scope.may_lack_now)) {
    comparison_.not_compared.push_back(DescribeController(now_.controllers[now]) +
                                       ", what was not collected of it");
  }
  if (!has_parts) return;
  std::string text = DescribeController(now_.controllers[now]);
  if (uncompared_drives_ > 0) text += ", " + Counted(uncompared_drives_, "logical drive");
  if (uncompared_devices_ > 0) text += ", " + Counted(uncompared_devices_, "device");
  comparison_.not_compared.push_back(text);
}

void Comparer::AddNewController(std::size_t now) {
  const Controller& current = now_.controllers[now];
  if (HasPartsOfOthers(current, shared_now_)) {
    comparison_.not_compared.push_back(DescribeController(current) + kNumberShared);
    return;
  }
  if (unseen_before_.MayHide(current)) {
    comparison_.not_compared.push_back(DescribeController(current));
  } else {
    ChangesOf(now).Add(ChangeCode::kNew, WithParts("is new", current));
  }
  PartScope scope;
  scope.may_lack_now = unseen_now_.MayLack(current);
  for (std::size_t i = 0; i < current.devices.size(); ++i) {
    const std::size_t number = numbering_.NumberOf(now, i);
    if (const Matches::Index same = devices_.EarlierOf(number)) CompareDevice(*same, number, scope);
  }
}

void Comparer::AddGoneController(std::size_t before) {
  const Controller& old = earlier_.controllers[before];
  if (unseen_now_.MayHide(old)) {
    comparison_.not_compared.push_back(DescribeController(old));
  } else {
    AddGone({Kind::kController, before, 0}, "", WithParts("is gone", old));
  }
}

void Comparer::CompareManagerLogs() {
  PartScope scope;
  scope.may_lack_before = unseen_before_.MayLackManagerLog();
  scope.may_lack_now = unseen_now_.MayLackManagerLog();
  auto change = CompareLog("manager_log", "RAID manager's log", earlier_.manager_log.count,
                           now_.manager_log.count, scope);
  if (change) comparison_.changes.push_back(std::move(*change));
}

}  // namespace

const char* NameOf(ChangeCode code) { return kCodes[static_cast<int>(code)].name; }

Severity SeverityOf(ChangeCode code) { return kCodes[static_cast<int>(code)].severity; }

Comparison Compare(EarlierMachine earlier, const Machine& now, const std::string& host,
                   const std::vector<Problem>& problems) {
  Comparison comparison;
  // Documents have it as it can be read.
  const std::string old_host = Readable(earlier.host);
  const std::string new_host = Readable(host);
  if (old_host != new_host) {
    Change& change = comparison.changes.emplace_back();
    change.code = ChangeCode::kHostChanged;
    change.what = "host: " + old_host + ", now " + new_host;
    change.property = "host";
    change.before = old_host;
    change.after = new_host;
  }
  Comparer(earlier, now, problems, comparison).Compare();
  comparison.since = std::move(earlier.since);
  comparison.earlier = std::move(earlier.machine);
  return comparison;
}
