// write_class_table kvxsg.mof TABLE: makes the host's table of the classes, a C++ source, of the
// schema. The build runs it: a fault in the schema stops the build and is told with its line.

#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

#include "schema/mof_reader.h"

namespace {

// No raw text: scripts/check-layers.sh would take its line for an include of this file.
constexpr char kBegin[] =
    "// Written by write_class_table; what it says stands in schema/kvxsg.mof.\n"
    "#include \"standin/schema.h\"\n"
    "\n"
    "namespace standin {\n"
    "namespace {\n"
    "\n"
    "using NKVXHMZ20::TCIMValue;\n"
    "\n";

constexpr char kEnd[] = R"(
}  // namespace

std::span<const SchemaClass> Schema() { return kClasses; }

}  // namespace standin
)";

/// The keys and the properties of a class, which its row in the table of classes refers to.
void WriteProperties(const MofClass& mof_class, std::ostream& table) {
  static const std::map<std::string, const char*> codes = {
      {"", "kReference"},    {"datetime", "kDateTime"}, {"string", "kString"},
      {"uint16", "kUint16"}, {"uint32", "kUint32"},
  };
  table << "constexpr std::string_view kKeys_" << mof_class.name << "[] = {";
  for (const MofProperty& property : mof_class.properties) {
    if (property.is_key) table << std::quoted(property.name) << ", ";
  }
  table << "};\nconstexpr SchemaProperty kProperties_" << mof_class.name << "[] = {\n";
  for (const MofProperty& property : mof_class.properties) {
    table << "    {" << std::quoted(property.name) << ", TCIMValue::" << codes.at(property.type)
          << ", " << property.is_array << ", " << std::quoted(property.reference_class) << "},\n";
  }
  table << "};\n";
}

void WriteRow(const MofClass& mof_class, std::ostream& table) {
  const std::size_t end_of_sentence = (mof_class.description + " ").find(". ");
  table << "    {" << std::quoted(mof_class.name) << ", kKeys_" << mof_class.name << ", "
        << std::quoted(mof_class.description.substr(0, end_of_sentence)) << ", "
        << mof_class.is_association << ", kProperties_" << mof_class.name << "},\n";
}

/// Refuses what MOF allows and the host cannot use or nobody could understand.
void Check(const MofClass& mof_class, const std::string& file) {
  const auto check = [&](bool holds, const std::string& name, const char* why) {
    if (holds) return;
    throw std::runtime_error(file + ":" + std::to_string(mof_class.line) + ": " + name + why);
  };
  constexpr char kNoSentence[] = ": no sentence says what it is";
  check(mof_class.description.ends_with("."), mof_class.name, kNoSentence);
  bool has_key = false;
  for (const MofProperty& property : mof_class.properties) {
    check(property.description.ends_with("."), property.name, kNoSentence);
    has_key |= property.is_key;
  }
  check(has_key, mof_class.name, ": it has no key");
}

std::string Table(const std::vector<MofClass>& classes) {
  std::ostringstream table;
  table << std::boolalpha << kBegin;
  for (const MofClass& mof_class : classes) WriteProperties(mof_class, table);
  table << "\nconstexpr SchemaClass kClasses[] = {\n";
  for (const MofClass& mof_class : classes) WriteRow(mof_class, table);
  table << "};\n" << kEnd;
  return table.str();
}

void WriteTable(const char* schema, const char* output) {
  std::ifstream file(schema, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file || text.empty()) throw std::runtime_error(std::string(schema) + ": cannot be read");
  const MofDocument document = ReadMof({{schema, text}});
  for (const MofClass& mof_class : document.classes) Check(mof_class, schema);
  if (!(std::ofstream(output) << Table(document.classes) << std::flush)) {
    throw std::runtime_error(std::string(output) + ": cannot be written");
  }
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count != 3) throw std::runtime_error("usage: write_class_table kvxsg.mof TABLE");
    WriteTable(arguments[1], arguments[2]);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
  return 0;
}
