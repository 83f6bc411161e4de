#include "collect/kraid_collect_data.h"

#include "collect/arcconf_data.h"
#include "collect/hrconf_data.h"
#include "collect/kelvcmd_data.h"

namespace {

using Provider = NKVXHMZ20::TPluginManagerProvider;

template <class Collector>
std::unique_ptr<ToolCollector> Create(Provider* provider) {
  return std::make_unique<Collector>(provider);
}

/// In the order in which the tools are asked.
constexpr std::unique_ptr<ToolCollector> (*kTools[])(Provider*) = {
    Create<KelvcmdData>,
    Create<HrconfData>,
    Create<ArcconfData>,
};

template <class T>
void Append(std::vector<T*>& to, const std::vector<T*>& from) {
  to.insert(to.end(), from.begin(), from.end());
}

}  // namespace

void KraidCollectData::InitData() {
  // The first tool's numbers stay, those of the others go on behind all that were found before.
  int offset = 0;
  for (const auto create : kTools) {
    ToolCollector& collector = *collectors_.emplace_back(create(provider_));
    collector.InitData(offset);
    Append(raw_data_, collector.GetRawDataVector());
    Append(controllers_, collector.GetControllers());
    offset = static_cast<int>(controllers_.size());
  }
}
