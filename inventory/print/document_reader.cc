#include "inventory/print/document_reader.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "inventory/base/json_view.h"
#include "inventory/base/program.h"
#include "inventory/machine/read_machine.h"
#include "inventory/print/document_instances.h"
#include "inventory/print/field_reader.h"
#include "inventory/print/machine_json.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::uint64_t kLargestDocument = std::uint64_t{256} << 20;
constexpr std::uint64_t kMajorVersion = 1;

[[noreturn]] void Fail(const std::string& why) { throw std::runtime_error(why); }

/// "parse error at line 1, column 2: syntax error while parsing value - invalid literal", without
/// the library's own number in front and what it had read behind, which may be long.
std::string Why(const json::exception& error) {
  std::string why = error.what();
  why.erase(0, why.find("] ") + 2);
  return why.substr(0, why.find("; last read"));
}

/// The document without some of its members, which are never in memory then.
json Parse(const fs::path& file, const std::set<std::string>& left_out) {
  std::ifstream input(file, std::ios::binary);
  if (!input) Fail(std::string("cannot be read: ") + std::strerror(errno));
  const std::string text(std::istreambuf_iterator<char>(input), {});
  try {
    return ParseJson(text, left_out);
  } catch (const json::exception& error) {
    Fail("no JSON: " + Why(error));
  }
}

void CheckFile(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (error) Fail("cannot be read: " + error.message());
  if (!fs::is_regular_file(status)) Fail("no regular file");
  const std::uint64_t size = fs::file_size(file, error);
  if (error) Fail("cannot be read: " + error.message());
  if (size > kLargestDocument) Fail("larger than 256 MiB");
}

void CheckVersion(const json& document) {
  const std::string stranger = std::string("no document of ") + kProgramName;
  if (!document.is_object() || !document.contains("format_version")) Fail(stranger);
  const json& version = document["format_version"];
  if (!version.is_array() || version.empty() || !version[0].is_number_unsigned()) Fail(stranger);
  if (version[0] != kMajorVersion) {
    Fail("its format is version " + std::to_string(version[0].get<std::uint64_t>()) +
         ", and this program reads version " + std::to_string(kMajorVersion));
  }
}

ProblemKind ReadKind(const Text& name) {
  for (int i = 0; i <= static_cast<int>(ProblemKind::kUnknownClass); ++i) {
    if (name == NameOf(static_cast<ProblemKind>(i))) return static_cast<ProblemKind>(i);
  }
  return ProblemKind::kRunFailed;  // of a later version: something was lost
}

std::vector<Problem> ReadProblems(const json& document) {
  std::vector<Problem> problems;
  const auto found = document.find("problems");
  if (found == document.end()) return problems;
  for (const json& element : *found) {
    FieldReader fields(element, "problems[" + std::to_string(problems.size()) + "]");
    Problem& problem = problems.emplace_back();
    Text kind;
    std::optional<Number> controller;
    fields("kind", kind);
    fields("what", problem.what);
    fields("why", problem.why);
    fields("tool", problem.tool);
    fields("command", problem.command);
    if (element.contains("controller")) fields("controller", problem.controller);
    if (element.contains("is_blind")) fields("is_blind", problem.is_blind);
    problem.kind = ReadKind(kind);
  }
  return problems;
}

EarlierMachine Read(const fs::path& file) {
  CheckFile(file);
  json document = Parse(file, {"instances", "runs", "findings", "changes"});
  CheckVersion(document);
  EarlierMachine earlier;
  const FieldReader fields(document, "document");
  fields("collected_at", earlier.since);
  if (document.contains("host") && document["host"].is_string()) earlier.host = document["host"];
  earlier.problems = ReadProblems(document);
  if (document.contains("machine")) {
    // What was not asked for would be new.
    if (document["machine"].is_null()) Fail("it is of some classes only");
    earlier.machine = ReadMachineJson(document["machine"]);
    return earlier;
  }
  document = Parse(file, {"runs", "findings", "changes"});
  if (!document.contains("instances")) Fail("it has neither a machine nor instances");
  standin::Repository repository;
  CommitInstances(document["instances"], repository);
  earlier.machine = ReadMachine({earlier.host, 0, {}, repository});
  return earlier;
}

}  // namespace

EarlierMachine ReadDocument(const fs::path& file) {
  try {
    return Read(file);
  } catch (const std::exception& error) {
    throw std::runtime_error(file.string() + ": " + error.what());
  }
}
