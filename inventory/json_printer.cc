#include "inventory/json_printer.h"

#include <nlohmann/json.hpp>

#include "inventory/options.h"

namespace {

using NKVXHMZ20::TCIMValue;
using Json = nlohmann::ordered_json;

Json ToJson(const TCIMValue& value);

Json ToJson(const NKVXHMZ20::TCIMReference& reference) {
  Json keys = Json::object();
  for (const auto& [name, value] : reference.GetKeys()) keys[name] = ToJson(value);
  return {{"class", reference.GetClassName()}, {"keys", std::move(keys)}};
}

Json ToJson(const TCIMValue& value) {
  if (value.IsArray()) {
    Json elements = Json::array();
    for (const TCIMValue& element : value.GetArray()) elements.push_back(ToJson(element));
    return elements;
  }
  switch (value.GetType().GetCode()) {
    case TCIMValue::kNull:
      return nullptr;
    case TCIMValue::kUint16:
    case TCIMValue::kUint32:
      return value.GetNumber();
    case TCIMValue::kString:
      return value.GetString();
    case TCIMValue::kDateTime:
      return value.GetDateTime().ToString();
    case TCIMValue::kReference:
      return ToJson(value.GetReference());
  }
  return nullptr;
}

Json ToJson(const standin::StoredInstance& instance) {
  Json properties = Json::object();
  for (const auto& [name, value] : instance.properties) properties[*name] = ToJson(value);
  return {{"class", *instance.class_name}, {"properties", std::move(properties)}};
}

constexpr int kCompact = -1;
constexpr int kIndent = 2;

std::string Text(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

// Moves all lines but the first to the right. No JSON string holds a raw newline.
std::string Indented(const std::string& text, std::size_t width) {
  std::string indented;
  indented.reserve(text.size() * 2);
  for (const char c : text) {
    indented += c;
    if (c == '\n') indented.append(width, ' ');
  }
  return indented;
}

}  // namespace

void PrintJson(const Report& report, OutputFile& output) {
  const auto member = [](const char* name, const Json& value) {
    return "  \"" + std::string(name) + "\": " + Text(value, kCompact) + ",\n";
  };
  output.Write("{\n");
  output.Write(member("format_version", {1, 0}));
  output.Write(member("generator", {{"name", kProgramName}, {"version", KRAID_VERSION}}));
  output.Write(member("host", report.host));
  output.Write(member("exit_status", report.exit_status));

  output.Write("  \"problems\": [");
  bool first = true;
  for (const Problem& problem : report.problems) {
    output.Write(first ? "\n    " : ",\n    ");
    output.Write(Text({{"what", problem.what}, {"why", problem.why}}, kCompact));
    first = false;
  }
  output.Write(first ? "],\n" : "\n  ],\n");

  output.Write("  \"instances\": [");
  first = true;
  for (const auto& instance : report.repository.GetCommitted()) {
    output.Write(first ? "\n    " : ",\n    ");
    output.Write(Indented(Text(ToJson(*instance), kIndent), 4));
    first = false;
  }
  output.Write(first ? "]\n}\n" : "\n  ]\n}\n");
}
