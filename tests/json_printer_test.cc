#include "inventory/print/json_printer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/print_to.h"

namespace {

using NKVXHMZ20::TCIMDateTime;
using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;

std::string Print(const Report& report) {
  return Printed([&](Sink& output) { PrintJson(report, output); });
}

TEST(JsonPrinter, WritesEveryKindOfValue) {
  standin::Repository repository;
  const TCIMReference path(nullptr, "KVXSG_X", {{"Z", TCIMValue("z")}, {"A", TCIMValue("\xff")}});
  Commit(
      repository, "KVXSG_krRawData",
      {
          {"Text", TCIMValue("line\n\"\\\x01")},
          {"NotUtf8", TCIMValue("a\xff\xc3(\xe2\x82")},
          {"Nul", TCIMValue(std::string("a\0b", 3))},
          {"Uint16", TCIMValue(std::uint16_t{66})},
          {"Uint32", TCIMValue(std::uint32_t{4294967295})},
          {"Time", TCIMValue(TCIMDateTime(2005, 0, 5, 13, 2, 3, 0, -300))},
          {"Null", TCIMValue()},
          {"Array", {TCIMValue::TCIMType(TCIMValue::kString), 2, {TCIMValue("a"), TCIMValue("")}}},
          {"Empty", {TCIMValue::TCIMType(TCIMValue::kUint32), 0, {}}},
          {"Path", TCIMValue(path)},
      });
  Commit(repository, "Other", {});

  EXPECT_EQ(Print({"host \"x\"", 1, {{"what", "why"}}, repository}),
            R"({
  "format_version": [1, 0],
  "generator": {
    "name": "kraid-inventory",
    "version": ")" KRAID_VERSION
            R"("
  },
  "host": "host \"x\"",
  "exit_status": 1,
  "problems": [
    {
      "what": "what",
      "why": "why"
    }
  ],
  "instances": [
    {
      "class": "KVXSG_krRawData",
      "properties": {
        "Text": "line\n\"\\\u0001",
        "NotUtf8": "a)"
            "\xef\xbf\xbd\xef\xbf\xbd(\xef\xbf\xbd"
            R"(",
        "Nul": "a\u0000b",
        "Uint16": 66,
        "Uint32": 4294967295,
        "Time": "20050005130203.000000-300",
        "Null": null,
        "Array": [
          "a",
          ""
        ],
        "Empty": [],
        "Path": {
          "class": "KVXSG_X",
          "keys": {
            "Z": "z",
            "A": ")"
            "\xef\xbf\xbd"
            R"("
          }
        }
      }
    },
    {
      "class": "Other",
      "properties": {}
    }
  ]
}
)");
}

TEST(JsonPrinter, OfNothingIsADocument) {
  const standin::Repository repository;
  const auto document = nlohmann::json::parse(Print({"h", 0, {}, repository}));
  EXPECT_TRUE(document["problems"].empty() && document["problems"].is_array());
  EXPECT_TRUE(document["instances"].empty() && document["instances"].is_array());
}

}  // namespace
