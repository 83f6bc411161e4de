// What a tool prints of a controller's configuration: KRAID_COLLECTOR says which tool's.

#include <stdexcept>
#include <string>

#include "collect/arcconf_data.h"
#include "collect/hrconf_data.h"
#include "collect/kelvcmd_data.h"
#include "fuzz/expect.h"
#include "fuzz/sections.h"
#include "hmz/cim_value.h"
#include "standin/host_services.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string output(TextOf(data, size));
  standin::HostServices services = standin::RealServices();
  services.spawn_process = [&output](const auto&, const auto& arguments) {
    return arguments.at(0) == "getconfig" && arguments.at(1) == "1" ? output : "";
  };
  const standin::ScopedServices in_force(std::move(services));
  KRAID_COLLECTOR collector(nullptr);
  try {
    collector.InitData(0);
  } catch (const std::out_of_range&) {
    // An output that ends too early.
  }
  Expect(collector.GetControllers().size() <= 1, "more controllers than were asked about");
  const auto raw = collector.GetRawDataVector();
  Expect(raw.size() == (output.empty() ? 0 : 1), "an output is not kept");
  if (raw.empty()) return 0;
  const NKVXHMZ20::TCIMValue lines = raw[0]->GetRawData();
  std::string kept;
  if (lines.IsArray()) {
    for (const std::string_view line : lines.GetStrings()) kept.append(line).append("\n");
  }
  // Text behind the last line end is no line.
  Expect(kept == output.substr(0, output.rfind('\n') + 1), "an output is kept as another", kept);
  return 0;
}
