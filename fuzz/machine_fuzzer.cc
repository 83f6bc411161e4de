// Whole machines: what the tools print and how their runs end, and the manager's log, through the
// plug-in into every view. Sections are "@0 ./kraid/kelvcmd getconfig 1 al", in which the digit is
// how the run ended, and "@0 /usr/KelvMgr/KelvEvtA.log".

#include <array>
#include <sstream>
#include <utility>

#include "fuzz/expect.h"
#include "fuzz/sections.h"
#include "fuzz/views.h"

namespace {

constexpr std::array kEnds = {RunEnd::kExited,   RunEnd::kExited,      RunEnd::kSignalled,
                              RunEnd::kTimedOut, RunEnd::kOutputLimit, RunEnd::kNotStarted,
                              RunEnd::kNotAsked, RunEnd::kLost};

RunRecord MakeRun(const Section& section) {
  RunRecord run;
  std::istringstream words(section.name);
  words >> run.program;
  for (std::string word; words >> word;) run.arguments.push_back(word);
  const auto end = static_cast<std::size_t>(section.kind) % kEnds.size();
  run.end = kEnds.at(end);
  if (run.end == RunEnd::kExited) {
    run.exit_status = static_cast<int>(end);  // 0 or 1
  } else {
    run.reason = section.text.substr(0, 100) + "x";
    run.is_tool_absent = run.end == RunEnd::kNotStarted;
  }
  run.whole_output = std::make_shared<const std::string>(section.text);
  run.output_bytes = section.text.size();
  if (run.reason.empty()) run.output = run.whole_output;
  // A tool that complains says so elsewhere.
  if (run.exit_status != 0) run.SetErrorOutput(section.text);
  return run;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Recording recording;
  recording.host = "host";
  recording.collected_at = NKVXHMZ20::TCIMDateTime(2005, 3, 15, 4, 0, 5, 0, -300);
  for (const Section& section : CutSections(TextOf(data, size))) {
    if (section.name.starts_with('/')) {
      recording.files.push_back({section.name, section.text});
    } else {
      recording.runs.push_back(MakeRun(section));
    }
  }
  const Collected collected = CollectAgain(recording);
  ExpectGoodViews(*collected.report, collected.machine);
  ExpectReadBack(collected.machine);
  return 0;
}
