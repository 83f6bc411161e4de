#include "plugin/publish.h"

#include "collect/tool_run.h"
#include "hmz/os_specific.h"

using NKVXHMZ20::TCIMValue;

TCIMValue MachineName() { return NKVXHMZ20::TOSSpecific::GetMachineName(); }

TCIMValue StringArray(std::initializer_list<std::string> texts) {
  const TCIMValue::Array elements(texts.begin(), texts.end());
  return {TCIMValue::TCIMType(TCIMValue::kString), elements.size(), elements};
}

void LogPublishing(const char* text) { LogMessage(std::string(text) + "inside KrPlugin"); }
