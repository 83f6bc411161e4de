#include "standin/schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

#include "tests/mof_reader.h"
#include "tests/publish_machine.h"

namespace {

using NKVXHMZ20::TCIMValue;

const std::vector<MofClass>& DeclaredClasses() {
  static const MofDocument document = ReadMof(ReadFile(KRAID_SOURCE_DIR "/schema/kvxsg.mof"));
  return document.classes;
}

TEST(SchemaFile, DeclaresTheClassesOfTheSchemaInTheirOrder) {
  const std::vector<MofClass>& declared = DeclaredClasses();
  ASSERT_EQ(declared.size(), standin::Schema().size());
  for (std::size_t i = 0; i < declared.size(); ++i) {
    const standin::SchemaClass& known = standin::Schema()[i];
    SCOPED_TRACE(known.name);
    EXPECT_EQ(declared[i].name, known.name);
    EXPECT_EQ(declared[i].is_association, known.is_association);
    // Further sentences may follow.
    EXPECT_EQ((declared[i].description + " ").find(std::string(known.description) + ". "), 0U);
    EXPECT_LE(known.description.size(), 70U);
    std::vector<std::string_view> keys;
    for (const MofProperty& property : declared[i].properties) {
      if (property.is_key) keys.emplace_back(property.name);
      EXPECT_TRUE(property.description.ends_with(".")) << property.name;
    }
    EXPECT_EQ(keys, std::vector(known.keys.begin(), known.keys.end()));
  }
  const std::string text = ReadFile(KRAID_SOURCE_DIR "/schema/kvxsg.mof");
  EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x80; }));
}

std::string Declaration(const std::string& type, const std::string& name, bool is_array) {
  return type + " " + name + (is_array ? "[]\n" : "\n");
}

/// An instance's properties as its class has to declare them: the keys first.
std::string PublishedProperties(const standin::StoredInstance& instance,
                                std::span<const std::string_view> keys) {
  static const std::map<TCIMValue::ECIMType, std::string> types = {
      {TCIMValue::kString, "string"},
      {TCIMValue::kUint16, "uint16"},
      {TCIMValue::kUint32, "uint32"},
      {TCIMValue::kDateTime, "datetime"},
  };
  const auto declaration = [](const standin::StoredProperty& property) {
    const auto code = property.value.GetType().GetCode();
    const std::string type = code == TCIMValue::kReference
                                 ? property.value.GetReference().GetClassName() + " REF"
                                 : types.at(code);
    return Declaration(type, *property.name, property.value.IsArray());
  };
  std::string text;
  for (const std::string_view key : keys) {
    const std::string name(key);
    text += declaration({&name, *instance.Find(name)});
  }
  for (const standin::StoredProperty& property : instance.properties) {
    if (std::find(keys.begin(), keys.end(), *property.name) == keys.end()) {
      text += declaration(property);
    }
  }
  return text;
}

TEST(SchemaFile, DeclaresWhatThePluginPublishesOnTheSampleMachine) {
  std::map<std::string, std::set<std::string>> published;
  const auto repository = PublishSampleMachine();
  for (const auto& instance : repository->GetCommitted()) {
    const auto known = std::find_if(
        standin::Schema().begin(), standin::Schema().end(),
        [&](const standin::SchemaClass& row) { return row.name == *instance->class_name; });
    published[*instance->class_name].insert(PublishedProperties(*instance, known->keys));
  }
  EXPECT_EQ(published.size(), 25U);  // three classes have no instances
  for (const MofClass& mof_class : DeclaredClasses()) {
    std::string declared;
    for (const MofProperty& property : mof_class.properties) {
      declared +=
          Declaration(property.type.empty() ? property.reference_class + " REF" : property.type,
                      property.name, property.is_array);
    }
    const bool says_nothing =
        mof_class.description.find("nothing is published today") != std::string::npos;
    EXPECT_EQ(says_nothing, !published.contains(mof_class.name)) << mof_class.name;
    for (const std::string& properties : published[mof_class.name]) {
      EXPECT_EQ(declared, properties) << mof_class.name;
    }
  }
}

/// Has one of everything that the reader takes.
constexpr char kDocument[] = R"(// one line
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);
Qualifier Description : string = null, Scope(any),
    Flavor(EnableOverride, Translatable);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
/* two
   lines */
