// A controller as its boxes: what is where, in which state, and which of it belongs together.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/print/html/html_parts.h"

namespace {

constexpr std::size_t kOutlines = 8;     // that the style knows
constexpr std::size_t kRoomyShelf = 48;  // a shelf with more boxes has smaller ones

/// A box of the drawing: a device, or where one should be.
struct Box {
  Place place;
  Subject::Kind kind = Subject::Kind::kDevice;
  std::size_t index = 0;
};

std::vector<Box> BoxesOf(const Controller& controller) {
  std::vector<Box> boxes;
  const auto add = [&boxes](const Place& place, Subject::Kind kind, std::size_t index) {
    boxes.push_back({place, kind, index});
  };
  for (std::size_t i = 0; i < controller.devices.size(); ++i) {
    add(controller.devices[i].place, Subject::Kind::kDevice, i);
  }
  for (std::size_t i = 0; i < controller.missing_places.size(); ++i) {
    add(controller.missing_places[i], Subject::Kind::kMissingDevice, i);
  }
  for (std::size_t i = 0; i < controller.unlisted_devices.size(); ++i) {
    add(controller.unlisted_devices[i].place, Subject::Kind::kUnlistedDevice, i);
  }
  std::stable_sort(boxes.begin(), boxes.end(),
                   [](const Box& a, const Box& b) { return a.place < b.place; });
  return boxes;
}

/// The rest is no array.
bool IsArray(const DriveArray& array) { return array.letter || array.logical_drive; }

/// " a3", as the style outlines the array.
std::string OutlineOf(std::size_t array) { return " a" + std::to_string(array % kOutlines); }

class DrawingWriter {
 public:
  DrawingWriter(const Controller& controller, std::size_t index, HtmlWriter& html)
      : controller_(controller), index_(index), html_(html) {}

  void WriteArrays() {
    if (controller_.arrays.empty() && controller_.unlisted_drives.empty()) return;
    html_("<ul class=\"arrays\" aria-label=\"Arrays\">\n");
    for (std::size_t i = 0; i < controller_.arrays.size(); ++i) {
      const DriveArray& array = controller_.arrays[i];
      if (!IsArray(array) && array.logical_drives.empty()) continue;
      html_("<li class=\"{}\"><em>{}</em>", "array" + OutlineOf(i), LabelOf(array));
      for (const std::size_t drive : array.logical_drives) WriteDrive(drive);
    }
    for (std::size_t i = 0; i < controller_.unlisted_drives.size(); ++i) {
      const UnlistedDrive& drive = controller_.unlisted_drives[i];
      html_("<li class=\"array\"><em>?</em><span id=\"{}\" class=\"ld\">",
            Id(Subject::Kind::kUnlistedDrive, i));
      WriteMark(Severity::kWarning, html_);
      html_("Logical drive {}: not listed, {}</span>", drive.number ? drive.number->text : "",
            DescribeBadStripes(drive.bad_stripes));
    }
    html_("\n</ul>\n");
  }

  void WriteShelves() {
    const std::vector<Box> boxes = BoxesOf(controller_);
    for (auto begin = boxes.begin(); begin != boxes.end();) {
      const auto end = std::find_if(begin, boxes.end(), [&](const Box& box) {
        return box.place.GetChannel() != begin->place.GetChannel();
      });
      WriteShelf({begin, end});
      begin = end;
    }
  }

 private:
  std::string Id(Subject::Kind kind, std::size_t i) const { return IdOf({kind, index_, i}); }

  void WriteDrive(std::size_t i) {
    const LogicalDrive& drive = controller_.logical_drives[i];
    html_("<span id=\"{}\" class=\"ld {}\">", Id(Subject::Kind::kLogicalDrive, i),
          ClassOf(drive.verdict));
    WriteMark(drive.verdict, html_);
    html_("Logical drive {}", drive.number ? drive.number->text : "");
    if (drive.name) html_(" “{}”", drive.name);
    html_(" <small>{} {} {}</small></span>", DescribeRaidLevel(drive.raid_level),
          DescribeRoom(drive.size), drive.state.text.value_or("no state"));
  }

