// MOF as the build and the tests read it. tests/mof/accepted.mof has one of everything that the
// reader takes, changes.txt what it refuses.

#include "schema/mof_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/machine_files.h"

namespace {

const std::string kFolder = KRAID_SOURCE_DIR "/tests/mof/";

MofDocument Read(const std::string& text) {
  const std::size_t instances = text.find("instance of");
  return ReadMof({{"schema", std::string_view(text).substr(0, instances)},
                  {"instances", std::string_view(text).substr(instances)}});
}

TEST(MofReader, GivesWhatIsDeclared) {
  const MofDocument document = Read(ReadFile(kFolder + "accepted.mof"));
  const std::vector<MofClass> classes = {
      {"X_Thing",
       "A thing.",
       false,
       {{"Name", "string", false, true, "", "\b\t\n\f\r\"\\A\x7f\u0080\u07FF\u0800€x|é€😀."},
        {"Small", "uint16", false, false, "", ""},
        {"Words", "uint32", true, false, "", ""},
        {"Time", "datetime", false, false, "", ""}},
       9},
      {"X_Other", "", false, {{"Name", "string", false, true, "", ""}}, 17},
      {"X_Pair",
       "Two things.",
       true,
       {{"First", "", false, true, "X_Thing", ""}, {"Second", "", false, true, "X_Thing", ""}},
       19},
  };
  EXPECT_EQ(document.classes, classes);
  const std::vector<std::string> instances = {"X_Thing", "X_Thing", "X_Other", "X_Pair"};
  EXPECT_EQ(document.instances, instances);
}

TEST(MofReader, RefusesAllThatItDoesNotKnow) {
  const auto rows = Rows("mof/changes.txt", " | ");
  for (const auto& row : rows) {
    std::string text = ReadFile(kFolder + "accepted.mof");
    text.replace(text.find(row.at(0)), row[0].size(), row.at(1));
    std::string result = "taken";
    try {
      Read(text);
    } catch (const std::runtime_error& error) {
      result = error.what();
    }
    EXPECT_EQ(row.at(2), result) << row[0] << " | " << row[1];
  }
  EXPECT_GT(rows.size(), 100U);
}

/// What the build shows of a faulty schema.
TEST(ClassTable, IsNotMadeOfAFaultySchema) {
  const std::pair<const char*, const char*> cases[] = {
      {"accepted.mof", "accepted.mof:9: Small: no sentence says what it is\n"},
      {"without_key.mof", "without_key.mof:3: X_Thing: it has no key\n"},
      {"changes.txt", "changes.txt:1: expected class\n"},
      {"absent.mof", "absent.mof: cannot be read\n"},
  };
  for (const auto& [name, error] : cases) {
    const std::string table = testing::TempDir() + "kraid_class_table_" + std::to_string(getpid());
    const std::string command = "cd '" KRAID_SOURCE_DIR "/tests/mof' && '" KRAID_BUILD_DIR
                                "/schema/write_class_table' " +
                                (name + (" '" + table)) + "' 2>&1";
    FILE* output = popen(command.c_str(), "r");
    char text[200] = "";
    EXPECT_EQ(error, std::string(text, fread(text, 1, sizeof text, output)));
    EXPECT_NE(0, pclose(output)) << name;
    EXPECT_FALSE(std::filesystem::exists(table));
  }
}

}  // namespace
