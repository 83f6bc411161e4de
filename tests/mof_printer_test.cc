#include "inventory/print/mof_literal.h"
#include "inventory/print/mof_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "inventory/print/json_printer.h"
#include "standin/schema.h"
#include "tests/mof_reader.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

using Json = nlohmann::ordered_json;
using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;

std::string Print(const Report& report) {
  return Printed([&](Sink& output) { PrintMof(report, output); });
}

MofDocument Read(const std::string& mof) {
  return ReadMof(ReadFile(KRAID_SOURCE_DIR "/schema/kvxsg.mof"), mof);
}

TEST(MofPrinter, EscapesTexts) {
  const std::pair<std::string, const char*> cases[] = {
      {"", R"("")"},
      {"it's \"a\\b\"", R"("it's \"a\\b\"")"},
      {"\b\t\n\f\r", R"("\b\t\n\f\r")"},
      {"\x01\x1f"
       "f\x7f",
       R"("\x0001\x001Ff\x007F")"},
      {"\xc2\x80\xc2\x9f\xc2\xa0\xc3\xa9", "\"\\x0080\\x009F\xc2\xa0\xc3\xa9\""},
      {"a\xff\xc3(", "\"a\xef\xbf\xbd\xef\xbf\xbd(\""},
      {std::string("a\0b", 3),
       "\"a\xef\xbf\xbd"
       "b\""},
  };
  for (const auto& [text, literal] : cases) EXPECT_EQ(MofString(text), literal);
}

TEST(MofPrinter, StopsADateTimeAtItsFirstImpossibleField) {
  const std::pair<const char*, const char*> cases[] = {
      {"20041231235959.000001-300", "20041231235959.000001-300"},
      {"20040229000000.000000+000", "20040229000000.000000+000"},
      {"20050229000000.000000+060", "200502********.******+060"},
      {"20050014180000.000000+000", "2005**********.******+000"},
      {"20051314180000.000000+000", "2005**********.******+000"},
      {"20050400180000.000000+000", "200504********.******+000"},
      {"20050431180000.000000+000", "200504********.******+000"},
      {"20050430240000.000000+000", "20050430******.******+000"},
      {"20050430236000.000000+000", "2005043023****.******+000"},
      {"20050430235960.000000+000", "200504302359**.******+000"},
      {"00000000000000.000000+000", "00010101000000.000000+000"},
      {"200504302359600.000000+000", "00010101000000.000000+000"},
  };
  for (const auto& [time, expected] : cases) EXPECT_EQ(MofDateTime(time), expected);
}

TEST(MofPrinter, TellsOfDuplicatesEmptyArraysAndReferencesToNothing) {
  standin::Repository repository;
  const auto commit_disk = [&](const char* id) {
    return Commit(repository, "KVXSG_krLogicalDisk",
                  {{"SystemCreationClassName", "S"},
                   {"SystemName", "h"},
                   {"CreationClassname", "C"},
                   {"DeviceID", id},
                   {"Size", TCIMValue()}});
  };
  const TCIMReference first = commit_disk("1\n");
  const TCIMReference stripes = Commit(repository, "KVXSG_BadStripeData", {{"InstanceID", "B"}});
  Commit(repository, "KVXSG_ElementBadStripeData", {{"Stats", stripes}, {"ManagedElement", first}});
  Commit(repository, "KVXSG_ElementBadStripeData",
         {{"Stats", stripes},
          {"ManagedElement", TCIMReference(nullptr, "KVXSG_krLogicalDisk", {{"DeviceID", "9"}})}});
  commit_disk("1\n");
  commit_disk("\xfe");
  commit_disk("\xff");  // another path, but not when it is written
  Commit(repository, "KVXSG_DiskGroup", {});
  Commit(repository, "a b; }", {{"A", "a"}});
  Commit(repository, "KVXSG_krRawData",
         {{"Command", "c"}, {"RawResults", {TCIMValue::TCIMType(TCIMValue::kString), 0, {}}}});
  const std::string mof = Print({"host\n1", 1, {{"tool\n", "why"}}, repository});
  EXPECT_EQ(mof, "// Written by kraid-inventory " KRAID_VERSION
                 R"( on host 1. It needs the schema, kvxsg.mof.
// Not collected: tool : why

instance of KVXSG_krLogicalDisk as $KVXSG_krLogicalDisk_1 {
  SystemCreationClassName = "S";
  SystemName = "h";
  CreationClassname = "C";
  DeviceID = "1\n";
};

instance of KVXSG_BadStripeData as $KVXSG_BadStripeData_1 {
  InstanceID = "B";
};

// Its keys are those of an earlier instance.
instance of KVXSG_krLogicalDisk {
  SystemCreationClassName = "S";
  SystemName = "h";
  CreationClassname = "C";
  DeviceID = "1\n";
};

instance of KVXSG_krLogicalDisk {
  SystemCreationClassName = "S";
  SystemName = "h";
  CreationClassname = "C";
  DeviceID = ")"
                 "\xef\xbf\xbd"
                 R"(";
};

// Its keys are those of an earlier instance.
instance of KVXSG_krLogicalDisk {
  SystemCreationClassName = "S";
  SystemName = "h";
  CreationClassname = "C";
  DeviceID = ")"
                 "\xef\xbf\xbd"
                 R"(";
};

// Left out: an instance of KVXSG_DiskGroup; it lacks a key.

// Left out: an instance of a b; }; the schema has no such class.

instance of KVXSG_krRawData {
  Command = "c";
  // RawResults is an empty array.
};

instance of KVXSG_ElementBadStripeData {
  Stats = $KVXSG_BadStripeData_1;
  ManagedElement = $KVXSG_krLogicalDisk_1;
};

// Left out: an instance of KVXSG_ElementBadStripeData; it refers to an instance that does not stand before it.
)");
  EXPECT_EQ(Read(mof).instances.size(), 7U);
}

/// The instances as the MOF should have them, from the JSON document of the same run.
class Expected {
 public:
  Expected(const Json& document, const MofDocument& mof) : mof_(mof) {
    for (const MofClass& mof_class : mof.classes) {
      for (const MofProperty& property : mof_class.properties) {
        types_[mof_class.name + "." + property.name] = property.type;
      }
    }
    for (const bool associations : {false, true}) {
      for (const Json& instance : document["instances"]) {
        const Json& properties = instance["properties"];
        const bool is_association =
            std::any_of(properties.begin(), properties.end(),
                        [](const Json& value) { return value.is_object(); });
        if (is_association == associations) instances_.push_back(&instance);
      }
    }
  }

  void Compare() const {
    ASSERT_EQ(mof_.instances.size(), instances_.size());
    for (std::size_t i = 0; i < instances_.size(); ++i) {
      EXPECT_EQ(ToJson(mof_.instances[i]), Wanted(*instances_[i]));
    }
  }

 private:
  /// Without what MOF leaves out.
  Json Wanted(const Json& instance) const {
    Json wanted = {{"class", instance["class"]}, {"properties", Json::object()}};
    for (const auto& [name, value] : instance["properties"].items()) {
      if (value.is_null() || (value.is_array() && value.empty())) continue;
      const auto type = types_.find(instance["class"].get<std::string>() + "." + name);
      wanted["properties"][name] = type != types_.end() && type->second == "datetime"
                                       ? Json(MofDateTime(value.get<std::string>()))
                                       : value;
    }
    return wanted;
  }

  Json ToJson(const MofInstance& instance) const {
    Json json = {{"class", instance.class_name}, {"properties", Json::object()}};
    for (const MofSetting& setting : instance.properties) {
      Json& value = json["properties"][setting.name];
      if (const auto* literal = std::get_if<MofLiteral>(&setting.value)) {
        value = ToJson(*literal);
      } else if (const auto* alias = std::get_if<MofAlias>(&setting.value)) {
        value = PathOf(mof_.instances[alias->instance]);
      } else {
        for (const MofLiteral& element : std::get<std::vector<MofLiteral>>(setting.value)) {
          value.push_back(ToJson(element));
        }
      }
    }
    return json;
  }

  static Json ToJson(const MofLiteral& literal) {
    return std::visit([](const auto& value) { return Json(value); }, literal);
  }

  Json PathOf(const MofInstance& instance) const {
    const Json properties = ToJson(instance)["properties"];
    Json path = {{"class", instance.class_name}, {"keys", Json::object()}};
    for (const standin::SchemaClass& known : standin::Schema()) {
      if (known.name != instance.class_name) continue;
      for (const auto key : known.keys)
        path["keys"][std::string(key)] = properties[std::string(key)];
    }
    return path;
  }

  const MofDocument& mof_;
  std::map<std::string, std::string> types_;
  std::vector<const Json*> instances_;
};

TEST(MofPrinter, HoldsOfTheSampleMachineWhatTheJsonHolds) {
  const auto repository = PublishSampleMachine();
  const Report report{"h", 0, {}, *repository};
  const MofDocument mof = Read(Print(report));
  const Json json = Json::parse(Printed([&](Sink& output) { PrintJson(report, output); }));
  EXPECT_GT(mof.instances.size(), 300U);
  Expected(json, mof).Compare();
}

}  // namespace
