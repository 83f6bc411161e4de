#include "raidmgr/collect_raid_mgr_data.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "collect/tool_run.h"
#include "hmz/os_specific.h"
#include "model/owned.h"
#include "raidmgr/log_time_stamp.h"
#include "schema/published_texts.h"

using NKVXHMZ20::TOSSpecific;

namespace {

/// A line's text up to its next tab, which is taken away with it; "" when nothing is left.
std::string_view TakeField(std::string_view& line) {
  const std::string_view field = line.substr(0, line.find('\t'));
  line.remove_prefix(field.size() == line.size() ? field.size() : field.size() + 1);
  return field;
}

std::string_view WithoutTrailingWhiteSpace(std::string_view text) {
  return text.substr(0, text.find_last_not_of(" \t\n") + 1);
}

/// By way of the host, where it has one.
std::FILE* OpenLog(const std::string& path) {
  if (NKVXHMZ20::OpenHostFile != nullptr) return NKVXHMZ20::OpenHostFile(path);
  return std::fopen(path.c_str(), "rt");
}

/// What one std::fgets reads, "" where it reads nothing. Where a text with NULs ends shows in a
/// buffer full of newlines: the first one that is left is the line's own when a NUL follows, and
/// stands behind the closing NUL otherwise.
std::string ReadLine(std::FILE* file) {
  char buffer[512];
  std::memset(buffer, '\n', sizeof buffer);
  if (std::fgets(buffer, sizeof buffer, file) == nullptr) return "";
  const std::string_view filled(buffer, sizeof buffer);
  const std::size_t newline = filled.find('\n');
  if (newline == std::string_view::npos) return {buffer, sizeof buffer - 1};
  const bool is_read = newline + 1 < filled.size() && filled[newline + 1] == '\0';
  return {buffer, is_read ? newline + 1 : newline - 1};
}

}  // namespace

CollectRaidMgrData::CollectRaidMgrData(NKVXHMZ20::TPluginManagerProvider* /*provider*/,
                                       std::string install_directory)
    : install_directory_(std::move(install_directory)) {
  if (!SetRaidMgrPath()) return;
  // Nothing is started. It is what stands for an entry until the first line is read.
  KrRaidMgrError(kManagerLogOpened);
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
  log_file_.reset(OpenLog(log_path_));
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
  if (log_file_ == nullptr) return false;
  if (std::feof(log_file_.get()) != 0) {
    KrRaidMgrError(kManagerLogEnded);
    LogMessage("Unexpected end of file reached.");
    return false;
  }
  const std::string line = ReadLine(log_file_.get());
  if (line.empty()) return false;
  // A NUL is a character like any other: only tabs cut a line.
  std::string_view rest = line;
  time_stamp_ = ParseLogTimeStamp(TakeField(rest));
  severity_ = WithoutTrailingWhiteSpace(TakeField(rest));
  machine_name_ = TakeField(rest);
  message_ = TakeField(rest);
  return true;
}

std::vector<KRaidRawData*> CollectRaidMgrData::GetRawRaidMgrLog() const {
  return PointersTo(raw_data_);
}
