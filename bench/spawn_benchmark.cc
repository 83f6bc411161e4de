// What a run of a program costs, against the bare system calls, in a small and in a large host.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "standin/process.h"

namespace {

constexpr char kProgram[] = "/bin/true";

/// Memory that a host holds resident while it runs programs.
class Ballast {
 public:
  explicit Ballast(std::int64_t mb) : bytes_(static_cast<std::size_t>(mb) << 20) {
    if (bytes_ == 0) return;
    memory_ = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory_ == MAP_FAILED) return;
    // Small pages, as a host that grew bit by bit has: they cost a fork most.
    madvise(memory_, bytes_, MADV_NOHUGEPAGE);
    std::memset(memory_, 1, bytes_);
  }
  Ballast(const Ballast&) = delete;
  Ballast& operator=(const Ballast&) = delete;
  ~Ballast() {
    if (IsHeld() && bytes_ != 0) munmap(memory_, bytes_);
  }

  bool IsHeld() const { return memory_ != MAP_FAILED; }

 private:
  std::size_t bytes_;
  void* memory_ = nullptr;
};

/// The least that starts a program and takes what it prints. False when it did not end well.
bool BareSpawn() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return false;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  char name[] = "true";
  char* arguments[] = {name, nullptr};
  pid_t pid = 0;
  const int error = posix_spawn(&pid, kProgram, &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  std::string output;
  char buffer[4096];
  for (ssize_t size = 0; error == 0 && (size = read(ends[0], buffer, sizeof(buffer))) > 0;) {
    output.append(buffer, static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  return error == 0 && waitpid(pid, &status, 0) == pid && status == 0 && output.empty();
}

bool RunProcess() {
  const standin::ProcessResult result = standin::RunProcess(kProgram, {}, {});
  return result.failure.empty() && result.exit_status == 0;
}

using Way = bool (*)();

void RepeatRun(benchmark::State& state, Way way) {
  const Ballast ballast(state.range(0));
  if (!ballast.IsHeld()) return state.SkipWithError("not that much memory");
  while (state.KeepRunning()) {
    if (!way()) return state.SkipWithError("the run failed");
  }
}

double MedianUs(std::vector<double>& times_us) {
  const auto middle = times_us.begin() + static_cast<std::ptrdiff_t>(times_us.size() / 2);
  std::nth_element(times_us.begin(), middle, times_us.end());
  return *middle;
}

/// Both ways by turns, so that whatever else the machine does meets both alike. `ratio` is of the
/// total times, `median_ratio` of the median ones.
void InTurn(benchmark::State& state) {
  const Ballast ballast(state.range(0));
  if (!ballast.IsHeld()) return state.SkipWithError("not that much memory");
  constexpr Way kWays[] = {BareSpawn, RunProcess};
  const char* chosen = std::getenv("KRAID_BENCH_RUNS");
  const std::size_t runs = chosen == nullptr ? 1000 : std::strtoul(chosen, nullptr, 10);
  std::vector<double> times_us[2];
  double total_us[2] = {0, 0};
  while (state.KeepRunning()) {
    for (std::size_t i = 0; i < 2 * runs; ++i) {
      const std::size_t way = i % 2;
      const auto start = std::chrono::steady_clock::now();
      if (!kWays[way]()) return state.SkipWithError("the run failed");
      const std::chrono::duration<double, std::micro> time =
          std::chrono::steady_clock::now() - start;
      times_us[way].push_back(time.count());
      total_us[way] += time.count();
    }
  }
  state.counters["ratio"] = total_us[1] / total_us[0];
  const double bare_us = MedianUs(times_us[0]);
  const double run_us = MedianUs(times_us[1]);
  state.counters["bare_us"] = bare_us;
  state.counters["run_us"] = run_us;
  state.counters["median_ratio"] = run_us / bare_us;
}

/// A small host, and one of 4 GB or of KRAID_BENCH_RESIDENT_MB.
void HostSizes(benchmark::internal::Benchmark* benchmark) {
  const char* resident_mb = std::getenv("KRAID_BENCH_RESIDENT_MB");
  benchmark->ArgName("resident_mb")->Arg(0);
  benchmark->Arg(resident_mb != nullptr ? std::strtol(resident_mb, nullptr, 10) : 4096);
  benchmark->UseRealTime()->Unit(benchmark::kMicrosecond);
}

void BM_BareSpawn(benchmark::State& state) { RepeatRun(state, BareSpawn); }
BENCHMARK(BM_BareSpawn)->Apply(HostSizes);

void BM_RunProcess(benchmark::State& state) { RepeatRun(state, RunProcess); }
BENCHMARK(BM_RunProcess)->Apply(HostSizes);

void BM_InTurn(benchmark::State& state) { InTurn(state); }
BENCHMARK(BM_InTurn)->Apply(HostSizes)->Iterations(1)->Repetitions(5);

}  // namespace

BENCHMARK_MAIN();
