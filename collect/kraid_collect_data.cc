#include "collect/kraid_collect_data.h"

namespace {

template <class T>
void Append(std::vector<T*>& to, const std::vector<T*>& from) {
  to.insert(to.end(), from.begin(), from.end());
}

}  // namespace

template <class Collector>
void KraidCollectData::Run(std::vector<std::unique_ptr<Collector>>& collectors, int offset) {
  Collector& collector = *collectors.emplace_back(std::make_unique<Collector>(provider_));
  collector.InitData(offset);
  Append(raw_data_, collector.GetRawDataVector());
  Append(controllers_, collector.GetControllers());
}

void KraidCollectData::InitData() {
  // Each later collector numbers its controllers behind those that were found before it.
  Run(kelvcmd_collectors_, 0);
  Run(hrconf_collectors_, static_cast<int>(controllers_.size()));
  Run(arcconf_collectors_, static_cast<int>(controllers_.size()));
}
