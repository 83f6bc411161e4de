// The RAID manager's log: its lines, their fields and time stamps.

#include <algorithm>
#include <cstdio>
#include <string>

#include "fuzz/expect.h"
#include "fuzz/sections.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/host_services.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string log(TextOf(data, size));
  standin::HostServices services = standin::RealServices();
  services.file_exists = [](const auto&) { return true; };
  services.capture_file = [&log](const auto&) { return log; };
  services.open_file = [&log](const auto&) {
    return log.empty() ? std::fopen("/dev/null", "r") : fmemopen(log.data(), log.size(), "r");
  };
  const standin::ScopedServices in_force(std::move(services));
  CollectRaidMgrData reader(nullptr);
  std::size_t entries = 0;
  while (reader.GetNextRaidMgrLogLine()) {
    ++entries;
    Expect(reader.GetMessage().size() < 512, "a message is longer than what is read at once");
    static_cast<void>(reader.GetTimeStamp().ToString());
  }
  // Each takes a byte at least, and a line end or as many bytes as are read at once.
  const auto lines = static_cast<std::size_t>(std::count(log.begin(), log.end(), '\n'));
  Expect(entries <= lines + log.size() / 511 + 1, "there are more entries than lines", log);
  reader.CloseRaidMgrLog();
  Expect(!reader.GetNextRaidMgrLogLine(), "a closed log has entries");
  return 0;
}
