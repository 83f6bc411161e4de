#include "standin/repository.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "hmz/exception.h"

namespace {

using NKVXHMZ20::ICIMInstance;
using NKVXHMZ20::TCIMDateTime;
using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;
using Instance = boost::shared_ptr<ICIMInstance>;

constexpr char kRawData[] = "KVXSG_krRawData";

std::string CommandOf(ICIMInstance& instance) {
  return instance.GetProperty("Command")->GetValue().ToString();
}

TEST(Repository, KeepsInstancesAsTheyStoodAtTheCommit) {
  standin::Repository repository;
  const Instance instance = repository.GetClass(kRawData)->CreateInstance({});
  instance->SetPropertyValue("Command", "first", {});
  EXPECT_TRUE(repository.GetCommitted().empty());
  instance->Commit({});
  instance->SetPropertyValue("Command", "second", {});
  instance->Commit({});
  instance->Commit({});
  std::string commands;
  const auto read_and_change = [&commands](const Instance& stored) {
    commands += CommandOf(*stored) + ";";
    stored->SetPropertyValue("Command", "changed by a reader", {});
    return true;
  };
  repository.GetClass(kRawData)->EnumerateInstances(read_and_change);
  repository.GetClass(kRawData)->EnumerateInstances(read_and_change);
  EXPECT_EQ(commands, "first;second;second;first;second;second;");
}

TEST(Repository, KeepsPropertiesInTheOrderOfTheirFirstSetting) {
  standin::Repository repository;
  const Instance instance = repository.GetClass("KVXSG_krDiskGroup")->CreateInstance({});
  for (const char* name : {"Size", "State", "Size", "Array"}) {
    instance->SetPropertyValue(name, std::string("of ") + name, {});
  }
  instance->SetPropertyValue("Size", "last", {});
  instance->Commit({});
  std::string order;
  for (const auto& property : repository.GetCommitted().at(0)->properties) {
    order += *property.name + "=" + property.value.ToString() + ";";
  }
  EXPECT_EQ(order, "Size=last;State=of State;Array=of Array;");
  EXPECT_TRUE(instance->GetProperty("NeverSet")->GetValue().IsNull());
}

TEST(Repository, EnumeratesOneClassInTheOrderOfTheCommitsUntilTheVisitorStops) {
  standin::Repository repository;
  for (const char* name : {kRawData, "KVXSG_krDiskGroup", kRawData}) {
    const std::string count = std::to_string(repository.GetCommitted().size());
    repository.GetClass(name)->CreateInstance({{"Command", count}})->Commit({});
  }
  std::string visited;
  const auto raw_class = repository.GetClass(kRawData);
  raw_class->EnumerateInstances([&](const Instance& instance) {
    visited += CommandOf(*instance);
    instance->Commit({});  // a visitor may commit: what it adds is not visited
    return true;
  });
  EXPECT_EQ(visited, "02");
  int calls = 0;
  raw_class->EnumerateInstances([&](const auto&) { return ++calls < 2; });
  EXPECT_EQ(calls, 2);
}

TEST(Repository, BuildsObjectPathsFromTheKeysOfTheClass) {
  standin::Repository repository;
  const Instance instance = repository.GetClass("KVXSG_krLogicalDisk")->CreateInstance({});
  for (const char* name : {"DeviceID", "Size", "SystemName", "CreationClassname"}) {
    instance->SetPropertyValue(name, std::string("the ") + name, {});
  }
  EXPECT_THROW(instance->GetReference(), NKVXHMZ20::THMZException);
  instance->SetPropertyValue("SystemCreationClassName", "S", {});
  EXPECT_EQ(instance->GetReference().ToString(),
            "KVXSG_krLogicalDisk.SystemCreationClassName=\"S\",SystemName=\"the SystemName\","
            "CreationClassname=\"the CreationClassname\",DeviceID=\"the DeviceID\"");
}

TEST(Repository, ListsWhatTheSchemaDoesNotDeclare) {
  const TCIMValue number(std::uint16_t{1});
  const TCIMValue texts(TCIMValue::TCIMType(TCIMValue::kString), 0, {});
  const TCIMValue words(TCIMValue::TCIMType(TCIMValue::kUint32), 0, {});
  const TCIMReference path(nullptr, "KVXSG_krBiosVersion", {});
  const struct {
    const char* class_name;
    const char* property;
    TCIMValue value;
    const char* type;  // "" when it is declared
  } cases[] = {
      {kRawData, "Command", number, "uint16"},
      {kRawData, "Command", texts, "string[]"},
      {kRawData, "Command", TCIMValue(), ""},
      {kRawData, "RawResults", "text", "string"},
      {kRawData, "RawResults", words, "uint32[]"},
      {kRawData, "RawResults", texts, ""},
      {kRawData, "Rawresults", TCIMValue(), "null"},
      {"KVXSG_LogRecord_SoftEvent", "HexSoftEvent", words, ""},
      {"KVXSG_LogRecord_SoftEvent", "MessageTimestamp", TCIMDateTime(), ""},
      {"KVXSG_LogRecord_SoftEvent", "RecordID", TCIMDateTime(), "datetime"},
      {"KVXSG_krBiosVersion", "SoftwareElementState", number, ""},
      {"KVXSG_krBiosVersion", "SoftwareElementState", TCIMValue(std::uint32_t{1}), "uint32"},
      {"KVXSG_krBiosOnController", "Antecedent", path, ""},
      {"KVXSG_krBiosOnController", "Dependent", path, "KVXSG_krBiosVersion REF"},
      {"Foreign", "Command", number, ""},
  };
  standin::Repository by_keys;
  standin::Repository by_setting;
  std::set<std::string> expected;
  for (const auto& [class_name, property, value, type] : cases) {
    by_keys.GetOrDeclareClass(class_name)->CreateInstance({{property, value}});
    const Instance instance = by_setting.GetOrDeclareClass(class_name)->CreateInstance({});
    for (int i = 0; i < 2; ++i) instance->SetPropertyValue(property, value, {});
    if (*type != 0) expected.insert(class_name + ("." + (property + (": " + std::string(type)))));
  }
  EXPECT_EQ(by_keys.GetUndeclared(), std::vector(expected.begin(), expected.end()));
  EXPECT_EQ(by_setting.GetUndeclared(), by_keys.GetUndeclared());
}

TEST(Repository, ObjectsMayOutliveIt) {
  auto repository = std::make_unique<standin::Repository>();
  const Instance instance = repository->GetOrDeclareClass("Other")->CreateInstance({});
  repository.reset();
  instance->Commit({});
  EXPECT_EQ(instance->GetReference().ToString(), "Other");
}

}  // namespace
