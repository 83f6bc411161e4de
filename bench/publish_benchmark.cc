// What publishing costs as a machine grows: all drives of one controller, their firmware and the
// associations of both.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "collect/kraid_collect_data.h"
#include "plugin/dispatch.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/host_services.h"
#include "standin/repository.h"

namespace {

std::string Config(int drives) {
  std::string text =
      "Controller information\nPhysical device information\nrule\nChannel #1:\nrule\n";
  for (int i = 0; i < drives; ++i) {
    const std::string number = std::to_string(i);
    text.append("Target on SCSI ID\nDevice is a Hard disk\nSCSI ID : ").append(number);
    text.append(
        "\nPFA (Yes/No) : No\nState : Online (ONL)\n"
        "Size (in MB)/(in sectors) : 34715/71096640\nDevice ID : BRELLOW BX36W15 S2BK0441187");
    text.append(number).append("\nFRU part number : FR-1\n");
  }
  return text + "Command completed successfully\n";
}

std::unique_ptr<KraidCollectData> CollectMachine(int drives) {
  const standin::HostServices before = standin::Services();
  standin::Services().spawn_process = [config = Config(drives)](const auto&,
                                                                const auto& arguments) {
    return arguments[0] == "getconfig" && arguments[1] == "1" ? config : std::string();
  };
  auto collector = std::make_unique<KraidCollectData>(nullptr);
  collector->InitData();
  standin::Services() = before;
  return collector;
}

/// Publishes the machine into an empty repository; the time in seconds.
double PublishAll(KraidCollectData& collector) {
  const auto repository = boost::make_shared<standin::Repository>();
  CollectRaidMgrData manager_log(nullptr, "/absent/");
  const auto start = std::chrono::steady_clock::now();
  for (const char* name :
       {"KVXSG_krSCSIProtocolController", "KVXSG_krDiskDrive", "KVXSG_krDiskDriveVersion",
        "KVXSG_krProtocolControllerForPhysicalDisk", "KVXSG_krFirmwareOnDiskDrive"}) {
    Publish(name, {repository, repository->GetClass(name), collector, manager_log});
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  benchmark::DoNotOptimize(repository->GetCommitted().size());
  return time.count();
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

/// In turn, so that the ratio holds when the machine's speed drifts.
void BM_TwiceTheDrives(benchmark::State& state) {
  const auto drives = static_cast<int>(state.range(0));
  const auto small = CollectMachine(drives);
  const auto large = CollectMachine(2 * drives);
  std::vector<double> small_times;
  std::vector<double> large_times;
  for (auto _ : state) {
    small_times.push_back(PublishAll(*small));
    large_times.push_back(PublishAll(*large));
  }
  state.counters["small_ms"] = Median(small_times) * 1e3;
  state.counters["large_ms"] = Median(large_times) * 1e3;
  state.counters["ratio"] = Median(large_times) / Median(small_times);
}

/// 1,000 and 10,000 drives, long enough for steady ratios, or as many as KRAID_BENCH_DRIVES says.
void Machines(benchmark::internal::Benchmark* benchmark) {
  if (const char* drives = std::getenv("KRAID_BENCH_DRIVES"); drives != nullptr) {
    benchmark->Arg(std::atoll(drives));
  } else {
    benchmark->Arg(1000)->Arg(10000)->MinTime(5);
  }
}
BENCHMARK(BM_TwiceTheDrives)->Apply(Machines)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
