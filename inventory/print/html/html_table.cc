// All drives and devices as one table: in the order of a tree, or of any column where there is
// script.

#include <algorithm>
#include <cstdint>
#include <string>

#include "inventory/base/readable.h"
#include "inventory/machine/health.h"
#include "inventory/print/html/html_parts.h"

namespace {

constexpr const char* kColumns[] = {"Name",     "Contr.", "Array", "State", "Size",  "Type",
                                    "Firmware", "Serial", "Model", "PFA",   "Errors"};

constexpr std::size_t kLongTable = 300;  // which the style lays out by and by

class TableWriter {
 public:
  explicit TableWriter(HtmlWriter& html) : html_(html) {}

  void WriteHead() {
    html_("<thead><tr>");
    for (const char* column : kColumns) html_("<th scope=\"col\">{}", column);
    html_("</thead>\n<tbody>\n");
  }

  void Write(const Controller& controller, std::size_t index) {
    index_ = index;
    number_ = controller.NumberText();
    html_("<tr class=\"g\"><th colspan=\"{}\" scope=\"col\"><a href=\"#c{}\">{}</a>\n",
          std::size(kColumns), index, TitleOf(controller));
    for (const DriveArray& array : controller.arrays) WriteArray(controller, array);
    for (const std::size_t device : controller.unplaced_devices)
      WriteDevice(controller, device, "");
    for (std::size_t i = 0; i < controller.unlisted_drives.size(); ++i) {
      const UnlistedDrive& drive = controller.unlisted_drives[i];
      WriteBare({Subject::Kind::kUnlistedDrive, index_, i},
                "Logical drive " + (drive.number ? drive.number->text : ""), "", "not listed",
                Severity::kWarning, DescribeBadStripes(drive.bad_stripes));
    }
    for (std::size_t i = 0; i < controller.unlisted_devices.size(); ++i) {
      const UnlistedDevice& device = controller.unlisted_devices[i];
      WriteBare({Subject::Kind::kUnlistedDevice, index_, i}, device.place.GetText(), "",
                "not listed", Severity::kWarning, DescribeCounters({device.counters}));
    }
    for (std::size_t i = 0; i < controller.missing_places.size(); ++i) {
      WriteBare({Subject::Kind::kMissingDevice, index_, i}, controller.missing_places[i].GetText(),
                "", "missing", Severity::kCritical, "");
    }
  }

 private:
  void WriteArray(const Controller& controller, const DriveArray& array) {
    const std::string name = array.letter || array.logical_drive ? LabelOf(array) : "";
    for (const std::size_t drive : array.logical_drives) WriteDrive(controller, drive, name);
    for (const std::size_t device : array.shown_devices) WriteDevice(controller, device, name);
  }

  void WriteDrive(const Controller& controller, std::size_t i, const std::string& array) {
    const LogicalDrive& drive = controller.logical_drives[i];
    Begin({Subject::Kind::kLogicalDrive, index_, i}, " l", drive.verdict,
          "Logical drive " + (drive.number ? drive.number->text : ""), array);
    State(drive.state.text.value_or("not reported"), drive.verdict);
    Room(drive.size);
    std::string errors = DescribeBadStripes(drive.bad_stripes);
    if (drive.access_blocked.Value() != false && drive.access_blocked.text) {
      errors += (errors.empty() ? "" : ", ") + ("access blocked: " + *drive.access_blocked.text);
    }
    html_("<td>{}<td><td><td>{}<td><td>{}</tr>\n", DescribeRaidLevel(drive.raid_level), drive.name,
          errors);
  }

  void WriteDevice(const Controller& controller, std::size_t i, const std::string& array) {
    const Device& device = controller.devices[i];
    const std::size_t others = device.arrays.size() > 1 ? device.arrays.size() - 1 : 0;
    Begin({Subject::Kind::kDevice, index_, i}, "", device.verdict, device.place.GetText(),
          others == 0 ? array : array + ", and in " + Counted(others, "other"));
    State(device.state.text.value_or("not reported"), device.verdict);
    Room(device.size);
    html_("<td>{}<td>{}<td>{}<td>{}<td>", device.type, device.firmware, device.serial_number,
          device.model);
    const Text& predicts = device.predicts_failure.text;
    if (device.predicts_failure.Value() == false) {
      html_("{}", predicts);
    } else if (predicts) {
      html_("<b>{}</b>", predicts);
    }
    html_("<td>{}</tr>\n", DescribeCounters(device.counters));
  }

  /// Of what is known by its name and its errors only.
  void WriteBare(const Subject& subject, const std::string& name, const std::string& array,
                 const char* state, Severity severity, const std::string& errors) {
    Begin(subject, "", severity, name, array);
    State(state, severity);
    html_("<td><td><td><td><td><td><td>{}</tr>\n", errors);
  }

  void Begin(const Subject& subject, const char* kind, Severity verdict, const std::string& name,
             const std::string& array) {
    html_("<tr id=\"r{}\"", IdOf(subject));
    if (verdict != Severity::kFine || *kind != '\0') {
      html_(" class=\"{}{}\"", ClassOf(verdict), kind);
    }
    html_("><th>{}<td>{}<td>{}", name, number_, array);
  }

  void State(const std::string& text, Severity verdict) {
    html_("<td>");
    if (verdict != Severity::kFine) WriteMark(verdict, html_);
    html_("{}", text);
  }

  /// With the bytes, to be sorted by.
  void Room(const std::optional<Size>& size) {
    if (size && size->bytes) {
      html_("<td data-v=\"{}\">{}", *size->bytes, DescribeRoom(size));
    } else {
      html_("<td>{}", DescribeRoom(size));
    }
  }

  HtmlWriter& html_;
  std::size_t index_ = 0;
  std::string number_;
};

}  // namespace

void WriteTable(const ViewInput& input, HtmlWriter& html) {
  const Machine& machine = input.machine;
  if (machine.controllers.empty()) return;
  html("<section id=\"drives\" aria-labelledby=\"hd\">\n<h2 id=\"hd\">Drives</h2>\n");
  html("<form class=\"filter\" data-of=\"tree\" hidden><label>Show <select><option value=\"\">all");
  html("<option value=\"wn cr\">what needs attention<option value=\"cr\">what has failed");
  html("</select></label> <label>with <input type=\"search\" placeholder=\"any text\"></label>");
  html(" <output>all shown</output></form>\n");
  const bool is_long = machine.CountDevices() + machine.CountLogicalDrives() > kLongTable;
  html("<table class=\"wide{}\" id=\"tree\">\n", is_long ? " big" : "");
  html("<caption>Logical drives and devices</caption>\n");
  TableWriter table(html);
  table.WriteHead();
  for (std::size_t i = 0; i < machine.controllers.size(); ++i) {
    table.Write(machine.controllers[i], i);
  }
  html("</tbody></table>\n</section>");
}
