#include "standin/repository.h"

#include <gtest/gtest.h>

#include <memory>

#include "hmz/exception.h"

namespace {

using NKVXHMZ20::ICIMInstance;
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

TEST(Repository, ObjectsMayOutliveIt) {
  auto repository = std::make_unique<standin::Repository>();
  const Instance instance = repository->GetOrDeclareClass("Other")->CreateInstance({});
  repository.reset();
  instance->Commit({});
  EXPECT_EQ(instance->GetReference().ToString(), "Other");
}

}  // namespace
