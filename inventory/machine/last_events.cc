#include "inventory/machine/last_events.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/machine/property_text.h"
#include "schema/published_texts.h"

namespace {

using standin::StoredInstance;

constexpr std::size_t kLastEntries = 5;

template <class Entry>
void KeepLast(std::vector<Entry>& entries, Entry entry) {
  entries.push_back(std::move(entry));
  if (entries.size() > kLastEntries) entries.erase(entries.begin());
}

/// "20041127021408.000000-300" as "2004-11-27 02:14:08 -0500".
Time ReadTime(const StoredInstance& instance, bool with_offset) {
  const NKVXHMZ20::TCIMValue* value = instance.Find("MessageTimestamp");
  const bool is_time =
      value != nullptr && value->GetType().GetCode() == NKVXHMZ20::TCIMValue::kDateTime;
  const std::string text = is_time ? value->ToString() : "";
  if (text.size() != 25 || text.starts_with("000000")) return {"(no time)", std::nullopt};
  std::string time = text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2) + " " +
                     text.substr(8, 2) + ":" + text.substr(10, 2) + ":" + text.substr(12, 2);
  if (with_offset) {
    const int minutes = std::stoi(text.substr(22));
    char offset[32];
    std::snprintf(offset, sizeof offset, " %c%02d%02d", text[21], minutes / 60, minutes % 60);
    time += offset;
  }
  return {time, ToInstant(value->GetDateTime())};
}

}  // namespace

EventWords ReadEventWords(const StoredInstance& instance, const char* property) {
  EventWords words;
  words.is_collected = true;
  const NKVXHMZ20::TCIMValue* value = instance.Find(property);
  if (value == nullptr || !value->IsArray()) return words;
  const std::vector<std::uint32_t>& elements = value->GetNumbers();
  words.count = elements.size();
  const std::size_t shown = std::min(kLastEntries, words.count);
  for (std::size_t i = words.count - shown; i < words.count; ++i) {
    char text[16];
    std::snprintf(text, sizeof text, "%08X", elements[i]);
    words.last.emplace_back(text);
  }
  return words;
}

void AddDddEvent(const StoredInstance& instance, Controller& controller) {
  ++controller.defunct_log.count;
  KeepLast(
      controller.defunct_log.last,
      {ReadTime(instance, false).text,
       Place(PropertyText(instance, "Channel"), PropertyText(instance, "ID")),
       MakeText(PropertyText(instance, "Reason")), MakeText(PropertyText(instance, "Descrip"))});
}

void AddManagerEvent(const StoredInstance& instance, Machine& machine) {
  ManagerEvent event = {ReadTime(instance, true), MakeText(PropertyText(instance, "Severity")),
                        MakeText(PropertyText(instance, "MachineName")),
                        MakeText(PropertyText(instance, "Message"))};
  // What the plug-in makes up when it opens the log and at its end, and the rest of a long line.
  if (event.message == Readable(kManagerLogOpened) || event.message == Readable(kManagerLogEnded) ||
      !(event.severity || event.machine || event.message)) {
    return;
  }
  ++machine.manager_log.count;
  KeepLast(machine.manager_log.last, std::move(event));
}
