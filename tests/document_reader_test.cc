// The JSON document read back: what --compare gets to see of it.

#include "inventory/print/document_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>

#include "inventory/machine/read_machine.h"
#include "inventory/print/json_printer.h"
#include "inventory/print/machine_json.h"
#include "tests/odd_machine.h"
#include "tests/print_to.h"
#include "tests/publish_machine.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

std::string MachineText(const Machine& machine) {
  return Printed([&](Sink& output) {
    JsonWriter json(output);
    WriteMachineJson(machine, json);
  });
}

/// The machine without what is not read back.
Json ReadParts(const std::string& text) {
  Json machine = Json::parse(text);
  machine.erase("verdict");  // of the findings
  return machine;
}

class DocumentReader : public testing::Test {
 protected:
  ~DocumentReader() override { fs::remove(file_); }

  EarlierMachine ReadBack(const std::string& document) const {
    std::ofstream(file_, std::ios::binary) << document;
    return ReadDocument(file_);
  }

  std::string WhyNot(const std::string& document) const {
    std::ofstream(file_, std::ios::binary) << document;
    return WhyNotRead(file_);
  }

  static std::string WhyNotRead(const fs::path& file) {
    try {
      ReadDocument(file);
    } catch (const std::runtime_error& error) {
      const std::string why = error.what();
      EXPECT_TRUE(why.starts_with(file.string() + ": ")) << why;
      return why.substr(file.string().size() + 2);
    }
    return "";
  }

  fs::path file_ = fs::path(testing::TempDir()) / ("document_reader_" + std::to_string(getpid()));
};

TEST_F(DocumentReader, ReadsWhatWasWritten) {
  const auto sample = PublishSampleMachine();
  standin::Repository odd;
  CommitOddMachine(odd);
  const std::pair<const char*, const standin::Repository*> machines[] = {{"sample", sample.get()},
                                                                         {"odd_values", &odd}};
  for (const auto& [name, repository] : machines) {
    Report report{"h",
                  0,
                  {{"kelvcmd", "hung", ProblemKind::kRunTimedOut, "kelvcmd", "", 2, 3, true}},
                  *repository};
    report.collected_at = NKVXHMZ20::TCIMDateTime("20260308040005.000000+060");
    const Machine machine = ReadMachine(report);
    const std::string text = MachineText(machine);
    CompareExpected(std::string(name) + "/machine.json", text + "\n");
    const Json parts = ReadParts(text);
    const std::string document = Printed([&](Sink& output) {
      PrintJson({report, machine}, {}, output);
    });

    const EarlierMachine earlier = ReadBack(document);
    EXPECT_EQ(ReadParts(MachineText(earlier.machine)).dump(1), parts.dump(1));
    EXPECT_EQ(earlier.host, "h");
    EXPECT_EQ(earlier.since, "2026-03-08T04:00:05+01:00");
    ASSERT_EQ(earlier.problems.size(), 1U);
    EXPECT_EQ(earlier.problems[0].kind, ProblemKind::kRunTimedOut);
    EXPECT_EQ(earlier.problems[0].controller, 2);
    EXPECT_TRUE(earlier.problems[0].is_blind);

    // One that was written before there was a machine in it, and one that another program wrote
    // anew with its members in another order.
    Json without = Json::parse(document);
    without.erase("machine");
    EXPECT_EQ(MachineText(ReadBack(without.dump()).machine), text);
    const std::string sorted = nlohmann::json::parse(document).dump();
    EXPECT_EQ(ReadParts(MachineText(ReadBack(sorted).machine)).dump(1), parts.dump(1));
  }
}

TEST_F(DocumentReader, SaysWhatIsWrongWithADocument) {
  const std::pair<std::string, const char*> cases[] = {
      {"",
       "no JSON: parse error at line 1, column 1: syntax error while parsing value - unexpected "
       "end of input; expected '[', '{', or a literal"},
      {std::string(1000, '['), "is nested too deeply"},
      {"[1]", "no document of kraid-inventory"},
      {"{}", "no document of kraid-inventory"},
  };
  for (const auto& [document, why] : cases) EXPECT_EQ(WhyNot(document), why) << document;
  const std::string accepted = ReadFile(KRAID_SOURCE_DIR "/tests/documents/accepted.json");
  EXPECT_EQ(WhyNot(accepted), "");
  for (const auto& row : Rows("documents/changes.txt", " | ")) {
    std::string document = accepted;
    document.replace(document.find(row.at(0)), row[0].size(), row.at(1));
    EXPECT_EQ(WhyNot(document), row.at(2)) << document;
  }
  std::ofstream(file_) << "{}";
  fs::resize_file(file_, (std::uintmax_t{256} << 20) + 1);
  const std::pair<fs::path, const char*> files[] = {
      {file_, "larger than 256 MiB"},
      {"/dev/zero", "no regular file"},
      {"/", "no regular file"},
      {"/nowhere", "cannot be read: No such file or directory"},
  };
  for (const auto& [file, why] : files) EXPECT_EQ(WhyNotRead(file), why) << file;
}

TEST_F(DocumentReader, MakesTextsFitToBeShown) {
  Machine machine;
  machine.controllers.emplace_back().name = "\x1b[2J  mail\n";
  const auto document = nlohmann::json::parse(MachineText(machine));
  EXPECT_EQ(ReadMachineJson(document).controllers[0].name, "?[2J mail");
}

TEST_F(DocumentReader, KeepsNumbersThatOthersRound) {
  Machine machine;
  Controller& controller = machine.controllers.emplace_back();
  const std::pair<const char*, const char*> cases[] = {
      {"9007199254740992", R"({"stripes":9007199254740992})"},
      {"9007199254740993", R"({"stripes":9007199254740993,"stripes_s":"9007199254740993"})"},
      {"18446744073709551615",
       R"({"stripes":18446744073709551615,"stripes_s":"18446744073709551615"})"},
      {"18446744073709551616", R"({"stripes":null})"},
  };
  for (const auto& [number, expected] : cases) {
    controller.operation.name = "Rebuild";
    controller.operation.stripes = MakeNumber(number);
    nlohmann::json document = nlohmann::json::parse(MachineText(machine));
    nlohmann::json& operation = document["controllers"][0]["operation"];
    nlohmann::json shown = {{"stripes", operation["stripes"]}};
    if (operation.contains("stripes_s")) {
      shown["stripes_s"] = operation["stripes_s"];
      operation["stripes"] = 9007199254740994.0;
    }
    EXPECT_EQ(shown.dump(), expected);
    const Machine read = ReadMachineJson(document);
    const auto& stripes = read.controllers[0].operation.stripes;
    EXPECT_EQ(stripes ? stripes->value : std::nullopt, MakeNumber(number)->value) << number;
  }
}

}  // namespace
