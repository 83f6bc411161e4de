#include "raidmgr/collect_raid_mgr_data.h"

#include <string_view>
#include <utility>

#include "collect/tool_run.h"
#include "hmz/os_specific.h"
#include "model/collected_data.h"
#include "model/owned.h"
#include "raidmgr/log_time_stamp.h"

using NKVXHMZ20::TOSSpecific;

namespace {

/// A line's text up to its next tab, which is taken away with it; "" when nothing is left.
std::string_view TakeField(std::string_view& line) {
  const std::string_view field = line.substr(0, line.find('\t'));
  line.remove_prefix(field.size() == line.size() ? field.size() : field.size() + 1);
  return field;
}

}  // namespace

CollectRaidMgrData::CollectRaidMgrData(NKVXHMZ20::TPluginManagerProvider* /*provider*/,
                                       std::string install_directory)
    : install_directory_(std::move(install_directory)) {
  if (!SetRaidMgrPath()) return;
  // Nothing is started. It is what stands for an entry until the first line is read.
  KrRaidMgrError("SpawnedProcess: ./kraid/krmgr.sh ");
  initialized_ = OpenRaidMgrLog();
}

bool CollectRaidMgrData::SetRaidMgrPath() {
  if (TOSSpecific::FileExists(install_directory_ + "KelvMgr.sh")) {
    log_path_ = install_directory_;
    return true;
  }
  KrRaidMgrError("Kelvmgr path of /usr/KelvMgr not found");
  return false;
}

bool CollectRaidMgrData::OpenRaidMgrLog() {
  log_path_ += "KelvEvtA.log";
  log_file_.reset(std::fopen(log_path_.c_str(), "rt"));
  if (log_file_ == nullptr) {
    // The path has the file's name already; that it comes twice is how this message is known.
    LogMessage(log_path_ + "KelvEvtA.log not found.");
    return false;
  }
  CollectRawRaidMgrLog();
  return true;
}

void CollectRaidMgrData::CollectRawRaidMgrLog() {
  const std::string text = TOSSpecific::CaptureFile(log_path_);
  if (!text.empty()) {
    raw_data_.push_back(std::make_unique<KRaidRawData>(log_path_, "", 0, "", text));
  }
}

void CollectRaidMgrData::KrRaidMgrError(const std::string& text) {
  time_stamp_ = TOSSpecific::GetLocalTime();
  severity_ = "INF";
  message_ = text;
  record_id_ = "1";
}

bool CollectRaidMgrData::GetNextRaidMgrLogLine() {
  record_id_ = "1";
  if (std::feof(log_file_.get()) != 0) {
    KrRaidMgrError("No RAID Manager log entries.");
    LogMessage("Unexpected end of file reached.");
    return false;
  }
  char buffer[512];
  if (std::fgets(buffer, sizeof buffer, log_file_.get()) == nullptr) return false;
  std::string_view line = buffer;
  time_stamp_ = ParseLogTimeStamp(TakeField(line));
  severity_ = CollectedData::krRemoveTrailingWhiteSpace(TakeField(line));
  machine_name_ = TakeField(line);
  message_ = TakeField(line);
  return true;
}

std::vector<KRaidRawData*> CollectRaidMgrData::GetRawRaidMgrLog() const {
  return PointersTo(raw_data_);
}
