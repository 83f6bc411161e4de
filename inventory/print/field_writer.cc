#include "inventory/print/field_writer.h"

#include <algorithm>
#include <cstdint>

#include "inventory/print/machine_fields.h"

namespace {

/// Programs that know no integers lose digits beyond it.
constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;

constexpr std::optional<Number> ErrorCounters::*kCounters[] = {
    &ErrorCounters::hard, &ErrorCounters::soft, &ErrorCounters::parity,
    &ErrorCounters::predicted_failures, &ErrorCounters::misc};

std::optional<Number> NumberOf(std::uint64_t value) { return Number{std::to_string(value), value}; }

void TakeLarger(const std::optional<Number>& other, std::optional<Number>& number) {
  if (!other || !other->value) return;
  if (!number || !number->value || *number->value < *other->value) number = other;
}

}  // namespace

void FieldWriter::WriteNull(const std::string& name) {
  json_.Name(name);
  json_.Null();
}

void FieldWriter::operator()(const std::string& name, bool value) {
  json_.Name(name);
  json_.Bool(value);
}

void FieldWriter::operator()(const std::string& name, std::size_t value) {
  (*this)(name, NumberOf(value));
}

void FieldWriter::operator()(const std::string& name, int value) {
  json_.Name(name);
  json_.Number(value);
}

void FieldWriter::operator()(const std::string& name, Severity value) {
  (*this)(name, NameOf(value));
}

void FieldWriter::operator()(const std::string& name, const char* value) {
  (*this)(name, std::string(value));
}

void FieldWriter::operator()(const std::string& name, const std::string& value) {
  json_.Name(name);
  json_.String(value);
}

void FieldWriter::operator()(const std::string& name, const Text& value) {
  value ? (*this)(name, *value) : WriteNull(name);
}

void FieldWriter::operator()(const std::string& name, const std::optional<Number>& value) {
  if (!value || !value->value) return WriteNull(name);
  json_.Name(name);
  json_.Number(*value->value);
  if (*value->value > kLargestExact) (*this)(name + "_s", std::to_string(*value->value));
}

void FieldWriter::operator()(const std::string& name, const Version& version) {
  (*this)(name, version.Reported());
}

void FieldWriter::operator()(const std::string& name, const Place& place) {
  Group(name, [&](FieldWriter& fields) {
    const auto number = [](const std::optional<std::uint32_t>& part) {
      return part ? NumberOf(*part) : std::nullopt;
    };
    fields("channel", number(place.GetChannel()));
    fields("device", number(place.GetDevice()));
    fields("text", place.GetText());
  });
}

void FieldWriter::operator()(const std::string& name, const std::vector<Place>& places) {
  json_.Name(name);
  json_.Array(places, [this](const Place& place) { json_.String(place.GetText()); });
}

void FieldWriter::operator()(const std::string& name, const std::vector<std::string>& texts) {
  json_.Name(name);
  json_.Array(texts, [this](const std::string& text) { json_.String(text); });
}

void FieldWriter::operator()(const std::string& name,
                             const std::vector<std::optional<Number>>& numbers) {
  json_.Name(name);
  json_.Array(numbers, [this](const std::optional<Number>& number) {
    number && number->value ? json_.Number(*number->value) : json_.Null();
  });
}

void FieldWriter::operator()(const std::string& name, const Flag& flag) {
  const auto value = flag.Value();
  value ? (*this)(name, *value) : WriteNull(name);
  (*this)(name + "_text", flag.text);
}

void FieldWriter::operator()(const std::string& name, const std::optional<Size>& size) {
  const bool is_read = size && size->bytes;
  is_read ? (*this)(name + "_bytes", NumberOf(*size->bytes)) : WriteNull(name + "_bytes");
  (*this)(name + "_text", size ? Text(size->text) : std::nullopt);
}

void FieldWriter::operator()(const std::string& name, const Time& time) {
  (*this)(name, time.instant ? Text(Rfc3339(*time.instant)) : std::nullopt);
  (*this)(name + "_text", time.text);
}

void FieldWriter::operator()(const std::string& name, const std::optional<ToolNumber>& tool) {
  (*this)(name, tool ? Text(tool->tool) : std::nullopt);
  tool ? (*this)(name + "_number", tool->number) : WriteNull(name + "_number");
}

void FieldWriter::operator()(const std::string& name, const std::optional<DriveCounts>& counts) {
  const auto number = [&](std::size_t DriveCounts::*count) {
    return counts && counts->is_read ? NumberOf(*counts.*count) : std::nullopt;
  };
  (*this)(name, number(&DriveCounts::drives));
  (*this)(name + "_offline", number(&DriveCounts::offline));
  (*this)(name + "_critical", number(&DriveCounts::critical));
}

void FieldWriter::operator()(const std::string& name, const std::vector<Number>& counts) {
  std::optional<Number> largest;
  for (const Number& count : counts) TakeLarger(count, largest);
  (*this)(name, largest);
}

void FieldWriter::operator()(const std::string& name, const std::vector<ErrorCounters>& rows) {
  if (rows.empty()) return WriteNull(name);
  ErrorCounters largest;
  for (const ErrorCounters& row : rows) {
    for (const auto counter : kCounters) TakeLarger(row.*counter, largest.*counter);
  }
  (*this)(name, largest);
}

void FieldWriter::Linked(const std::string& name, const std::vector<std::size_t>& indices,
                         const std::vector<LogicalDrive>& drives) {
  std::vector<std::optional<Number>> numbers;
  numbers.reserve(indices.size());
  for (const std::size_t index : indices) numbers.push_back(drives[index].number);
  (*this)(name, numbers);
}

void FieldWriter::Linked(const std::string& name, const std::vector<std::size_t>& indices,
                         const std::vector<Device>& devices) {
  json_.Name(name);
  json_.Array(indices, [&](std::size_t index) { json_.String(devices[index].place.GetText()); });
}
