#include "inventory/print/findings_json.h"

#include <optional>
#include <string>

namespace {

/// What a subject is, in words and numbers that need no machine beside them.
struct Named {
  const char* kind = "controller";
  std::optional<Number> controller;
  std::optional<ToolNumber> tool;
  std::optional<Number> logical_drive;
  std::optional<Place> place;
  Text serial_number;
};

void NamePart(const Controller& controller, const Subject& subject, Named& named) {
  switch (subject.kind) {
    case Subject::Kind::kTool:
    case Subject::Kind::kController:
      named.serial_number = controller.serial_number;
      return;
    case Subject::Kind::kLogicalDrive:
      named.kind = "logical_drive";
      named.logical_drive = controller.logical_drives[subject.index].number;
      return;
    case Subject::Kind::kUnlistedDrive:
      named.kind = "logical_drive";
      named.logical_drive = controller.unlisted_drives[subject.index].number;
      return;
    case Subject::Kind::kDevice:
      named.kind = "device";
      named.place = controller.devices[subject.index].place;
      named.serial_number = controller.devices[subject.index].serial_number;
      return;
    case Subject::Kind::kUnlistedDevice:
      named.kind = "device";
      named.place = controller.unlisted_devices[subject.index].place;
      return;
    case Subject::Kind::kMissingDevice:
      named.kind = "device";
      named.place = controller.missing_places[subject.index];
  }
}

Named NameSubject(const Machine& machine, const Subject& subject) {
  Named named;
  if (subject.kind == Subject::Kind::kTool) {
    named.kind = "tool";
    named.tool = machine.unpublished[subject.index];
    return named;
  }
  const Controller& controller = machine.controllers[subject.controller];
  named.controller = controller.number;
  named.tool = controller.tool;
  NamePart(controller, subject, named);
  return named;
}

void WriteSubject(const Machine& machine, const Subject& subject, FieldWriter& owner) {
  const Named named = NameSubject(machine, subject);
  owner.Group("subject", [&named](FieldWriter& fields) {
    fields("kind", named.kind);
    fields("controller", named.controller);
    fields("tool", named.tool);
    fields("logical_drive", named.logical_drive);
    fields("place", named.place ? Text(named.place->GetText()) : std::nullopt);
    fields("serial_number", named.serial_number);
  });
}

/// "controller 2 (mail), device 1,2: Defunct (DDD)"
std::string Sentence(const std::string& where, const std::string& what) {
  return where.empty() ? what : where + ": " + what;
}

void WriteReason(FieldWriter& fields, const Reason& reason) {
  fields("code", NameOf(reason.code));
  fields("severity", reason.severity);
  fields("text", reason.text);
}

}  // namespace

void WriteFindings(const Machine& machine, FieldWriter& document) {
  document.Objects("findings", machine.findings, [&](FieldWriter& fields, const Finding& finding) {
    fields("severity", finding.severity);
    fields("where", finding.where);
    fields("text", Sentence(finding.where, finding.What()));
    WriteSubject(machine, finding.subject, fields);
    fields.Objects("reasons", finding.reasons, WriteReason);
  });
}

void WriteComparison(const Machine& machine, const Comparison& comparison, FieldWriter& document) {
  document.Group("compared_with", [&](FieldWriter& fields) {
    fields("collected_at", MakeText(comparison.since));
    fields("not_compared", comparison.not_compared);
  });
  document.Objects("changes", comparison.changes, [&](FieldWriter& fields, const Change& change) {
    fields("code", NameOf(change.code));
    fields("where", change.where);
    fields("text", Sentence(change.where, change.what));
    if (change.subject) {
      WriteSubject(change.is_of_earlier ? comparison.earlier : machine, *change.subject, fields);
    } else {
      fields.WriteNull("subject");
    }
    fields("property", change.property);
    fields("before", change.before);
    fields("after", change.after);
    change.grown_by ? fields("grown_by", std::size_t{*change.grown_by})
                    : fields.WriteNull("grown_by");
  });
}
