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

void KraidCollectData::InitData() { Run(kelvcmd_collectors_, 0); }