[Description ("A " "thing.")]
class X_Thing
{
    [Key, Description ("Its name.")]
    string Name;  // here, too
    uint16 Small;
    uint32 Words[];
    datetime Time;
};
class X_Other { [Key] string Name; };
[Association, Description ("Two things.")]
class X_Pair { [Key] X_Thing REF First; [Key] X_Thing REF Second; };
instance of X_Thing as $a
{
    Name = "\b\t\n\f\r\"\\\x00e9\x20ACx|)"
                             "\xc3\xa9"
                             R"(";
    Small = 65535;
    Words = {0, 4294967295};
    Time = "20240229235959.000000-999";
};
instance of X_Thing as $b { Name = "b"; };
instance of X_Other as $c { Name = "c"; };
instance of X_Pair { First = $b; Second = $a; };
)";

TEST(MofReader, GivesWhatIsDeclaredAndSet) {
  const MofDocument document = ReadMof(kDocument);
  ASSERT_EQ(document.classes.size(), 3U);
  const MofClass& thing = document.classes[0];
  EXPECT_EQ(thing.name + "|" + thing.description, "X_Thing|A thing.");
  EXPECT_FALSE(thing.is_association);
  ASSERT_EQ(thing.properties.size(), 4U);
  EXPECT_EQ(thing.properties[0].name + "|" + thing.properties[0].description, "Name|Its name.");
  EXPECT_TRUE(thing.properties[0].is_key);
  EXPECT_FALSE(thing.properties[1].is_key);
  EXPECT_EQ(thing.properties[1].type, "uint16");
  EXPECT_FALSE(thing.properties[1].is_array);
  EXPECT_TRUE(thing.properties[2].is_array);
  const MofClass& pair = document.classes[2];
  EXPECT_TRUE(pair.is_association);
  EXPECT_EQ(pair.properties[1].name + "|" + pair.properties[1].reference_class, "Second|X_Thing");

  ASSERT_EQ(document.instances.size(), 4U);
  EXPECT_EQ(document.instances[0].class_name + document.instances[0].alias, "X_Thing$a");
  const std::vector<MofSetting>& set = document.instances[0].properties;
  ASSERT_EQ(set.size(), 4U);
  EXPECT_EQ(set[0].name, "Name");
  EXPECT_EQ(set[0].value, MofValue("\b\t\n\f\r\"\\\xc3\xa9\xe2\x82\xacx|\xc3\xa9"));
  EXPECT_EQ(set[1].value, MofValue(65535U));
  EXPECT_EQ(set[2].value, MofValue(std::vector<MofLiteral>{0U, 4294967295U}));
  EXPECT_EQ(set[3].value, MofValue("20240229235959.000000-999"));
  EXPECT_EQ(document.instances[3].properties[0].value, MofValue(MofAlias{1}));
}

