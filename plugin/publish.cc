#include "plugin/publish.h"

#include "collect/tool_run.h"
#include "hmz/os_specific.h"

using NKVXHMZ20::TCIMValue;

TCIMValue MachineName() { return NKVXHMZ20::TOSSpecific::GetMachineName(); }

TCIMValue StringArray(std::initializer_list<std::string> texts) {
  return {TCIMValue::TCIMType(TCIMValue::kString), texts.size(),
          TCIMValue::Array(texts.begin(), texts.end())};
}

void LogPublishing(const char* text) { LogMessage(std::string(text) + "inside KrPlugin"); }