  void WriteShelf(const std::vector<Box>& boxes) {
    const auto channel = boxes.front().place.GetChannel();
    html_("<div class=\"shelf{}\"><h4>Channel {}{}</h4>\n<ul>\n",
          boxes.size() > kRoomyShelf ? " dense" : "", channel ? std::to_string(*channel) : "?",
          EnclosureOf(boxes));
    for (const Box& box : boxes) {
      if (box.kind == Subject::Kind::kDevice) {
        WriteDevice(box);
      } else {
        WritePlace(box);
      }
    }
    html_("</ul></div>\n");
  }

  /// ", enclosure 0", where all that say in which they are say the same: "0,3" is a slot of it.
  std::string EnclosureOf(const std::vector<Box>& boxes) const {
    std::string_view common;
    for (const Box& box : boxes) {
      if (box.kind != Subject::Kind::kDevice) continue;
      const Text& enclosure = controller_.devices[box.index].enclosure;
      if (!enclosure) continue;
      const std::string_view number = std::string_view(*enclosure).substr(0, enclosure->find(','));
      if (!common.empty() && number != common) return "";
      common = number;
    }
    return common.empty() ? "" : ", enclosure " + std::string(common);
  }

  void WriteDevice(const Box& box) {
    const Device& device = controller_.devices[box.index];
    const std::string id = Id(box.kind, box.index);
    std::string kind;
    if (device.verdict != Severity::kFine) kind = std::string(" ") + ClassOf(device.verdict);
    if (!device.IsDrive()) kind += " o";
    if (!device.arrays.empty()) kind += OutlineOf(device.arrays.front());
    html_("<li><a id=\"{}\" class=\"{}\" href=\"#r{}\">", id,
          std::string_view(kind).substr(kind.empty() ? 0 : 1), id);
    if (!device.arrays.empty()) {
      html_("<em>{}{}</em>", LabelOf(controller_.arrays[device.arrays.front()]),
            device.arrays.size() > 1 ? "+" : "");
    }
    html_(" <b>{}</b> <span>{}</span>", device.place.GetText(),
          device.state.text.value_or("no state"));
    const std::string room = DescribeRoom(device.size);
    html_(" <small>{}</small>", room.empty() ? device.type.value_or("") : room);
    html_("</a>");
    WriteTip(device);
  }

  /// What hover and focus show besides the box.
  void WriteTip(const Device& device) {
    const std::pair<const char*, std::string> rows[] = {
        {"", device.model.value_or("")},
        {"serial\u00A0", device.serial_number.value_or("")},
        {"firmware\u00A0", device.firmware.value_or("")},
        {"PFA ",
         device.predicts_failure.Value() == false ? "" : device.predicts_failure.text.value_or("")},
        {"errors ", DescribeCounters(device.counters)},
    };
    html_("<p>{} {}", device.place.GetText(), DescribeRoom(device.size));
    for (const auto& [name, value] : rows) {
      if (!value.empty()) html_("{}<b>{}</b>", name, value);
    }
    html_("\n");
  }

  /// Without a device: nothing is there, or nobody lists it.
  void WritePlace(const Box& box) {
    const bool is_missing = box.kind == Subject::Kind::kMissingDevice;
    const Severity severity = is_missing ? Severity::kCritical : Severity::kWarning;
    const std::string id = Id(box.kind, box.index);
    html_("<li><a id=\"{}\" class=\"{} gone\" href=\"#r{}\">", id, ClassOf(severity), id);
    html_(" <b>{}</b> <span>{}</span></a>\n", box.place.GetText(),
          is_missing ? "missing" : "not listed");
  }

  const Controller& controller_;
  std::size_t index_;
  HtmlWriter& html_;
};

}  // namespace

void WriteDrawing(const Controller& controller, std::size_t index, HtmlWriter& html) {
  DrawingWriter writer(controller, index, html);
  writer.WriteArrays();
  writer.WriteShelves();
}
