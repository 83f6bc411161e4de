#ifndef TESTS_PRINT_TO_H_
#define TESTS_PRINT_TO_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "inventory/base/sink.h"
#include "inventory/machine/read_machine.h"
#include "inventory/print/view.h"
#include "standin/repository.h"

/// What `print` writes to the sink that it is given.
template <class Print>
std::string Printed(const Print& print) {
  TextSink sink;
  print(sink);
  return std::move(sink.text);
}

/// What a view writes of a report and its machine.
inline std::string Print(PrintView view, const Report& report, const ViewOptions& options = {}) {
  return Printed([&](Sink& output) { view({report, ReadMachine(report)}, options, output); });
}

using Properties = std::vector<std::pair<std::string, NKVXHMZ20::TCIMValue>>;

inline NKVXHMZ20::TCIMReference Commit(standin::Repository& repository, const char* class_name,
                                       const Properties& properties) {
  const auto instance = repository.GetOrDeclareClass(class_name)->CreateInstance({});
  for (const auto& [name, value] : properties) instance->SetPropertyValue(name, value, {});
  instance->Commit({});
  try {
    return instance->GetReference();
  } catch (const std::exception&) {
    return {nullptr, {}};  // without its keys it has none
  }
}

#endif  // TESTS_PRINT_TO_H_