/// The error of the document with the first `from` in it replaced; "" when it is taken.
std::string ErrorWith(const std::string& from, const std::string& to) {
  std::string text = kDocument;
  text.replace(text.find(from), from.size(), to);
  const std::size_t begin = text.find("instance of");
  try {
    ReadMof(std::string_view(text).substr(0, begin), std::string_view(text).substr(begin));
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(MofReader, RefusesAllThatItDoesNotKnow) {
  static constexpr struct {
    const char* from;
    const char* to;
    const char* error;
  } kCases[] = {
      {"// one", "\xef\xbb\xbf// one", "schema:1: expected class"},
      {"// one", "#pragma locale (\"en\")\n// one", "schema:1: expected class"},
      {"lines */", "lines", "schema:6: comment without an end"},
      {"Flavor(D", "Flavor(E", "schema:2: expected DisableOverride"},
      {"Qualifier Key", "Qualifier Version", "schema:5: unknown qualifier"},
      {"Qualifier Key", "Qualifier Association", "schema:5: qualifier declared twice"},
      {"// one line\nQualifier Ass", "// Ass", "schema:17: qualifier that is not declared"},
      {"[Association, ", "[Association, Abstract, ", "schema:18: expected Description"},
      {"[Association, D", "[Key, D", "schema:18: expected Description"},
      {"class X_Thing\n", "class X_Thing : X_Base\n", "schema:9: expected {"},
      {"class X_Other", "class X_thinG", "schema:17: class declared twice"},
      {"uint16 Small", "uint16 name", "schema:13: property declared twice"},
      {"uint16 Small", "sint16 Small", "schema:13: unknown type"},
      {"uint16 Small", "uint16 Small = 1", "schema:13: expected ;"},
      {"};\nclass", "}\nclass", "schema:17: expected ;"},
      {"[Association, D", "[D",
       "schema:19: association without two references, or reference elsewhere"},
      {"; [Key] X_Thing REF Second", "", "schema:19: association without two references"},
      {"X_Thing REF First", "X_Pair REF First", "schema:19: class that is not declared"},
      {"of X_Other", "of X_other", "instances:9: class that is not declared"},
      {"Small = ", "small = ", "instances:4: property that is not declared"},
      {"Small = ", "Name = ", "instances:4: property set twice"},
      {"65535", "65536", "instances:4: number out of range"},
      {"65535", "4294967296", "instances:4: number out of range"},
      {"65535", "01", "instances:4: expected a number"},
      {"65535", "-1", "instances:4: expected a number"},
      {"65535", "1.5", "instances:4: expected ;"},
      {"65535", "0x1", "instances:4: expected ;"},
      {"65535", "null", "instances:4: expected a number"},
      {"65535", "{1}", "instances:4: expected a number"},
      {"string Name;  //", "string Name[];  //", "schema:12: expected ;"},
      {"$b {", "$ b {", "instances:8: expected an alias"},
      {"{0, 4294967295}", "{}", "instances:5: expected a number"},
      {"{0, 4294967295}", "{0,}", "instances:5: expected a number"},
      {"{0, 4294967295}", "0", "instances:5: expected {"},
      {"\"b\"", "1", "instances:8: expected \""},
      {"\"b\"", "\"b\" \"c\"", "instances:8: expected ;"},
      {"\"b\"; }", "\"b\" }", "instances:8: expected ;"},
      {"Name = \"b\";", "", "instances:8: instance without properties"},
      {"Name = \"b\";", "Small = 1;", "instances:8: key not set: Name"},
      {"as $b", "as $a", "instances:8: alias used twice"},
      {"First = $b", "First = $d", "instances:10: alias of nothing before"},
      {"First = $b", "First = $c", "instances:10: alias of another class"},
      {"First = $b", "First = \"b\"", "instances:10: expected $"},
      {"Second = $a; };", "Second = $a; };instance of X_Other { Name = \"d\"; };",
       "instances:10: plain instance behind an association"},
      {"\\b", "\\'", "instances:3: no such escape"},
      {"\\b", "\\a", "instances:3: no such escape"},
      {"\\b", "\\0", "instances:3: no such escape"},
      {"\\b", "\\X0041", "instances:3: no such escape"},
      {"\\b", "\\/", "instances:3: no such escape"},
      {"\\b", "\\u0041", "instances:3: no such escape"},
      {"\\b", "\\x04g1", "instances:3: less than four digits behind \\x, or no UTF-8"},
      {"\\b", "\\xD83D\\xDE00", "instances:3: no such character"},
      {"\\b", "\t", "instances:3: line end or control character in a string"},
      {"\\b", "\n", "instances:3: line end or control character in a string"},
      {"\\b", "\x01", "instances:3: line end or control character in a string"},
      {"\\b", "\xff", "instances:3: less than four digits behind \\x, or no UTF-8"},
      {"\\b", "\xed\xa0\xbd", "instances:3: less than four digits behind \\x, or no UTF-8"},
      {"\\b", "\xc0\xaf", "instances:3: less than four digits behind \\x, or no UTF-8"},
      {"$a; };\n", "$a; };\n;", "instances:11: expected class"},
  };
  for (const auto& [from, to, error] : kCases) {
    EXPECT_EQ(ErrorWith(from, to).find(error), 0U)
        << from << " -> " << to << ": " << ErrorWith(from, to);
  }
}

TEST(MofReader, TakesDateTimesThatThereMayBe) {
  for (const char* time :
       {"00000101000000.000000+000", "20001231235959.999999+840", "20000229******.******+000",
        "**************.******+000", "2005**********.******-300", "20050105130203.******+060"}) {
    EXPECT_EQ(ErrorWith("20240229235959.000000-999", time), "") << time;
  }
  for (const char* time :
       {"20230229000000.000000+000", "19000229000000.000000+000", "20050005000000.000000+000",
        "20051305000000.000000+000", "20050100000000.000000+000", "20050431000000.000000+000",
        "20050105240000.000000+000", "20050105006000.000000+000", "20050105000060.000000+000",
        "20050105000000.00000+0000", "20050105000000.000000+00", "20050105000000.000000:000",
        "20050105000000.000000+***", "20050105**0000.000000+000", "200501051*****.******+000",
        "20050105000000.0*****+000", "2005******000000.000000+0", ""}) {
    EXPECT_EQ(ErrorWith("20240229235959.000000-999", time), "instances:6: no date-time") << time;
  }
}

}  // namespace
