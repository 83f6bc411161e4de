#include "collect/tool_run.h"

#include "hmz/exception.h"
#include "hmz/os_specific.h"
#include "hmz/root_object.h"
#include "schema/published_texts.h"

std::string PathOf(const Tool& tool) { return std::string(kToolFolder) + tool.name; }

std::string RunTool(const Tool& tool, const std::string& command, const std::string& option,
                    int controller_number) {
  const std::string number = std::to_string(controller_number);
  LogMessage(tool.run_message + number + " opt1: " + command + " opt2: " + option);
  try {
    return NKVXHMZ20::TOSSpecific::SpawnProcess(PathOf(tool), {command, number, option});
  } catch (const NKVXHMZ20::THMZException& error) {
    LogMessage(tool.abort_message + std::string(error.what()));
    return "";
  }
}

void LogMessage(const std::string& text) { NKVXHMZ20::TRootObject::GetCoreLogger().Log(3, text); }
