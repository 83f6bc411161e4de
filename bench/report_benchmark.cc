// What the command itself costs, tools aside: the whole of a run on the sample machine, and each
// format as the number of instances grows.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "inventory/command/collection.h"
#include "inventory/command/output_file.h"
#include "inventory/machine/compare.h"
#include "inventory/machine/read_machine.h"
#include "inventory/print/check_line.h"
#include "inventory/print/html/html_page.h"
#include "inventory/print/instance_list.h"
#include "inventory/print/json_printer.h"
#include "inventory/print/mof_printer.h"
#include "inventory/print/openmetrics_printer.h"
#include "inventory/print/text_report.h"
#include "standin/host_services.h"
#include "standin/schema.h"

namespace {

const char* const kFormatNames[] = {"text",      "json",    "mof",         "check",
                                    "instances", "changes", "openmetrics", "html"};

/// The changes since there were half the devices.
int PrintChanged(const ViewInput& input, const ViewOptions& options, Sink& output) {
  EarlierMachine earlier{"", input.report.host, input.machine};
  std::vector<Device>& devices = earlier.machine.controllers.front().devices;
  const std::size_t added = devices.size() - devices.size() / 2;
  devices.resize(devices.size() - added);
  const Comparison comparison =
      Compare(std::move(earlier), input.machine, input.report.host, input.report.problems);
  if (comparison.changes.size() < added) std::abort();
  ViewOptions brief = options;
  brief.is_brief = true;
  return PrintText({input.report, input.machine, &comparison}, brief, output);
}

void Print(const Report& report, std::int64_t format) {
  static constexpr PrintView kViews[] = {PrintText,      PrintJson,    PrintMof,         PrintCheck,
                                         PrintInstances, PrintChanged, PrintOpenMetrics, PrintHtml};
  OutputFile output(FindPlace("/dev/null"));
  const Machine machine = ReadMachine(report);
  benchmark::DoNotOptimize(kViews[format]({report, machine}, {}, output));
  output.Finish();
  if (!output.GetError().empty()) std::abort();
}

/// Loads the plug-in, collects, prints and unloads; the tools' outputs are there already.
void BM_SampleMachine(benchmark::State& state) {
  std::filesystem::current_path(KRAID_SOURCE_DIR "/demo");
  Options options;
  options.plugin = KRAID_BUILD_DIR "/lib/libkraid.pi.so";
  for (const auto& known : standin::Schema()) options.classes.emplace_back(known.name);
  standin::HostServices services = standin::RealServices();
  // One that remembers the outputs: what it costs to run tools is measured elsewhere.
  ToolRuns tools({}, Sharing::kOn);
  services.spawn_process = [&tools](const auto& program, const auto& arguments) {
    return tools.Run(program, arguments);
  };
  const standin::ScopedServices in_force(std::move(services));
  const auto run = [&] {
    const Collection collection = Collect(options, tools);
    const standin::Repository& repository = *collection.repository;
    if (!collection.failures.empty() || repository.GetCommitted().size() < 300) std::abort();
    Print({"host", 0, {}, repository}, state.range(0));
  };
  run();  // fills the outputs
  for (auto _ : state) run();
  state.SetLabel(kFormatNames[state.range(0)]);
}
BENCHMARK(BM_SampleMachine)->DenseRange(0, 7)->Unit(benchmark::kMillisecond);

/// A controller with so many drives, each with counters, and their associations.
void Fill(standin::Repository& repository, int drives) {
  using NKVXHMZ20::TCIMReference;
  const auto commit = [&repository](
                          const char* class_name,
                          const std::vector<std::pair<std::string, NKVXHMZ20::TCIMValue>>& rows) {
    const auto instance = repository.GetClass(class_name)->CreateInstance({});
    for (const auto& [name, value] : rows) instance->SetPropertyValue(name, value, {});
    instance->Commit({});
    return instance->GetReference();
  };
  const TCIMReference controller = commit("KVXSG_krSCSIProtocolController",
                                          {{"SystemCreationClassName", "KVXSG_ComputerSystem"},
                                           {"SystemName", "host"},
                                           {"CreationClassname", "KVXSG_krSCSIProtocolController"},
                                           {"DeviceID", "KelvaRAID1"},
                                           {"ControllerNum", "1"}});
  for (int i = 0; i < drives; ++i) {
    const std::string number = std::to_string(i);
    const TCIMReference drive =
        commit("KVXSG_krDiskDrive", {{"SystemCreationClassName", "KVXSG_ComputerSystem"},
                                     {"SystemName", "host"},
                                     {"CreationClassname", "KVXSG_krDiskDrive"},
                                     {"DeviceID", "C1 CH1 I" + number + ": BRELLOW\n"},
                                     {"ControllerNum", "1"},
                                     {"Channel", "1"},
                                     {"ScsiId", " " + number + "\n"},
                                     {"State", i % 100 == 0 ? " Defunct\n" : " Online\n"},
                                     {"PFA", " No\n"},
                                     {"DeviceType", " Hard disk\n"},
                                     {"Size", " 34715/71096320\n"},
                                     {"DeviceCode", " BRELLOW BX36W15"},
                                     {"DeviceSerialNum", "K" + number},
                                     {"FRU", " FR-36150\n"},
                                     {"Firmware", "S2BK"},
                                     {"Vendor", ""},
                                     {"Model", ""},
                                     {"Enclosure", ""},
                                     {"TransferSpeed", ""},
                                     {"ReportedChannel", ""},
                                     {"WorldWideName", ""},
                                     {"WriteCache", ""}});
    commit("KVXSG_krSCSIDeviceData", {{"InstanceID", "KelvaRAID:1C1S" + number},
                                      {"ControllerNum", "1"},
                                      {"Channel", "1"},
                                      {"ScsiId", number},
                                      {"NumSoftErrors", "3"}});
    commit("KVXSG_krProtocolControllerForPhysicalDisk",
           {{"Dependent", drive}, {"Antecedent", controller}});
  }
}

/// In turn, so that the ratio holds when the machine's speed drifts.
void BM_TwiceTheInstances(benchmark::State& state) {
  standin::Repository once;
  standin::Repository twice;
  const char* chosen = std::getenv("KRAID_BENCH_DRIVES");
  const int drives = chosen == nullptr ? 10'000 : std::atoi(chosen);
  Fill(once, drives);
  Fill(twice, 2 * drives);
  std::vector<double> ratios;
  for (auto _ : state) {
    double seconds[2] = {};
    for (const auto& [repository, time] : {std::pair{&once, &seconds[0]}, {&twice, &seconds[1]}}) {
      const auto start = std::chrono::steady_clock::now();
      Print({"host", 0, {}, *repository}, state.range(0));
      *time = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    ratios.push_back(seconds[1] / seconds[0]);
  }
  std::nth_element(ratios.begin(), ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2),
                   ratios.end());
  state.counters["ratio"] = ratios[ratios.size() / 2];
  state.SetLabel(kFormatNames[state.range(0)]);
}
BENCHMARK(BM_TwiceTheInstances)->DenseRange(0, 7)->Unit(benchmark::kMillisecond);

/// Devices a second, read and judged.
void BM_ReadMachine(benchmark::State& state) {
  standin::Repository repository;
  Fill(repository, 20'000);
  const Report report = {"host", 0, {}, repository};
  for (auto _ : state) benchmark::DoNotOptimize(ReadMachine(report).controllers.size());
  state.SetItemsProcessed(state.iterations() * 20'000);
}
BENCHMARK(BM_ReadMachine)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
