#include "standin/repository.h"

#include <gtest/gtest.h>

#include <memory>

#include "hmz/exception.h"
#include "tests/machine_files.h"

namespace {

using NKVXHMZ20::ICIMInstance;
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

TEST(Repository, KeepsTheOrderOfTheFirstSettingAndBuildsPathsInThatOfTheKeys) {
  standin::Repository repository;
  const Instance instance = repository.GetClass("KVXSG_krLogicalDisk")->CreateInstance({});
  for (const char* name : {"Size", "DeviceID", "SystemName", "Size", "CreationClassname"}) {
    instance->SetPropertyValue(name, std::string("the ") + name, {});
  }
  EXPECT_THROW(instance->GetReference(), NKVXHMZ20::THMZException);
  instance->SetPropertyValue("SystemCreationClassName", "S", {});
  instance->SetPropertyValue("Size", "last", {});
  EXPECT_EQ(instance->GetReference().ToString(),
            "KVXSG_krLogicalDisk.SystemCreationClassName=\"S\",SystemName=\"the SystemName\","
            "CreationClassname=\"the CreationClassname\",DeviceID=\"the DeviceID\"");
  instance->Commit({});
  std::string order;
  for (const auto& property : repository.GetCommitted().at(0)->properties) {
    order += *property.name + "=" + property.value.ToString() + ";";
  }
  EXPECT_EQ(order,
            "Size=last;DeviceID=the DeviceID;SystemName=the SystemName;"
            "CreationClassname=the CreationClassname;SystemCreationClassName=S;");
  EXPECT_TRUE(instance->GetProperty("NeverSet")->GetValue().IsNull());
}

TEST(Repository, ListsWhatTheSchemaDoesNotDeclare) {
  const std::pair<const char*, const char*> properties[] = {
      {kRawData, "Command"},
      {kRawData, "RawResults"},
      {kRawData, "rawresults"},
      {"KVXSG_LogRecord_SoftEvent", "HexSoftEvent"},
      {"KVXSG_LogRecord_SoftEvent", "MessageTimestamp"},
      {"KVXSG_krBiosVersion", "SoftwareElementState"},
      {"KVXSG_krBiosOnController", "Antecedent"},
      {"Foreign", "Command"},
  };
  const TCIMValue values[] = {
      {},
      "text",
      TCIMValue(std::uint16_t{1}),
      TCIMValue(std::uint32_t{1}),
      NKVXHMZ20::TCIMDateTime(),
      TCIMReference(nullptr, "KVXSG_krBiosVersion", {}),
      TCIMReference(nullptr, "KVXSG_krRawData", {}),
      {TCIMValue::TCIMType(TCIMValue::kString), 0, {}},
      {TCIMValue::TCIMType(TCIMValue::kUint32), 0, {}},
  };
  standin::Repository by_keys;
  standin::Repository by_setting;
  for (const auto& [class_name, property] : properties) {
    const Instance instance = by_setting.GetOrDeclareClass(class_name)->CreateInstance({});
    for (const TCIMValue& value : values) {
      by_keys.GetOrDeclareClass(class_name)->CreateInstance({{property, value}});
      for (int i = 0; i < 2; ++i) instance->SetPropertyValue(property, value, {});
    }
  }
  std::string undeclared;
  for (const std::string& kind : by_setting.GetUndeclared()) undeclared += kind + "\n";
  EXPECT_EQ(undeclared, ReadFile(KRAID_SOURCE_DIR "/tests/mof/undeclared.txt"));
  EXPECT_EQ(by_keys.GetUndeclared(), by_setting.GetUndeclared());
}

TEST(Repository, RefusesWhatGoesBeyondItsLimits) {
  const TCIMReference path(nullptr, "X", {{"Key", TCIMValue(std::string(1000, 'x'))}});
  const struct {
    TCIMValue value;
    standin::RepositoryLimits limits;
    const char* why;
  } cases[] = {
      {"short", {3, 10'000}, "the repository is full: it holds 3 instances"},
      {std::string(1000, 'x'), {9, 4000}, "the repository is full: its instances hold the 0 MiB t"},
      {{TCIMValue::TCIMType(TCIMValue::kString), 1, {std::string(1000, 'x')}}, {9, 4000}, "the re"},
      {path, {9, 4000}, "the re"},
  };
  for (const auto& c : cases) {
    standin::Repository repository(c.limits);
    const Instance instance = repository.GetClass(kRawData)->CreateInstance({{"Command", c.value}});
    for (int i = 0; i < 3; ++i) instance->Commit({});
    for (int i = 0; i < 2; ++i) {
      try {
        instance->Commit({});
        ADD_FAILURE() << c.why;
      } catch (const standin::RepositoryFull& full) {
        EXPECT_TRUE(std::string(full.what()).starts_with(c.why)) << full.what();
      }
    }
    EXPECT_EQ(repository.GetCommitted().size(), 3U);
  }
}

TEST(Repository, ObjectsMayOutliveIt) {
  auto repository = std::make_unique<standin::Repository>();
  const Instance instance = repository->GetOrDeclareClass("Other")->CreateInstance({});
  repository.reset();
  instance->Commit({});
  EXPECT_EQ(instance->GetReference().ToString(), "Other");
}

}  // namespace
