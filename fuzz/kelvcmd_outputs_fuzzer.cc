// All that kelvcmd prints besides the configuration: one section for each command, "@0 getbst
// device".

#include <map>
#include <stdexcept>
#include <string>

#include "collect/kelvcmd_data.h"
#include "fuzz/sections.h"
#include "standin/host_services.h"

namespace {

/// The least that makes a controller, so that the others are asked for.
constexpr char kConfig[] =
    "Controller information\nController type : X\nPhysical device information\n"
    "rule\nChannel #1:\nrule\nCommand completed successfully\n";

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::map<std::string, std::string> outputs = {{"getconfig al", kConfig}};
  for (Section& section : CutSections(TextOf(data, size))) {
    outputs.emplace(std::move(section.name), std::move(section.text));
  }
  standin::HostServices services = standin::RealServices();
  services.spawn_process = [&outputs](const auto&, const auto& arguments) {
    const auto found = outputs.find(arguments.at(0) + " " + arguments.at(2));
    return arguments.at(1) == "1" && found != outputs.end() ? found->second : "";
  };
  const standin::ScopedServices in_force(std::move(services));
  KelvcmdData collector(nullptr);
  try {
    collector.InitData(0);
  } catch (const std::out_of_range&) {
    // An output that ends too early.
  }
  return 0;
}
