#include "collect/kraid_raw_data.h"

#include <utility>

KRaidRawData::KRaidRawData(std::string_view tool_path, std::string_view command,
                           int controller_number, std::string_view option,
                           std::string_view output) {
  // Unlike in a tool run, a number 0 is written as nothing at all. That is meant: it marks text
  // that belongs to no controller.
  const std::string number = controller_number == 0 ? "" : std::to_string(controller_number);
  command_.append(tool_path).append(" ").append(command).append(" ");
  command_.append(number).append(" ").append(option);
  // A text behind the last "\n" is dropped, as the cursor drops it.
  for (auto end = output.find('\n'); end != std::string_view::npos; end = output.find('\n')) {
    lines_.emplace_back(output.substr(0, end));
    output.remove_prefix(end + 1);
  }
}

NKVXHMZ20::TCIMValue KRaidRawData::GetRawData() const {
  using NKVXHMZ20::TCIMValue;
  TCIMValue result;
  if (!lines_.empty()) {
    TCIMValue::Array values(lines_.begin(), lines_.end());
    const std::size_t count = values.size();
    result.Set(TCIMValue::TCIMType(TCIMValue::kString), count, std::move(values));
  }
  return result;
}
