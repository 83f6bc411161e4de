#include "plugin/publishers.h"
#include "raidmgr/collect_raid_mgr_data.h"

namespace {

constexpr PropertyRow<KRaidRawData> kRows[] = {
    {"Command", Value<&KRaidRawData::GetCommand>},
    {"RawResults", Value<&KRaidRawData::GetRawData>},
};

void PublishRecords(const PublishContext& context, const std::vector<KRaidRawData*>& records,
                    const char* message_for_none) {
  if (records.empty()) LogPublishing(message_for_none);
  for (const KRaidRawData* record : records) PublishInstance(*context.cim_class, kRows, *record);
}

}  // namespace

void PublishRawData(const PublishContext& context) {
  PublishRecords(context, context.collector.GetKraidRawDataV(), "KraidRawDataVector is empty: ");
  if (context.manager_log.GetInitialized()) {
    PublishRecords(context, context.manager_log.GetRawRaidMgrLog(), "RaidMgrLog is empty: ");
  } else {
    LogPublishing("RaidMgrLog does not exist: ");
  }
}
