#include "model/kraid_sub_stat_data.h"

#include <iostream>
#include <string_view>

#include "hmz/os_specific.h"
#include "model/record_identifiers.h"
#include "model/text.h"

void KRaidSubStatData::SetConfigData(CollectedData* cursor, const std::string& /*controller_num*/) {
  using S = KRaidSubStatData;
  enum class End { kBlank, kBeforeNewline };
  // A value directly behind its key, and where it ends.
  struct KeyRow {
    std::string_view key;
    std::string S::*field;
    End end;
  };
  static constexpr KeyRow kKeys[] = {
      {"A:", &S::controller_num_, End::kBlank},
      {"C:", &S::channel_value_, End::kBlank},
      {"I:", &S::scsi_id_value_, End::kBlank},
      {"PARAMS:", &S::params_value_, End::kBlank},
      {"REQ-OFF:", &S::req_off_value_, End::kBlank},
      {"MAX-TXER-P:", &S::max_txer_p_value_, End::kBlank},
      {"CUR-TXER-P:", &S::cur_txer_p_value_, End::kBeforeNewline},
  };
  const std::string line = cursor->GetCurrentLine();
  std::size_t from = 0;
  for (const auto& [key, field, end] : kKeys) {
    const auto found = line.find(key, from);
    if (found == std::string::npos) continue;
    from = found + 1;
    const std::size_t begin = found + key.size();
    if (end == End::kBlank) {
      this->*field = line.substr(begin, line.find(' ', begin) - begin);
    } else {
      this->*field = CutShortOf(line, begin, line.size() - 1);
    }
  }
  instance_id_value_ = StatisticsIdentifier(controller_num_, channel_value_, scsi_id_value_);
  statistic_time_value_ = NKVXHMZ20::TOSSpecific::GetLocalTime();
}

void KRaidSubStatData::DisplayAll() const {
  std::cout << "Controller number = [" << controller_num_ << "] Statistic Time  = ["
            << statistic_time_value_.ToString() << "]\n"
            << "channel  = [" << channel_value_ << "] scsiID  = [" << scsi_id_value_
            << "] instanceID  = [" << instance_id_value_ << "] params  = [" << params_value_
            << "] req_Off  = [" << req_off_value_ << "] max_Txer_P  = [" << max_txer_p_value_
            << "] cur_Txer_P  = [" << cur_txer_p_value_ << "]\n";
}
