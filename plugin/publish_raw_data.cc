#include "plugin/publishers.h"

namespace {

constexpr PropertyRow<KRaidRawData> kRows[] = {
    {"Command", Value<&KRaidRawData::GetCommand>},
    {"RawResults", Value<&KRaidRawData::GetRawData>},
};

}  // namespace

void PublishRawData(const PublishContext& context) {
  const std::vector<KRaidRawData*> records = context.collector.GetKraidRawDataV();
  if (records.empty()) LogPublishing("KraidRawDataVector is empty: ");
  for (const KRaidRawData* record : records) PublishInstance(*context.cim_class, kRows, *record);
}
