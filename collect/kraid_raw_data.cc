#include "collect/kraid_raw_data.h"

#include <utility>

namespace {

using NKVXHMZ20::TCIMStrings;
using NKVXHMZ20::TCIMValue;

/// Calls `take` with each line without its "\n". A text behind the last "\n" is dropped, as the
/// cursor drops it.
template <class Take>
void ForEachLine(std::string_view text, const Take& take) {
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    take(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
}

/// The lines in no more room than they need, however many there are.
TCIMValue LinesOf(std::string_view output) {
  std::size_t size = 0;
  ForEachLine(output, [&size](auto line) { size += TCIMStrings::PackedSize(line.size()); });
  TCIMValue result;
  if (size == 0) return result;
  TCIMStrings lines;
  lines.Reserve(size);
  ForEachLine(output, [&lines](auto line) { lines.Add(line); });
  const std::size_t count = lines.GetCount();
  result.Set(TCIMValue::TCIMType(TCIMValue::kString), count, std::move(lines));
  return result;
}

}  // namespace

KRaidRawData::KRaidRawData(std::string_view tool_path, std::string_view command,
                           int controller_number, std::string_view option,
                           std::string_view output) {
  // Unlike in a tool run, a number 0 is written as nothing at all. That is meant: it marks text
  // that belongs to no controller.
  const std::string number = controller_number == 0 ? "" : std::to_string(controller_number);
  command_.append(tool_path).append(" ").append(command).append(" ");
  command_.append(number).append(" ").append(option);
  lines_ = LinesOf(output);
}
