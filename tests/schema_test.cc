// The schema against the plug-in. Its table is made of schema/kvxsg.mof, and the stand-in's
// repository tells of each type that a class does not declare (PublishSampleMachine looks).

#include "standin/schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "tests/publish_machine.h"

namespace {

using Texts = std::vector<std::string>;

TEST(Schema, HasTheClassesOfThePluginInItsOrder) {
  Texts dispatched;
  for (const DispatchEntry& entry : DispatchList()) dispatched.emplace_back(entry.class_name);
  Texts declared;
  for (const standin::SchemaClass& known : standin::Schema()) {
    declared.emplace_back(known.name);
    EXPECT_LE(known.description.size(), 70U) << known.name;
  }
  EXPECT_EQ(declared, dispatched);
  EXPECT_EQ(declared.size(), 28U);
  const std::string text = ReadFile(KRAID_SOURCE_DIR "/schema/kvxsg.mof");
  EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x80; }));
}

TEST(Schema, DeclaresWhatThePluginPublishesInItsOrder) {
  std::map<std::string, std::set<Texts>> published;  // names in their order, by class
  const auto repository = PublishSampleMachine();
  for (const auto& instance : repository->GetCommitted()) {
    Texts names;
    for (const auto& property : instance->properties) names.push_back(*property.name);
    published[*instance->class_name].insert(names);
  }
  EXPECT_EQ(published.size(), 25U);  // three classes have no instances
  for (const standin::SchemaClass& known : standin::Schema()) {
    SCOPED_TRACE(known.name);
    Texts declared;
    for (const auto& property : known.properties) declared.emplace_back(property.name);
    const bool says_nothing =
        known.description.find("nothing is published today") != std::string_view::npos;
    const auto& orders = published[std::string(known.name)];
    EXPECT_EQ(says_nothing, orders.empty());
    for (Texts names : orders) {
      // The keys stand first in the schema, in the order of object paths.
      std::ranges::stable_sort(names, {}, [&](const std::string& name) {
        return std::find(known.keys.begin(), known.keys.end(), name) - known.keys.begin();
      });
      EXPECT_EQ(declared, names);
    }
  }
}

}  // namespace
