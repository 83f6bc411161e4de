// What a busy manager's log costs: reading it and publishing an instance for each line.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <boost/make_shared.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "collect/kraid_collect_data.h"
#include "plugin/dispatch.h"
#include "raidmgr/collect_raid_mgr_data.h"
#include "standin/repository.h"

namespace {

constexpr std::int64_t kLines = 1'000'000;

/// An install directory whose log has that many lines of 100 bytes each.
class Manager {
 public:
  explicit Manager(std::int64_t lines) {
    std::string pattern = std::filesystem::temp_directory_path() / "kraid-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    std::ofstream(folder_ / "KelvMgr.sh") << "";
    std::ofstream log(folder_ / "KelvEvtA.log", std::ios::binary);
    std::string line =
        "March 14, 2005 1:31:02 PM EST\tERR   \tharbor1\tController 2: drive is defunct";
    line.resize(99, '.');
    for (std::int64_t i = 0; i < lines; ++i) log << line << '\n';
  }
  ~Manager() { std::filesystem::remove_all(folder_); }
  Manager(const Manager&) = delete;
  Manager& operator=(const Manager&) = delete;

  std::string GetDirectory() const { return folder_.string() + "/"; }

 private:
  std::filesystem::path folder_;
};

void BM_ManagerLog(benchmark::State& state) {
  const Manager manager(state.range(0));
  KraidCollectData collector(nullptr);
  for (auto _ : state) {
    CollectRaidMgrData log(nullptr, manager.GetDirectory());
    const auto repository = boost::make_shared<standin::Repository>();
    const char* name = "KVXSG_LogRecord_RAIDMgrEvent";
    Publish(name, {repository, repository->GetClass(name), collector, log});
    if (repository->GetCommitted().size() != static_cast<std::size_t>(state.range(0)) + 1) {
      state.SkipWithError("not every line was published");
    }
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_mb"] = static_cast<double>(usage.ru_maxrss) / 1024;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The smaller ones first: the peak is that of the whole process so far.
void LogSizes(benchmark::internal::Benchmark* benchmark) {
  const char* lines = std::getenv("KRAID_BENCH_LOG_LINES");
  const std::int64_t most = lines == nullptr ? kLines : std::atoll(lines);
  for (const std::int64_t size : {most / 4, most / 2, most}) benchmark->Arg(size);
}
BENCHMARK(BM_ManagerLog)->Apply(LogSizes)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
