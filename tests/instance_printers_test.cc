// JSON, MOF and the list: the views of the instances as they are.

#include <gtest/gtest.h>

#include <cstring>

#include "inventory/base/program.h"
#include "inventory/print/instance_list.h"
#include "inventory/print/json_printer.h"
#include "inventory/print/mof_literal.h"
#include "inventory/print/mof_printer.h"
#include "schema/mof_reader.h"
#include "tests/instance_lines.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

std::string List(const Report& report, std::size_t width) {
  ViewOptions options;
  options.display = {width, true, true};
  return Print(PrintInstances, report, options);
}

/// What is expected of a document does not name the version.
void CompareDocument(const std::string& name, std::string document) {
  const auto version = document.find(kProgramVersion);
  ASSERT_NE(version, std::string::npos);
  CompareExpected(name, document.replace(version, std::strlen(kProgramVersion), "VERSION"));
}

/// Strictly, behind the schema.
MofDocument ReadWithSchema(const std::string& mof) {
  const std::string schema = ReadFile(KRAID_SOURCE_DIR "/schema/kvxsg.mof");
  return ReadMof({{"schema", schema}, {"instances", mof}});
}

TEST(InstancePrinters, WriteEveryKindOfValue) {
  standin::Repository repository;
  CommitFile(repository, "odd_values/values.txt");
  const Report report{"host \"x\"\n1", 1, {{"tool\n", "why \x1b"}}, repository};
  CompareDocument("odd_values/inventory.json", Print(PrintJson, report));
  const std::string mof = Print(PrintMof, report);
  CompareDocument("odd_values/inventory.mof", mof);
  EXPECT_EQ(ReadWithSchema(mof).instances.size(), 11U);
  CompareExpected("odd_values/list_44.txt", List(report, 44));
}

TEST(InstancePrinters, SayThatThereIsNothing) {
  const standin::Repository repository;
  const Report report{"h", 0, {}, repository};
  const std::string json = Print(PrintJson, report);
  EXPECT_TRUE(json.ends_with("\"findings\": [],\n  \"instances\": []\n}\n")) << json;
  EXPECT_EQ(List(report, 60), "No instances.\n");
}

TEST(InstancePrinters, WriteMofOfTheSampleMachineThatAStrictReaderTakes) {
  const auto repository = PublishSampleMachine();
  std::string mof = Print(PrintMof, {"h", 0, {}, *repository});
  // The log stands elsewhere on each machine.
  const std::string folder = MachineFolder("sample").string();
  for (auto at = mof.find(folder); at != std::string::npos; at = mof.find(folder)) {
    mof.replace(at, folder.size(), "/usr");
  }
  CompareDocument("sample/inventory.mof", mof);
  EXPECT_NO_THROW(ReadWithSchema(mof));
}

TEST(MofLiteral, EscapesTexts) {
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
  for (const auto& [text, literal] : cases) {
    EXPECT_EQ(Printed([&, &t = text](Sink& output) { WriteMofString(t, output); }), literal);
  }
}

TEST(MofLiteral, HoldsADateTimeThatCanBeRepresented) {
  const std::pair<const char*, const char*> cases[] = {
      {"20041231235959.000001-300", "20041231235959.000001-300"},
      {"20040229000000.000000+000", "20040229000000.000000+000"},
      {"00010101000000.000000+000", "00010101000000.000000+000"},
      {"99991231235959.999999+999", "99991231235959.999999+999"},
      {"20050229000000.000000+060", "200502********.******+060"},
      {"20050014180000.000000+000", "2005**********.******+000"},
      {"00011314180000.000000-300", "0001**********.******-300"},
      {"20050400180000.000000+000", "200504********.******+000"},
      {"20050431180000.000000+000", "200504********.******+000"},
      {"20050430240000.000000+000", "20050430******.******+000"},
      {"20050430236000.000000+000", "2005043023****.******+000"},
      {"20050430235960.000000+000", "200504302359**.******+000"},
      {"00000000000000.000000+000", "00010101000000.000000+000"},
      {"00000430235959.000000-300", "00010101000000.000000+000"},
      {"200504302359600.000000+000", "00010101000000.000000+000"},
  };
  for (const auto& [time, expected] : cases) EXPECT_EQ(MofDateTime(time), expected);
}

}  // namespace
