#ifndef TESTS_ODD_MACHINE_H_
#define TESTS_ODD_MACHINE_H_

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/machine_files.h"
#include "tests/print_to.h"

/// All that the layout has a rule for and the sample machine does not show.
inline void CommitOddMachine(standin::Repository& repository) {
  const auto file = MachineFolder("odd_values") / "instances.json";
  for (const auto& instance : nlohmann::ordered_json::parse(ReadFile(file))) {
    Properties properties;
    for (const auto& [name, value] : instance["properties"].items()) {
      if (value.is_array()) {
        const NKVXHMZ20::TCIMValue word(value[0].get<std::uint32_t>());
        properties.emplace_back(name, ArrayOf(NKVXHMZ20::TCIMValue::kUint32, {word}));
      } else if (name == "MessageTimestamp") {
        properties.emplace_back(name, NKVXHMZ20::TCIMDateTime(value.get<std::string>()));
      } else {
        properties.emplace_back(name, value.get<std::string>());
      }
    }
    Commit(repository, instance["class"].get<std::string>().c_str(), properties);
  }
}

#endif  // TESTS_ODD_MACHINE_H_
