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

/// In a ring, as a log may be long: the newest takes the place of the oldest.
template <class Log, class Entry>
void KeepLast(Log& log, std::size_t kept, Entry entry) {
  if (log.last.size() < kept) {
    log.last.push_back(std::move(entry));
  } else {
    log.last[log.count % kept] = std::move(entry);
  }
  ++log.count;
}

template <class Log>
void Order(Log& log) {
  if (log.count <= log.last.size()) return;
  const auto oldest = log.count % log.last.size();
  std::rotate(log.last.begin(), log.last.begin() + static_cast<std::ptrdiff_t>(oldest),
              log.last.end());
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

EventWords ReadEventWords(const StoredInstance& instance, const char* property, std::size_t kept) {
  EventWords words;
  words.is_collected = true;
  const NKVXHMZ20::TCIMValue* value = instance.Find(property);
  if (value == nullptr || !value->IsArray()) return words;
  const std::vector<std::uint32_t>& elements = value->GetNumbers();
  words.count = elements.size();
  const std::size_t shown = std::min(kept, words.count);
  for (std::size_t i = words.count - shown; i < words.count; ++i) {
    char text[16];
    std::snprintf(text, sizeof text, "%08X", elements[i]);
    words.last.emplace_back(text);
  }
  return words;
}

void AddDddEvent(const StoredInstance& instance, std::size_t kept, Controller& controller) {
  KeepLast(controller.defunct_log, kept,
           DefunctEvent{ReadTime(instance, false).text,
                        Place(PropertyText(instance, "Channel"), PropertyText(instance, "ID")),
                        MakeText(PropertyText(instance, "Reason")),
                        MakeText(PropertyText(instance, "Descrip"))});
}

void AddManagerEvent(const StoredInstance& instance, std::size_t kept, Machine& machine) {
  ManagerEvent event = {ReadTime(instance, true), MakeText(PropertyText(instance, "Severity")),
                        MakeText(PropertyText(instance, "MachineName")),
                        MakeText(PropertyText(instance, "Message"))};
  // What the plug-in makes up when it opens the log and at its end, and the rest of a long line.
  if (event.message == Readable(kManagerLogOpened) || event.message == Readable(kManagerLogEnded) ||
      !(event.severity || event.machine || event.message)) {
    return;
  }
  KeepLast(machine.manager_log, kept, std::move(event));
}

void OrderLastEvents(Machine& machine) {
  for (Controller& controller : machine.controllers) Order(controller.defunct_log);
  Order(machine.manager_log);
}
