// The controllers' event logs and the RAID manager's.

#include "model/kraid_event_ddd_data.h"
#include "model/kraid_event_words.h"
#include "plugin/publishers.h"
#include "raidmgr/collect_raid_mgr_data.h"

namespace {

using NKVXHMZ20::TCIMValue;
using D = KRaidEventDddData;
using H = KRaidEventHardData;
using S = KRaidEventSoftData;
using M = CollectRaidMgrData;

/// The time of a record that has been read.
template <class Record>
TCIMValue TimeOf(const Child<Record>& child) {
  return *child.record.GetDateTimeValue();
}

template <auto Getter, class Record>
TCIMValue Words(const Child<Record>& child) {
  std::vector<std::uint32_t> words = (child.record.*Getter)();
  const std::size_t count = words.size();
  TCIMValue value;
  value.Set(TCIMValue::TCIMType(TCIMValue::kUint32), count, std::move(words));
  return value;
}

constexpr PropertyRow<Child<S>> kSoftRows[] = {
    {"CreationClassName", Fixed<"KVXSG_LogRecord_SoftEvent">},
    {"LogCreationClassName", Fixed<"KVXSG_LogRecord_SoftEvent">},
    {"LogName", Fixed<"KVXSG_LogRecord_SoftEvent">},
    {"MessageTimestamp", TimeOf},
    {"RecordID", OfRecord<&S::GetRecordIdValue>},
    {"ControllerNum", OwnersNumber},
    {"NumEntries", OfRecord<&S::GetNumberOfEntriesValue>},
    {"HexSoftEvent", Words<&S::GetSoftEventValues>},
};

constexpr PropertyRow<Child<H>> kHardRows[] = {
    // The soft log's name in all three, on purpose: hosts know the records by it.
    {"CreationClassName", Fixed<"KVXSG_LogRecord_SoftEvent">},
    {"LogCreationClassName", Fixed<"KVXSG_LogRecord_SoftEvent">},
    {"LogName", Fixed<"KVXSG_LogRecord_SoftEvent">},
    {"ControllerNum", OwnersNumber},
    {"MessageTimestamp", TimeOf},
    {"RecordID", OfRecord<&H::GetRecordIdValue>},
    {"NumEntries", OfRecord<&H::GetNumberOfEntriesValue>},
    {"HexHardEvent", Words<&H::GetHardEventValues>},
};

constexpr PropertyRow<Child<D>> kDddRows[] = {
    {"CreationClassName", Fixed<"KVXSG_LogRecord_krDDD">},
    {"LogCreationClassName", Fixed<"KVXSG_LogRecord_krDDD">},
    {"LogName", Fixed<"KVXSG_LogRecord_krDDD">},
    {"Controller", OfRecord<&D::GetControllerNum>},
    {"MessageTimestamp", TimeOf},
    {"RecordID", OfRecord<&D::GetRecordIdValue>},
    {"Date", OfRecord<&D::GetDateValue>},
    {"Time", OfRecord<&D::GetTimeValue>},
    {"Channel", OfRecord<&D::GetChannelValue>},
    {"ID", OfRecord<&D::GetIdValue>},
    {"Reason", OfRecord<&D::GetReasonValue>},
    // The short name is how the class spells this property.
    {"Descrip", OfRecord<&D::GetDescriptionValue>},
};

constexpr PropertyRow<M> kManagerRows[] = {
    {"CreationClassName", Fixed<"KVXSG_LogRecord_RAIDMgrEvent">},
    // Without the D of RAID, on purpose: hosts know the log by it.
    {"LogCreationClassName", Fixed<"KVXSG_LogRecord_RAIMgrEvent">},
    {"LogName", Fixed<"KelvaRAID Manager">},
    {"MessageTimestamp", Value<&M::GetTimeStamp>},
    {"RecordID", Value<&M::GetRecordId>},
    {"Severity", Value<&M::GetSeverity>},
    {"MachineName", Value<&M::GetMachineName>},
    {"Message", Value<&M::GetMessage>},
};

/// One instance for each controller that has this log.
template <class Record, std::size_t kCount>
void PublishLog(const PublishContext& context, Record* (KRaidController::*log)() const,
                const PropertyRow<Child<Record>> (&rows)[kCount]) {
  for (const KRaidController* controller : context.collector.GetControllers()) {
    const Record* record = (controller->*log)();
    if (record == nullptr) continue;
    PublishInstance(*context.cim_class, rows, Child<Record>{*controller, *record});
  }
}

}  // namespace

void PublishSoftEvents(const PublishContext& context) {
  PublishLog(context, &KRaidController::GetEventSoftData, kSoftRows);
}

void PublishHardEvents(const PublishContext& context) {
  PublishLog(context, &KRaidController::GetEventHardData, kHardRows);
}

void PublishDddEvents(const PublishContext& context) {
  PublishChildren(context, &KRaidController::GetEventDddData, kDddRows);
}

// The current entry first, then the step: a fresh reader's first instance is the entry that it made
// up. A later request goes on where this one stopped.
void PublishManagerEvents(const PublishContext& context) {
  if (!context.manager_log.GetInitialized()) return;
  do {
    PublishInstance(*context.cim_class, kManagerRows, context.manager_log);
  } while (context.manager_log.GetNextRaidMgrLogLine());
}
