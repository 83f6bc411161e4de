#include "inventory/print/field_reader.h"

#include <limits>
#include <stdexcept>
#include <utility>

#include "inventory/base/readable.h"
#include "inventory/print/machine_fields.h"

using nlohmann::json;

FieldReader::FieldReader(const json& object, std::string path, std::shared_ptr<Indices> indices)
    : object_(object), path_(std::move(path)), indices_(std::move(indices)) {
  if (!object_.is_object()) throw std::runtime_error(path_ + ": not an object");
}

const json& FieldReader::Find(const std::string& name) const {
  static const json null_value;
  const auto found = object_.find(name);
  return found == object_.end() ? null_value : *found;
}

const json& FieldReader::Elements(const std::string& name) const {
  const json& elements = Find(name);
  if (!elements.is_array()) Refuse(name, "a list");
  return elements;
}

void FieldReader::Refuse(const std::string& name, const char* expected) const {
  throw std::runtime_error(PathOf(name) + ": not " + expected);
}

void FieldReader::operator()(const std::string& name, bool& value) const {
  const json& found = Find(name);
  if (!found.is_boolean()) Refuse(name, "true or false");
  value = found.get<bool>();
}

void FieldReader::operator()(const std::string& name, std::size_t& value) const {
  std::optional<Number> number;
  (*this)(name, number);
  if (!number) Refuse(name, "a whole number");
  value = *number->value;
}

void FieldReader::operator()(const std::string& name, int& value) const {
  std::size_t number = 0;
  (*this)(name, number);
  if (!std::in_range<int>(number)) Refuse(name, "a small number");
  value = static_cast<int>(number);
}

void FieldReader::operator()(const std::string& name, Severity& value) const {
  Text word;
  (*this)(name, word);
  for (const Severity severity : {Severity::kFine, Severity::kWarning, Severity::kCritical}) {
    if (word == NameOf(severity)) return void(value = severity);
  }
  Refuse(name, "fine, warning or critical");
}

void FieldReader::operator()(const std::string& name, std::string& value) const {
  Text text;
  (*this)(name, text);
  value = text.value_or("");
}

void FieldReader::operator()(const std::string& name, Text& value) const {
  const json& found = Find(name);
  if (found.is_null()) return void(value = std::nullopt);
  if (!found.is_string()) Refuse(name, "a text");
  // Whoever wrote the document: what is shown later is as it should be.
  value = MakeText(Readable(found.get<std::string>()));
}

void FieldReader::operator()(const std::string& name, std::optional<Number>& value) const {
  const json& found = Find(name);
  if (found.is_null()) return void(value = std::nullopt);
  if (found.is_number_unsigned()) {
    value = MakeNumber(std::to_string(found.get<std::uint64_t>()));
  } else if (found.is_number()) {
    // Of a program that rounded it; the text behind it is exact.
    const json& twin = Find(name + "_s");
    value = twin.is_string() ? MakeNumber(twin.get<std::string>()) : std::nullopt;
    if (!value || !value->value) Refuse(name, "a whole number");
  } else {
    Refuse(name, "a whole number");
  }
}

void FieldReader::operator()(const std::string& name, Version& version) const {
  (*this)(name, version.published);
}

void FieldReader::operator()(const std::string& name, Place& place) const {
  Group(name, [&](const FieldReader& fields) {
    std::string text;
    fields("text", text);
    place = Place(text);
  });
}

void FieldReader::operator()(const std::string& name, std::vector<Place>& places) const {
  std::vector<std::string> texts;
  (*this)(name, texts);
  for (const std::string& text : texts) places.emplace_back(text);
}

void FieldReader::operator()(const std::string& name, std::vector<std::string>& texts) const {
  for (const json& element : Elements(name)) {
    if (!element.is_string()) Refuse(name, "a list of texts");
    texts.push_back(Readable(element.get<std::string>()));
  }
}

void FieldReader::operator()(const std::string& name, Flag& flag) const {
  (*this)(name + "_text", flag.text);
}

void FieldReader::operator()(const std::string& name, std::optional<Size>& size) const {
  Text text;
  (*this)(name + "_text", text);
  std::optional<Number> bytes;
  (*this)(name + "_bytes", bytes);
  if (text) size = Size{*text, bytes ? bytes->value : std::nullopt};
}

void FieldReader::operator()(const std::string& name, Time& time) const {
  (*this)(name + "_text", time.text);
  Text instant;
  (*this)(name, instant);
  if (instant && !(time.instant = ParseRfc3339(*instant))) Refuse(name, "a time of RFC 3339");
}

void FieldReader::operator()(const std::string& name, std::optional<ToolNumber>& tool) const {
  Text tool_name;
  (*this)(name, tool_name);
  if (!tool_name) return;
  tool.emplace().tool = *tool_name;
  (*this)(name + "_number", tool->number);
}

void FieldReader::operator()(const std::string& name, std::optional<DriveCounts>& counts) const {
  std::string text;
  for (const char* suffix : {"", "_offline", "_critical"}) {
    std::optional<Number> number;
    (*this)(name + suffix, number);
    if (!number) return;
    text.append(text.empty() ? "" : "/").append(number->text);
  }
  counts = MakeDriveCounts(text);
}

void FieldReader::operator()(const std::string& name, std::vector<Number>& counts) const {
  std::optional<Number> largest;
  (*this)(name, largest);
  if (largest) counts.push_back(*largest);
}

void FieldReader::operator()(const std::string& name, std::vector<ErrorCounters>& rows) const {
  if (!Find(name).is_null()) (*this)(name, rows.emplace_back());
}

std::string FieldReader::NameOfPart(const LogicalDrive& drive) {
  return drive.number && drive.number->value ? std::to_string(*drive.number->value) : "";
}

std::string FieldReader::NameIn(const json& element) {
  if (element.is_string()) return Readable(element.get<std::string>());
  return element.is_number_unsigned() ? std::to_string(element.get<std::uint64_t>()) : "";
}
