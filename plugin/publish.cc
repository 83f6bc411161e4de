#include "plugin/publish.h"

#include "collect/tool_run.h"

void LogPublishing(const char* text) { LogMessage(std::string(text) + "inside KrPlugin"); }
