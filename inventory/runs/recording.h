#ifndef INVENTORY_RUNS_RECORDING_H_
#define INVENTORY_RUNS_RECORDING_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hmz/cim_date_time.h"
#include "inventory/base/run_record.h"
#include "standin/host_services.h"

/// A file of the host's that the plug-in asked for.
struct RecordedFile {
  std::string path;
  std::optional<std::string> text;  ///< Absent where there was no such file, or none to be opened.
  std::uint64_t file_bytes = 0;     ///< Of the file that the text is the end of; 0: it is whole.
};

/// All that a collection took from the world: with it, it can be done again anywhere.
struct Recording {
  std::string host;
  std::string root;  ///< Where the tools were looked for.
  bool as_host = false;
  int passes = 1;
  NKVXHMZ20::TCIMDateTime collected_at = {};
  std::chrono::milliseconds duration = {};
  std::vector<NKVXHMZ20::TCIMDateTime> clock = {};  ///< What the plug-in read, in this order.
  std::vector<RecordedFile> files = {};
  std::vector<RunRecord> runs = {};  ///< With their whole outputs.
};

/// Keeps what the plug-in takes from the host besides the runs, in an order to take it again.
class Recorder {
 public:
  /// Services that keep what they give. Each file is read once: what is published of it is what is
  /// kept. The object has to outlive them.
  standin::HostServices Watch(standin::HostServices services);

  const std::vector<NKVXHMZ20::TCIMDateTime>& GetClock() const { return clock_; }
  std::vector<RecordedFile> GetFiles() const;

 private:
  struct Known {
    std::optional<std::string> text;
    bool is_read = false;  // or else only asked for
    std::uint64_t file_bytes = 0;
  };

  const std::optional<std::string>& Read(const std::string& path);

  standin::HostServices real_;
  std::vector<NKVXHMZ20::TCIMDateTime> clock_;
  std::map<std::string, Known> files_;
};

/// Services that know the recorded machine only, but for the runs and the log. The recording has to
/// outlive them.
standin::HostServices ReplayServices(const Recording& recording);

#endif  // INVENTORY_RUNS_RECORDING_H_
