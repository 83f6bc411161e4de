#ifndef RAIDMGR_COLLECT_RAID_MGR_DATA_H_
#define RAIDMGR_COLLECT_RAID_MGR_DATA_H_

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "collect/kraid_raw_data.h"
#include "hmz/cim_date_time.h"
#include "hmz/plugin_management.h"

/// The RAID manager's event log: its whole text as a raw record, and its entries one by one.
///
/// Reading goes forward only. Before the first entry is read, and where reading fails, the current
/// entry is one that the reader makes up.
class CollectRaidMgrData {
 public:
  /// Looks for the manager in its install directory and opens its log there. The directory is the
  /// manager's own, but for tests; it ends in "/".
  explicit CollectRaidMgrData(NKVXHMZ20::TPluginManagerProvider* provider,
                              std::string install_directory = "/usr/KelvMgr/");
  virtual ~CollectRaidMgrData() = default;
  CollectRaidMgrData(const CollectRaidMgrData&) = delete;
  CollectRaidMgrData& operator=(const CollectRaidMgrData&) = delete;

  void InitData(int /*unused*/) {}
  void DisplayAll() const {}

  /// Whether the log was found and opened.
  bool GetInitialized() const { return initialized_; }

  /// The log's whole text: one record, none when it is empty. The record belongs to this object.
  std::vector<KRaidRawData*> GetRawRaidMgrLog() const;

  /// Makes the next line the current entry. False at the end of the log. The call that meets the
  /// end leaves the entry; every call after the end was met makes up an entry and logs a message.
  /// That is the first of them already when the last line has no "\n", as the end was met in
  /// reading it. At most 511 characters, the "\n" included, are read at once: what is longer is
  /// read in pieces, each as a line of its own. False, too, when no log is open.
  bool GetNextRaidMgrLogLine();

  NKVXHMZ20::TCIMDateTime GetTimeStamp() const { return time_stamp_; }
  std::string GetRecordId() const { return record_id_; }  // "1": the entries are not numbered
  std::string GetSeverity() const { return severity_; }
  std::string GetMachineName() const { return machine_name_; }
  std::string GetMessage() const { return message_; }  // with the line's "\n"

  /// No line can be read behind it.
  void CloseRaidMgrLog() { log_file_.reset(); }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool SetRaidMgrPath();
  bool OpenRaidMgrLog();
  void CollectRawRaidMgrLog();
  /// Makes up an entry of now with this message; the machine's name stays as it is.
  void KrRaidMgrError(const std::string& text);

  std::string install_directory_;
  std::string log_path_;
  std::unique_ptr<std::FILE, CloseFile> log_file_;
  bool initialized_ = false;
  std::vector<std::unique_ptr<KRaidRawData>> raw_data_;
  NKVXHMZ20::TCIMDateTime time_stamp_;
  std::string record_id_;
  std::string severity_;
  std::string machine_name_;
  std::string message_;
};

#endif  // RAIDMGR_COLLECT_RAID_MGR_DATA_H_
