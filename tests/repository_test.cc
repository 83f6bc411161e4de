#include "standin/repository.h"

#include <gtest/gtest.h>

#include "hmz/exception.h"
#include "standin/schema.h"

namespace {

using NKVXHMZ20::ICIMInstance;
using NKVXHMZ20::TCIMValue;
using Instances = std::vector<boost::shared_ptr<ICIMInstance>>;

Instances Enumerate(standin::Repository& repository, const char* class_name) {
  Instances found;
  repository.GetClass(class_name)
      ->EnumerateInstances(NKVXHMZ20::TAddToVectorCallback<ICIMInstance>(&found));
  return found;
}

TEST(Repository, KeepsInstancesAsTheyStoodAtTheCommit) {
  standin::Repository repository;
  const auto instance = repository.GetClass("KVXSG_krRawData")->CreateInstance({});
  instance->SetPropertyValue("Command", "first", {});
  EXPECT_TRUE(Enumerate(repository, "KVXSG_krRawData").empty());
  instance->Commit({});
  instance->SetPropertyValue("Command", "second", {});
  instance->Commit({});
  instance->Commit({});

  const Instances stored = Enumerate(repository, "KVXSG_krRawData");
  ASSERT_EQ(stored.size(), 3U);
  stored[0]->SetPropertyValue("Command", "changed by a reader", {});
  std::vector<std::string> commands;
  for (const auto& again : Enumerate(repository, "KVXSG_krRawData")) {
    commands.push_back(again->GetProperty("Command")->GetValue().ToString());
  }
  EXPECT_EQ(commands, (std::vector<std::string>{"first", "second", "second"}));
}

TEST(Repository, KeepsPropertiesInTheOrderOfTheirFirstSetting) {
  standin::Repository repository;
  const auto instance = repository.GetClass("KVXSG_krDiskGroup")->CreateInstance({});
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
  for (const char* name : {"KVXSG_krRawData", "KVXSG_krDiskGroup", "KVXSG_krRawData"}) {
    const auto instance = repository.GetClass(name)->CreateInstance({});
    instance->SetPropertyValue("Command", std::to_string(repository.GetCommitted().size()), {});
    instance->Commit({});
  }
  std::string visited;
  const auto raw_class = repository.GetClass("KVXSG_krRawData");
  raw_class->EnumerateInstances([&](const boost::shared_ptr<ICIMInstance>& instance) {
    visited += instance->GetProperty("Command")->GetValue().ToString();
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
  const auto instance = repository.GetClass("KVXSG_krLogicalDisk")->CreateInstance({});
  for (const char* name : {"DeviceID", "Size", "SystemName", "CreationClassname"}) {
    instance->SetPropertyValue(name, std::string("the ") + name, {});
  }
  EXPECT_THROW(instance->GetReference(), NKVXHMZ20::THMZException);
  instance->SetPropertyValue("SystemCreationClassName", "S", {});
  EXPECT_EQ(instance->GetReference().ToString(),
            "KVXSG_krLogicalDisk.SystemCreationClassName=\"S\",SystemName=\"the SystemName\","
            "CreationClassname=\"the CreationClassname\",DeviceID=\"the DeviceID\"");
}

TEST(Repository, KnowsTheSchemaAndClassesThatWereDeclared) {
  standin::Repository repository;
  EXPECT_EQ(standin::Schema().size(), 28U);
  EXPECT_EQ(repository.GetClass("kvxsg_krRawData"), nullptr);
  EXPECT_EQ(repository.GetOrDeclareClass("Other")->GetName(), "Other");
  EXPECT_EQ(repository.GetLastNamedClass(), "Other");
  EXPECT_EQ(repository.GetClass("Other")->CreateInstance({})->GetReference().ToString(), "Other");
}

TEST(Repository, ObjectsMayOutliveIt) {
  boost::shared_ptr<ICIMInstance> instance;
  {
    standin::Repository repository;
    instance = repository.GetClass("KVXSG_krRawData")->CreateInstance({});
  }
  instance->SetPropertyValue("Command", "late", {});
  instance->Commit({});
  EXPECT_EQ(instance->GetReference().ToString(), "KVXSG_krRawData.Command=\"late\"");
}

}  // namespace
