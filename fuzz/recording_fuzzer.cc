// Recordings: each section is a file of the folder, "@0 recording.json". What is taken is written
// and read again, then shown, with pseudonyms.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

#include "fuzz/expect.h"
#include "fuzz/sections.h"
#include "fuzz/views.h"
#include "inventory/runs/recording_reader.h"
#include "inventory/runs/recording_writer.h"
#include "inventory/runs/sanitize.h"

namespace {

namespace fs = std::filesystem;

/// A folder of this process, in memory where there is such a place.
class Folder {
 public:
  Folder() {
    const fs::path memory = "/dev/shm";
    std::string pattern =
        ((access(memory.c_str(), W_OK) == 0 ? memory : fs::temp_directory_path()) / "fuzz-XXXXXX")
            .string();
    Expect(mkdtemp(pattern.data()) != nullptr, "no folder");
    path_ = pattern;
  }
  ~Folder() { fs::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  const fs::path& GetPath() const { return path_; }

 private:
  fs::path path_;
};

void Store(const fs::path& folder, const Section& section) {
  const fs::path name = fs::path(section.name).lexically_normal();
  if (name.empty() || name.is_absolute() || *name.begin() == "..") return;
  std::error_code ignored;  // what cannot be stored is a file that is not there
  fs::create_directories((folder / name).parent_path(), ignored);
  std::ofstream(folder / name, std::ios::binary) << section.text;
}

std::optional<Recording> Read(const fs::path& folder) {
  try {
    return ReadRecording(folder);
  } catch (const std::runtime_error& error) {
    ExpectOneLine(error.what());
    return std::nullopt;
  }
}

void ExpectSame(const Recording& one, const Recording& other) {
  Expect(one.host == other.host && one.root == other.root && one.clock.size() == other.clock.size(),
         "a recording is written as another");
  Expect(one.files.size() == other.files.size() && one.runs.size() == other.runs.size(),
         "a recording loses something");
  for (std::size_t i = 0; i < one.files.size(); ++i) {
    Expect(one.files[i].text == other.files[i].text, "a file is written as another");
  }
  for (std::size_t i = 0; i < one.runs.size(); ++i) {
    const RunRecord& run = one.runs[i];
    const RunRecord& again = other.runs[i];
    Expect(run.CommandLine() == again.CommandLine() && run.end == again.end &&
               *run.whole_output == *again.whole_output &&
               *run.whole_error_output == *again.whole_error_output &&
               run.output_bytes == again.output_bytes,
           "a run is written as another", run.CommandLine());
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Folder folder;
  const fs::path given = folder.GetPath() / "given";
  fs::create_directory(given);
  for (const Section& section : CutSections(TextOf(data, size))) Store(given, section);
  std::optional<Recording> recording = Read(given);
  if (!recording) return 0;
  const fs::path written = folder.GetPath() / "written";
  const std::string why = WriteRecording(*recording, written);
  if (recording->runs.empty()) return 0;  // nothing was collected
  Expect(why.empty(), "what was read is not written: " + why);
  std::size_t entries = 0;
  for (const auto& entry : fs::directory_iterator(folder.GetPath())) entries += entry.exists();
  Expect(entries == 2, "something is written beside the folder");
  const std::optional<Recording> again = Read(written);
  Expect(again.has_value(), "what was written is not read");
  ExpectSame(*recording, *again);
  Sanitize("0123456789abcdef", *recording);
  const Collected collected = CollectAgain(*recording);
  ExpectGoodViews(*collected.report, collected.machine);
  return 0;
}
